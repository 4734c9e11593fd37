#include "emulator/vessa/progress_bar.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "emulator/platform/standard_streams.h"

namespace emulator::tool {
namespace {

constexpr std::uint64_t kCells = 30;

void WriteToTerminal(const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), stderr);
  std::fflush(stderr);
}

}  // namespace

ProgressBar::ProgressBar(std::uint64_t files)
    : files_(files), is_shown_(files > 1 && IsTerminal(StandardStream::kError)) {}

void ProgressBar::Show(std::uint64_t done, std::uint64_t failed) const {
  if (!is_shown_) return;
  const auto filled = static_cast<std::size_t>(std::min(done, files_) * kCells / files_);
  WriteToTerminal(fmt::format("\r[{}{}] {} of {} files, {} failed", std::string(filled, '#'),
                              std::string(kCells - filled, ' '), done, files_, failed));
}

void ProgressBar::Clear() const {
  if (is_shown_) WriteToTerminal("\r\x1b[K");
}

}  // namespace emulator::tool
