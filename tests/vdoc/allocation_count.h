#pragma once

#include <cstdint>

/// How often this program has called operator new. The operator is replaced where this is defined, apart from
/// the tests, so that no compiler sees into it.
std::uint64_t AllocationCount();
