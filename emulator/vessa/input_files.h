#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace emulator::tool {

struct InputFile {
  std::string path;         ///< in UTF-8
  std::uint64_t bytes = 0;  ///< 0 when not known
  std::string problem;      ///< why it cannot be read at all; empty when nothing is known against it
};

/// The files that words of the command line stand for: a file's name for itself; a folder, where `is_recursive`, for all
/// files in it and its folders; a pattern, with `*` and `?` in the place of characters of names, for all that match,
/// since not every shell expands those. In the order of their names. A word that stands for nothing is a file of that
/// name with a problem.
std::vector<InputFile> FilesNamedBy(const std::vector<std::string>& words, bool is_recursive);

/// True when a word is more than the name of one file.
bool MayNameManyFiles(const std::string& word);

/// `*` stands for any characters, `?` for one (of a UTF-8 text, not one byte).
bool MatchesPattern(std::string_view name, std::string_view pattern);

}  // namespace emulator::tool
