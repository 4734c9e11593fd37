#pragma once

// What the process that calls the library tells the process that watches it: whether it is inside the library, where
// it stands in the data, and the output that it has not written yet. Plain memory shared by both, all zeros at first;
// what both touch while the call runs goes through std::atomic_ref.

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

#include "emulator/path_text.h"

namespace emulator::tool {

struct CallProgress {
  static constexpr std::size_t kPathSteps = 64;
  static constexpr std::size_t kOutputBytes = 1U << 16U;

  std::uint64_t beats;        ///< grows with each passage between the host and the library
  std::uint32_t in_library;   ///< 1 while the library runs, 0 while the host does
  std::uint32_t at_end;       ///< 1 when the stream has had nothing more to give
  std::uint32_t is_finished;  ///< 1 when the command came to its end, whatever that was
  std::uint64_t file_number;  ///< of the file at work, from 1; 0 for none of many
  std::array<char, 64> call_name;
  std::array<char, 256> input_name;  ///< what is read, for people
  std::uint64_t stream_offset;       ///< bytes that the host knows to be consumed
  std::uint32_t path_is_followed;    ///< 1 while events tell the path
  std::uint32_t path_depth;  ///< may be above kPathSteps; the steps between those and the last are not kept
  std::array<PathStep, kPathSteps> path;
  PathStep last_step;  ///< the innermost, of no meaning while the depth is 0

  std::uint32_t output_filled;
  std::array<char, kOutputBytes> output;

  void EnterLibrary() { Pass(1); }
  void LeaveLibrary() { Pass(0); }
  void NameCall(std::string_view name);
  void NameInput(std::string_view name);
  std::uint64_t Beats() { return std::atomic_ref(beats).load(std::memory_order_relaxed); }
  bool InLibrary() { return std::atomic_ref(in_library).load(std::memory_order_relaxed) != 0; }

 private:
  void Pass(std::uint32_t into_library) {
    std::atomic_ref(in_library).store(into_library, std::memory_order_relaxed);
    std::atomic_ref(beats).fetch_add(1, std::memory_order_relaxed);
  }
};

static_assert(std::is_trivial_v<CallProgress>);

}  // namespace emulator::tool
