#include "emulator/vessa/library_file.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string_view>
#include <system_error>

#include "emulator/platform/standard_streams.h"

namespace emulator::tool {
namespace {

constexpr std::string_view kMark = "@(#)";
constexpr std::string_view kProduct = "VessaDCM ";
constexpr const char* kInstalledFolder = "/../lib/x86_64-linux-gnu/vessadcm/";

std::filesystem::path PathOf(const std::string& utf8) { return std::u8string(utf8.begin(), utf8.end()); }

}  // namespace

std::string DefaultLibraryPath() {
  const std::string folder = ProgramFolder();
  if (folder.empty()) return VESSA_DEFAULT_LIBRARY;
  std::string beside = folder + "/" + VESSA_DEFAULT_LIBRARY;
  std::string installed = folder + kInstalledFolder + VESSA_DEFAULT_LIBRARY;
  std::error_code unknown;
  const bool is_installed = !std::filesystem::exists(PathOf(beside), unknown) &&
                            std::filesystem::exists(PathOf(installed), unknown);
  return is_installed ? installed : beside;
}

std::string LibraryIdentification(const std::string& path) {
  std::ifstream file(PathOf(path), std::ios::binary);
  const std::string bytes((std::istreambuf_iterator<char>(file)), {});
  const std::string mark = std::string(kMark) + std::string(kProduct);
  const auto found =
      std::search(bytes.begin(), bytes.end(), std::boyer_moore_horspool_searcher(mark.begin(), mark.end()));
  if (found == bytes.end()) return {};
  const auto text = found + static_cast<std::ptrdiff_t>(kMark.size());
  return {text, std::find_if(text, bytes.end(), [](char letter) { return letter < ' ' || letter > '~'; })};
}

}  // namespace emulator::tool
