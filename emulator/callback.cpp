#include "emulator/callback.h"

#include <charconv>

namespace emulator {
namespace {

constexpr std::size_t kQuotedUnits = 64;
constexpr std::string_view kDigits = "0123456789ABCDEF";

void AppendHex(unsigned int value, int digits, std::string& line) {
  for (int shift = (digits - 1) * 4; shift >= 0; shift -= 4) line += kDigits[(value >> shift) & 0xFU];
}

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

  void operator()(std::monostate) const {}
  void operator()(std::int64_t value) const { line += std::to_string(value); }
  void operator()(double value) const {
    std::array<char, 32> text{};
    line.append(text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr);
  }
  void operator()(std::string_view text) const {
    if (text.size() > kQuotedUnits) return (*this)(Extent{static_cast<std::int64_t>(text.size()), "bytes"});
    line += '"';
    for (const char byte : text) AppendUnit(static_cast<unsigned char>(byte), line);
    line += '"';
  }
  void operator()(std::span<const std::uint16_t> text) const {
    if (text.size() > kQuotedUnits) return (*this)(Extent{static_cast<std::int64_t>(text.size()), "units"});
    line += '"';
    for (const std::uint16_t unit : text) AppendUnit(unit, line);
    line += '"';
  }
  void operator()(const Extent& extent) const {
    line += std::to_string(extent.count);
    line += ' ';
    line += extent.unit;
  }
};

bool AnswersWithArea(Operation operation) {
  return operation == Operation::kNewLongString || operation == Operation::kNewLongWideString;
}

}  // namespace

std::string CallbackLine(const Callback& callback) {
  std::string line(OperationName(callback.operation));
  for (const CallbackItem& argument : callback.arguments) {
    if (std::holds_alternative<std::monostate>(argument)) break;
    line += ' ';
    std::visit(ItemWriter{line}, argument);
  }
  if (callback.status != 0) {
    return line += AnswersWithArea(callback.operation) ? " -> null" : " = " + std::to_string(callback.status);
  }
  if (!std::holds_alternative<std::monostate>(callback.result)) {
    line += " -> ";
    std::visit(ItemWriter{line}, callback.result);
  }
  return line;
}

}  // namespace emulator
