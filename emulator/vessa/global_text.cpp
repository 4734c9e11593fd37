#include "emulator/vessa/global_text.h"

#include "emulator/collation.h"

namespace emulator::tool {
namespace {

bool IsPrintable(char16_t character) { return character >= u' ' && character <= u'~'; }

/// Builds the expression character by character.
class Literal {
 public:
  void Add(char16_t character) {
    if (IsPrintable(character)) {
      Enter(Part::kQuotes);
      text_ += static_cast<char>(character);
      if (character == u'"') text_ += '"';
    } else {
      text_ += Enter(Part::kCodes) ? "" : ",";
      text_ += std::to_string(static_cast<unsigned int>(character));
    }
  }

  std::string Finish() {
    Leave();
    return text_.empty() ? "\"\"" : std::move(text_);
  }

 private:
  enum class Part { kNone, kQuotes, kCodes };

  /// True when the part begins here.
  bool Enter(Part part) {
    if (part == part_) return false;
    const bool is_first = part_ == Part::kNone;
    Leave();
    if (!is_first) text_ += '_';
    text_ += part == Part::kQuotes ? "\"" : "$c(";
    part_ = part;
    return true;
  }

  void Leave() {
    if (part_ == Part::kQuotes) text_ += '"';
    if (part_ == Part::kCodes) text_ += ')';
    part_ = Part::kNone;
  }

  std::string text_;
  Part part_ = Part::kNone;
};

}  // namespace

std::string HostLiteral(const Value& value) {
  Literal literal;
  if (const auto* const wide = std::get_if<std::u16string>(&value)) {
    for (const char16_t unit : *wide) literal.Add(unit);
    return literal.Finish();
  }
  std::string bytes = AsBytes(value);
  if (IsCanonicalNumber(bytes)) return bytes;
  for (const char byte : bytes) literal.Add(static_cast<unsigned char>(byte));
  return literal.Finish();
}

std::string ReferenceText(const GlobalNode& node) {
  std::string text = "^" + node.name;
  for (std::size_t index = 0; index < node.subscripts.size(); ++index) {
    text += (index == 0 ? "(" : ",") + HostLiteral(node.subscripts[index]);
  }
  return node.subscripts.empty() ? text : text + ")";
}

}  // namespace emulator::tool
