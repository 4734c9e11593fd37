#pragma once

// What the processes that work through many files tell each other: plain memory that all of them share, all zeros at
// first, touched through std::atomic_ref only.

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace emulator::tool {

struct FileBoard {
  static constexpr std::size_t kExitCodes = 256;

  std::uint64_t taken;     ///< files that a process has begun with, in their order
  std::uint64_t finished;  ///< files, whatever came of them
  std::uint64_t bytes;     ///< of the finished files
  std::uint64_t units;     ///< what the command counts, elements for instance
  std::array<std::uint64_t, kExitCodes> files_by_code;
  std::uint32_t stops;           ///< 1 when no other file is to be begun with
  std::uint32_t reader_is_gone;  ///< 1 when nobody reads the output any more
  std::uint32_t output_owner;    ///< the worker whose output goes out now, from 1; 0 for none
  std::uint64_t shown_at;        ///< when the progress was last shown, in milliseconds from the start

  /// The next file to begin with.
  std::uint64_t Take() { return std::atomic_ref(taken).fetch_add(1); }

  void NoteFile(int code, std::uint64_t file_bytes, std::uint64_t file_units) {
    std::atomic_ref(files_by_code[static_cast<std::size_t>(code) % kExitCodes]).fetch_add(1);
    std::atomic_ref(bytes).fetch_add(file_bytes);
    std::atomic_ref(units).fetch_add(file_units);
    std::atomic_ref(finished).fetch_add(1);
  }

  /// @return  true for the first who says so
  bool Stop() { return std::atomic_ref(stops).exchange(1) == 0; }
  bool IsStopped() { return std::atomic_ref(stops).load() != 0; }

  std::uint64_t FilesWith(int code) {
    return std::atomic_ref(files_by_code[static_cast<std::size_t>(code) % kExitCodes]).load();
  }
};

static_assert(std::is_trivial_v<FileBoard>);

}  // namespace emulator::tool
