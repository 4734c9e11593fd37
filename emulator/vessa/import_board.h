#pragma once

// What the processes of an import tell each other: plain memory that all of them share, all zeros at first, touched
// through std::atomic_ref only.

#include <atomic>
#include <cstdint>
#include <type_traits>

namespace emulator::tool {

struct ImportBoard {
  std::uint64_t taken;     ///< files that a process has begun with, in the order of the command line
  std::uint64_t imported;  ///< files
  std::uint64_t failed;
  std::uint64_t elements;    ///< of what was imported
  std::uint32_t exit_code;   ///< of the failures
  std::uint32_t codes_vary;  ///< 1 when they had different ones

  /// The next file to begin with.
  std::uint64_t Take() { return std::atomic_ref(taken).fetch_add(1); }

  void NoteImport(std::uint64_t element_count) {
    std::atomic_ref(elements).fetch_add(element_count);
    std::atomic_ref(imported).fetch_add(1);
  }

  void NoteFailure(int code) {
    std::uint32_t first = 0;
    const auto own = static_cast<std::uint32_t>(code);
    if (!std::atomic_ref(exit_code).compare_exchange_strong(first, own) && first != own) {
      std::atomic_ref(codes_vary).store(1);
    }
    std::atomic_ref(failed).fetch_add(1);
  }

  std::uint64_t Done() { return std::atomic_ref(imported).load() + std::atomic_ref(failed).load(); }
};

static_assert(std::is_trivial_v<ImportBoard>);

}  // namespace emulator::tool
