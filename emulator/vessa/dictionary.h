#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>

#include "emulator/vessa/session.h"

namespace emulator::tool {

/// What the library's data dictionary says of a tag, in UTF-8. All empty for a tag that it does not hold.
struct DictionaryEntry {
  std::string display_tag;
  std::string vr;
  std::string keyword;
  std::string multiplicity;
};

/// The library's data dictionary, asked through its call-outs. Answers are kept.
class Dictionary {
 public:
  explicit Dictionary(Session& session) : session_(session) {}

  /// Throws LibraryFailure.
  const DictionaryEntry& Find(std::uint32_t tag);

  /// The tag of a keyword; nothing for one that the dictionary does not hold. Throws LibraryFailure.
  std::optional<std::uint32_t> TagOf(const std::string& keyword);

  /// The tag that a text stands for: 0010,0010 or 00100010 or a keyword. Throws ToolError (kWrongUsage) for other
  /// texts.
  std::uint32_t TagNamed(const std::string& text);

 private:
  Session& session_;
  std::unordered_map<std::uint32_t, DictionaryEntry> entries_;
};

}  // namespace emulator::tool
