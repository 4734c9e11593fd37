#include "emulator/vessa/progress_bar.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>

#include "emulator/platform/standard_streams.h"
#include "emulator/vessa/exit_code.h"

namespace emulator::tool {
namespace {

constexpr std::uint64_t kCells = 30;
constexpr std::uint64_t kShownEvery = 100;         // milliseconds
constexpr std::uint64_t kEnoughToEstimate = 1000;  // milliseconds

void WriteToTerminal(const std::string& text) {
  static_cast<void>(std::fwrite(text.data(), 1, text.size(), stderr));
  static_cast<void>(std::fflush(stderr));
}

std::string RateText(double bytes_a_second) {
  constexpr double kMega = 1e6;
  return fmt::format("{:.1f} MB/s", bytes_a_second / kMega);
}

std::string TimeText(double seconds) {
  constexpr std::int64_t kMinute = 60;
  const std::int64_t whole = std::llround(seconds);
  return whole < kMinute ? fmt::format("{} s left", whole)
                         : fmt::format("{}:{:02} min left", whole / kMinute, whole % kMinute);
}

}  // namespace

ProgressBar::ProgressBar(FileBoard& board, std::uint64_t files, std::uint64_t bytes)
    : board_(board), files_(files), bytes_(bytes), is_shown_(IsTerminal(StandardStream::kError)) {}

void ProgressBar::Show(std::uint64_t begun_bytes, bool is_wanted) const {
  if (!is_shown_) return;
  const auto passed = std::chrono::steady_clock::now() - start_;
  const auto milliseconds =
      static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::milliseconds>(passed).count());
  if (!IsDue(milliseconds) && !is_wanted) return;
  const std::uint64_t done = std::atomic_ref(board_.finished).load();
  const std::uint64_t failed = done - board_.FilesWith(kDone) - board_.FilesWith(kFindings);
  const std::uint64_t bytes = std::min(bytes_, std::atomic_ref(board_.bytes).load() + begun_bytes);
  const auto filled = static_cast<std::size_t>(std::min(done, files_) * kCells / files_);
  std::string text = fmt::format("\r[{}{}] {} of {} files, {} failed", std::string(filled, '#'),
                                 std::string(kCells - filled, ' '), done, files_, failed);
  if (milliseconds >= kEnoughToEstimate && bytes > 0) {
    const double rate = static_cast<double>(bytes) * 1000 / static_cast<double>(milliseconds);
    text +=
        fmt::format(", {}, {}\x1b[K", RateText(rate), TimeText(static_cast<double>(bytes_ - bytes) / rate));
  }
  WriteToTerminal(text);
}

/// Claims the moment for this process.
bool ProgressBar::IsDue(std::uint64_t milliseconds) const {
  std::uint64_t last = std::atomic_ref(board_.shown_at).load();
  return milliseconds >= last + kShownEvery &&
         std::atomic_ref(board_.shown_at).compare_exchange_strong(last, milliseconds);
}

void ProgressBar::Clear() const {
  if (is_shown_) WriteToTerminal("\r\x1b[K");
}

}  // namespace emulator::tool
