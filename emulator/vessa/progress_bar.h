#pragma once

#include <cstdint>

namespace emulator::tool {

/// One line on standard error that shows how far many files have come; nothing where that is no terminal.
class ProgressBar {
 public:
  explicit ProgressBar(std::uint64_t files);

  void Show(std::uint64_t done, std::uint64_t failed) const;
  /// Makes room for another line.
  void Clear() const;

 private:
  std::uint64_t files_;
  bool is_shown_;
};

}  // namespace emulator::tool
