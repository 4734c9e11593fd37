#pragma once

#include <chrono>
#include <cstdint>

#include "emulator/vessa/file_board.h"

namespace emulator::tool {

/// One line on standard error that shows how far many files have come: how many, how much, how fast and how long it
/// will take; nothing where that is no terminal. Several processes may show it.
class ProgressBar {
 public:
  ProgressBar(FileBoard& board, std::uint64_t files, std::uint64_t bytes);

  /// Not more often than people can read, but always when `is_wanted`.
  /// @param begun_bytes  of the files that are not finished
  void Show(std::uint64_t begun_bytes, bool is_wanted) const;
  /// Makes room for another line.
  void Clear() const;

 private:
  bool IsDue(std::uint64_t milliseconds) const;

  FileBoard& board_;
  std::uint64_t files_;
  std::uint64_t bytes_;
  bool is_shown_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace emulator::tool
