#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <thread>

#include "emulator/vessa/file_board.h"

namespace emulator::tool {

/// Keeps together what one of several processes prints about a file: from its first byte that goes out until the file
/// is done, the others wait. Without a board there are no others.
class OutputTurn {
 public:
  OutputTurn() = default;
  /// @param worker  number of the process, from 1
  OutputTurn(FileBoard& board, std::uint32_t worker) : board_(&board), worker_(worker) {}

  void Take() const {
    if (board_ == nullptr) return;
    for (std::uint32_t owner = 0; !Owner().compare_exchange_weak(owner, worker_); owner = 0) {
      if (owner == worker_) return;
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  }

  void Release() const {
    std::uint32_t owner = worker_;
    if (board_ != nullptr) Owner().compare_exchange_strong(owner, 0);
  }

 private:
  std::atomic_ref<std::uint32_t> Owner() const { return std::atomic_ref(board_->output_owner); }

  FileBoard* board_ = nullptr;
  std::uint32_t worker_ = 0;
};

}  // namespace emulator::tool
