#include "emulator/vessa/input_files.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <system_error>
#include <utility>

#include "emulator/vessa/printable_text.h"

namespace emulator::tool {
namespace {

namespace fs = std::filesystem;

fs::path PathOf(const std::string& utf8) { return std::u8string(utf8.begin(), utf8.end()); }

std::string Utf8(const fs::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

bool IsPattern(std::string_view word) { return word.find_first_of("*?") != std::string_view::npos; }

bool Exists(const fs::path& path) {
  std::error_code error;
  return fs::exists(fs::symlink_status(path, error));
}

bool IsFolder(const fs::path& path) {
  std::error_code error;
  return fs::is_directory(path, error);
}

class FileFinder {
 public:
  explicit FileFinder(bool is_recursive) : is_recursive_(is_recursive) {}

  std::vector<InputFile> Files() && { return std::move(files_); }

  void AddWord(const std::string& word) {
    const fs::path path = PathOf(word);
    if (!IsPattern(word) || Exists(path)) return AddNamed(path);
    const std::size_t before = files_.size();
    AddMatches(path.root_path(), path.relative_path());
    if (files_.size() == before) files_.push_back({word, 0, "no file matches"});
  }

 private:
  void AddNamed(const fs::path& path) {
    if (is_recursive_ && IsFolder(path)) return AddFolder(path);
    AddFile(path);
  }

  void AddFile(const fs::path& path) {
    std::error_code error;
    const std::uintmax_t bytes = fs::file_size(path, error);
    files_.push_back({Utf8(path), error ? 0 : static_cast<std::uint64_t>(bytes), {}});
  }

  /// All files of the folder and of those in it, in the order of their paths. Links to folders are not followed.
  void AddFolder(const fs::path& folder) {
    std::vector<fs::path> waiting = EntriesOf(folder);
    std::reverse(waiting.begin(), waiting.end());  // the next one stands last
    while (!waiting.empty()) {
      const fs::path entry = std::move(waiting.back());
      waiting.pop_back();
      std::error_code error;
      if (fs::is_directory(fs::symlink_status(entry, error))) {
        const std::vector<fs::path> inside = EntriesOf(entry);
        waiting.insert(waiting.end(), inside.rbegin(), inside.rend());
      } else if (fs::is_regular_file(entry, error)) {
        AddFile(entry);
      }
    }
  }

  /// What `pattern`, whose names may each be patterns, stands for inside `root`.
  void AddMatches(const fs::path& root, const fs::path& pattern) {
    std::vector<fs::path> found{root};
    for (const fs::path& name : pattern) {
      std::vector<fs::path> inside;
      for (const fs::path& folder : found) {
        if (folder == root || IsFolder(folder)) Append(MatchesIn(folder, name), inside);
      }
      found = std::move(inside);
    }
    for (const fs::path& match : found) AddNamed(match);
  }

  static void Append(std::vector<fs::path> paths, std::vector<fs::path>& all) {
    std::move(paths.begin(), paths.end(), std::back_inserter(all));
  }

  std::vector<fs::path> MatchesIn(const fs::path& folder, const fs::path& name) {
    const std::string pattern = Utf8(name);
    if (!IsPattern(pattern))
      return Exists(folder / name) ? std::vector{folder / name} : std::vector<fs::path>();
    std::vector<fs::path> matches = EntriesOf(folder.empty() ? fs::path(".") : folder);
    std::erase_if(matches, [&pattern](const fs::path& entry) {
      const std::string entry_name = Utf8(entry.filename());
      return (entry_name.front() == '.' && pattern.front() != '.') || !MatchesPattern(entry_name, pattern);
    });
    for (fs::path& match : matches) match = folder / match.filename();
    return matches;
  }

  std::vector<fs::path> EntriesOf(const fs::path& folder) {
    std::vector<fs::path> entries;
    std::error_code error;
    for (fs::directory_iterator next(folder, error); !error && next != fs::directory_iterator();
         next.increment(error))
      entries.push_back(next->path());
    if (error) files_.push_back({Utf8(folder), 0, error.message()});
    std::sort(entries.begin(), entries.end());
    return entries;
  }

  bool is_recursive_;
  std::vector<InputFile> files_;
};

}  // namespace

std::vector<InputFile> FilesNamedBy(const std::vector<std::string>& words, bool is_recursive) {
  FileFinder finder(is_recursive);
  for (const std::string& word : words) finder.AddWord(word);
  return std::move(finder).Files();
}

bool MayNameManyFiles(const std::string& word) {
  return IsFolder(PathOf(word)) || (IsPattern(word) && !Exists(PathOf(word)));
}

/// Goes on behind the latest `*` with one character more for it, where the rest does not match.
bool MatchesPattern(std::string_view name, std::string_view pattern) {
  std::size_t at = 0;
  std::size_t in_pattern = 0;
  std::size_t behind_star = std::string_view::npos;
  std::size_t star_end = 0;
  while (at < name.size()) {
    const std::size_t character = std::max<std::size_t>(1, Utf8SequenceLength(name.substr(at)));
    if (in_pattern < pattern.size() && pattern[in_pattern] == '*') {
      behind_star = ++in_pattern;
      star_end = at;
    } else if (in_pattern < pattern.size() && pattern[in_pattern] == '?') {
      ++in_pattern;
      at += character;
    } else if (in_pattern < pattern.size() && pattern[in_pattern] == name[at]) {
      ++in_pattern;
      ++at;
    } else if (behind_star != std::string_view::npos) {
      in_pattern = behind_star;
      at = ++star_end;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', in_pattern) == std::string_view::npos;
}

}  // namespace emulator::tool
