#include "emulator/recording_reader.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <utility>

#include "emulator/recording_writer.h"

namespace emulator {

RecordingReader::RecordingReader(std::istream& text) : text_(text) {
  if (!Read() || line_ != kRecordingTitle) {
    throw RecordingError("line 1: no recording, it does not begin with '" + std::string(kRecordingTitle) +
                         "'");
  }
  Advance();
}

void RecordingReader::Advance() {
  do {
    has_line_ = Read();
  } while (has_line_ && (line_.empty() || line_.front() == '#'));
}

bool RecordingReader::Read() {
  ++number_;
  if (!std::getline(text_, line_)) return false;
  if (!line_.empty() && line_.back() == '\r') line_.pop_back();
  return true;
}

bool LineScanner::Take(std::string_view text) {
  if (!rest_.starts_with(text)) return false;
  rest_.remove_prefix(text.size());
  return true;
}

std::string_view LineScanner::TakeWord() {
  const std::string_view word = rest_.substr(0, rest_.find(' '));
  rest_.remove_prefix(word.size());
  return word;
}

std::optional<std::int64_t> LineScanner::TakeNumber() {
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), number);
  if (error != std::errc()) return std::nullopt;
  rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
  return number;
}

std::optional<std::vector<std::uint16_t>> LineScanner::TakeUnits() {
  if (!Take("\"")) return std::nullopt;
  std::vector<std::uint16_t> units;
  while (!Take("\"")) {
    const std::optional<std::uint16_t> unit = TakeUnit();
    if (!unit) return std::nullopt;
    units.push_back(*unit);
  }
  return units;
}

std::optional<std::string> LineScanner::TakeBytes() {
  const std::optional<std::vector<std::uint16_t>> units = TakeUnits();
  if (!units || std::any_of(units->begin(), units->end(), [](std::uint16_t unit) { return unit > 0xFF; })) {
    return std::nullopt;
  }
  std::string bytes(units->size(), '\0');
  std::transform(units->begin(), units->end(), bytes.begin(),
                 [](std::uint16_t unit) { return static_cast<char>(unit); });
  return bytes;
}

std::optional<std::uint16_t> LineScanner::TakeUnit() {
  if (rest_.empty()) return std::nullopt;
  if (Take("\\x")) return TakeHex(2);
  if (Take("\\u")) return TakeHex(4);
  Take("\\");
  if (rest_.empty()) return std::nullopt;
  const auto unit = static_cast<unsigned char>(rest_.front());
  rest_.remove_prefix(1);
  return unit;
}

std::optional<std::uint16_t> LineScanner::TakeHex(std::size_t digits) {
  if (rest_.size() < digits) return std::nullopt;
  std::uint16_t unit = 0;
  const char* const end = rest_.data() + digits;
  if (std::from_chars(rest_.data(), end, unit, 16).ptr != end) return std::nullopt;
  rest_.remove_prefix(digits);
  return unit;
}

namespace {

bool ReadStatus(LineScanner& scanner, RecordedAnswer& answer) {
  const std::optional<std::int64_t> status = scanner.TakeNumber();
  if (!status || !std::in_range<int>(*status)) return false;
  answer.status = static_cast<int>(*status);
  return true;
}

bool ReadResult(LineScanner& scanner, RecordedAnswer& answer) {
  answer.is_null = scanner.Take("null");
  if (answer.is_null) return true;
  answer.number = scanner.TakeNumber();
  if (answer.number) {
    static_cast<void>(scanner.Take(" bytes") || scanner.Take(" units"));
    return std::in_range<int>(*answer.number);
  }
  std::optional<std::vector<std::uint16_t>> units = scanner.TakeUnits();
  if (!units || !std::in_range<int>(units->size())) return false;
  answer.units = *std::move(units);
  answer.has_text = true;
  return true;
}

}  // namespace

std::optional<RecordedCall> ReadCall(std::string_view line) {
  LineScanner scanner(line);
  if (!scanner.Take("call ")) return std::nullopt;
  RecordedCall call;
  call.name = scanner.TakeWord();
  while (scanner.Take(" ")) {
    const std::optional<std::int64_t> number = scanner.TakeNumber();
    if (number && std::in_range<std::int32_t>(*number)) {
      call.numbers.push_back(static_cast<std::int32_t>(*number));
    } else if (!number && !call.content && call.numbers.empty()) {
      call.content = scanner.TakeBytes();
      if (!call.content) return std::nullopt;
    } else {
      return std::nullopt;
    }
  }
  if (!scanner.AtEnd()) return std::nullopt;
  return call;
}

std::optional<RecordedAnswer> ReadAnswer(std::string_view text) {
  RecordedAnswer answer;
  LineScanner scanner(text);
  bool is_read = scanner.AtEnd();
  if (scanner.Take(" = ")) {
    is_read = ReadStatus(scanner, answer);
  } else if (scanner.Take(" -> ")) {
    is_read = ReadResult(scanner, answer);
  }
  if (!is_read || !scanner.AtEnd()) return std::nullopt;
  return answer;
}

}  // namespace emulator
