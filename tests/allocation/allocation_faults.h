#pragma once

#include <cstddef>
#include <cstdint>

/// Memory that runs out, for the library alone: the allocations of the test and of the stand-in host always succeed.
class AllocationFaults {
 public:
  /// The nth allocation of the library from now on fails, and all behind it when `from_then_on`; 0: none fails.
  static void FailNth(std::uint64_t n, bool from_then_on);
  /// Allocations that have failed since then.
  static std::uint64_t Failed();

  /// Bytes that the library has asked for since then.
  static std::uint64_t BytesAsked();

  /// Asked by every allocation of the program. @return  true: it must fail
  static bool Strike(std::size_t bytes);
};
