#include "emulator/callback.h"

#include <charconv>
#include <limits>

#include "emulator/hex_text.h"

namespace emulator {
namespace {

constexpr std::size_t kQuotedUnits = 64;

void AppendUnit(unsigned int unit, std::string& line) {
  if (unit == '"' || unit == '\\') {
    line += '\\';
    line += static_cast<char>(unit);
  } else if (unit >= ' ' && unit <= '~') {
    line += static_cast<char>(unit);
  } else if (unit <= 0xFF) {
    line += "\\x";
    AppendHex(unit, 2, line);
  } else {
    line += "\\u";
    AppendHex(unit, 4, line);
  }
}

struct ItemWriter {
  std::string& line;
  std::size_t most_units = kQuotedUnits;  ///< of a text that is shown, not told by its length

  void operator()(std::monostate) const {}
  void operator()(std::int64_t value) const { line += std::to_string(value); }
  void operator()(double value) const {
    std::array<char, 32> text{};
    line.append(text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr);
  }
  void operator()(std::string_view text) const {
    if (text.size() > most_units) return (*this)(Extent{static_cast<std::int64_t>(text.size()), "bytes"});
    AppendQuoted(text, line);
  }
  void operator()(std::span<const std::uint16_t> text) const {
    if (text.size() > most_units) return (*this)(Extent{static_cast<std::int64_t>(text.size()), "units"});
    AppendQuoted(text, line);
  }
  void operator()(const Extent& extent) const {
    line += std::to_string(extent.count);
    line += ' ';
    line += extent.unit;
  }
};

/// The text that was handed out, where the result tells its length and it is all there.
CallbackItem TextBehind(const Callback& callback) {
  const auto* extent = std::get_if<Extent>(&callback.result);
  if (extent == nullptr) return callback.result;
  const auto has_length = [extent](std::size_t length) {
    return extent->count >= 0 && static_cast<std::size_t>(extent->count) == length;
  };
  if (extent->unit == "bytes" && has_length(callback.bytes.size())) return callback.bytes;
  if (extent->unit == "units" && has_length(callback.units.size())) return callback.units;
  return callback.result;
}

std::size_t MostUnits(TextForm form) {
  return form == TextForm::kWhole ? std::numeric_limits<std::size_t>::max() : kQuotedUnits;
}

bool AnswersWithArea(Operation operation) {
  return operation == Operation::kNewLongString || operation == Operation::kNewLongWideString;
}

}  // namespace

void AppendQuoted(std::string_view bytes, std::string& line) {
  line += '"';
  for (const char byte : bytes) AppendUnit(static_cast<unsigned char>(byte), line);
  line += '"';
}

void AppendQuoted(std::span<const std::uint16_t> units, std::string& line) {
  line += '"';
  for (const std::uint16_t unit : units) AppendUnit(unit, line);
  line += '"';
}

std::string CallbackQuestion(const Callback& callback, TextForm form) {
  std::string line(OperationName(callback.operation));
  for (const CallbackItem& argument : callback.arguments) {
    if (std::holds_alternative<std::monostate>(argument)) break;
    line += ' ';
    std::visit(ItemWriter{line, MostUnits(form)}, argument);
  }
  return line;
}

std::string CallbackLine(const Callback& callback, TextForm form) {
  std::string line = CallbackQuestion(callback, form);
  if (callback.status != 0) {
    return line += AnswersWithArea(callback.operation) ? " -> null" : " = " + std::to_string(callback.status);
  }
  if (!std::holds_alternative<std::monostate>(callback.result)) {
    line += " -> ";
    const CallbackItem result = form == TextForm::kArguments ? callback.result : TextBehind(callback);
    std::visit(ItemWriter{line, MostUnits(form)}, result);
  }
  return line;
}

}  // namespace emulator
