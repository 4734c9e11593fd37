#include "emulator/vessa/property_reference.h"

#include <fmt/format.h>

#include <charconv>

#include "emulator/list.h"
#include "emulator/vessa/printable_text.h"

namespace emulator::tool {
namespace {

constexpr std::string_view kOffsetWords = " at offset ";

/// The 1-based offset that a message names; 0 when it names none.
std::size_t OffsetIn(std::string_view message) {
  const std::size_t words = message.rfind(kOffsetWords);
  std::size_t offset = 0;
  if (words == std::string_view::npos) return offset;
  const std::string_view number = message.substr(words + kOffsetWords.size());
  std::from_chars(number.data(), number.data() + number.size(), offset);
  return offset;
}

/// The message with the reference and a caret under it. A reference with characters that take more or less than a
/// column is not pointed into.
std::string Explained(const std::string& reference, const std::string& message) {
  const std::string shown = PrintableUtf8(reference);
  const std::size_t offset = OffsetIn(message);
  if (offset == 0 || offset > reference.size() + 1 || shown != reference) return message;
  return fmt::format("{}\n  {}\n  {:>{}}", message, shown, '^', offset);
}

}  // namespace

std::string PropertyListOf(Session& session, ReferenceKind kind, const std::string& reference) {
  try {
    const char* const parser =
        kind == ReferenceKind::kElement ? "zfParsePropertyReference" : "zfParsePropertySubscriptReference";
    return AsBytes(session.CallList(parser, ListBuilder().String(reference)).values.at(0).value);
  } catch (const LibraryFailure& failure) {
    throw LibraryFailure(Explained(reference, failure.what()));
  }
}

std::vector<std::uint32_t> PropertiesIn(const std::string& property_list) {
  std::vector<std::uint32_t> properties;
  for (const ListValue& item : ReadList(property_list)) {
    properties.push_back(static_cast<std::uint32_t>(AsInteger(item.value)));
  }
  return properties;
}

std::string PropertyListFrom(const std::vector<std::uint32_t>& properties) {
  ListBuilder list;
  for (const std::uint32_t property : properties) list.Integer(static_cast<std::int32_t>(property));
  return list.Bytes();
}

}  // namespace emulator::tool
