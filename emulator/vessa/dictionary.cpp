#include "emulator/vessa/dictionary.h"

#include <fmt/format.h>

#include "emulator/vessa/printable_text.h"
#include "emulator/vessa/tag_text.h"

namespace emulator::tool {
namespace {

constexpr std::size_t kTagInfoResults = 5;
constexpr std::int64_t kNoTag = 0xFFFFFFFF;

std::string TextAt(const ListResult& result, std::size_t index) {
  return ToUtf8(AsWideText(result.values[index].value));
}

}  // namespace

const DictionaryEntry& Dictionary::Find(std::uint32_t tag) {
  const auto known = entries_.find(tag);
  if (known != entries_.end()) return known->second;
  const ListResult result = session_.CallList("zfTagInfo", ListBuilder().Integer(tag));
  if (result.values.size() != kTagInfoResults)
    throw LibraryFailure("zfTagInfo returned no description of a tag");
  return entries_[tag] = {TextAt(result, 0), TextAt(result, 1), TextAt(result, 2), TextAt(result, 3)};
}

std::optional<std::uint32_t> Dictionary::TagOf(const std::string& keyword) {
  const ListResult result = session_.CallList("zfNameTag", ListBuilder().String(keyword));
  if (result.values.size() != 1) throw LibraryFailure("zfNameTag returned no tag");
  const std::int64_t tag = AsInteger(result.values[0].value);
  if (tag == kNoTag) return std::nullopt;
  return static_cast<std::uint32_t>(tag);
}

std::uint32_t Dictionary::TagNamed(const std::string& text) {
  if (const auto tag = ParseTag(text)) return *tag;
  if (const auto tag = TagOf(text)) return *tag;
  throw ToolError(
      kWrongUsage,
      fmt::format("'{}' is neither a tag, such as 0010,0010, nor a keyword of the data dictionary",
                  PrintableUtf8(text)));
}

}  // namespace emulator::tool
