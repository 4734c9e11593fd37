#pragma once

#include <cstddef>

/// Bytes of main memory that this process holds at the moment, as the system counts them.
std::size_t ResidentMemory();

// The sanitizers keep what was freed, so that a process grows without anybody holding memory.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kResidentMemoryTells = false;
#else
inline constexpr bool kResidentMemoryTells = true;
#endif
