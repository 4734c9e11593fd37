#include "tests/allocation/allocation_faults.h"

#include <cstddef>
#include <cstdlib>
#include <new>

#include "emulator/turn.h"

namespace {

std::uint64_t g_fails_from = 0;
std::uint64_t g_fails_to = 0;
std::uint64_t g_seen = 0;
std::uint64_t g_failed = 0;
std::uint64_t g_bytes_asked = 0;

}  // namespace

void AllocationFaults::FailNth(std::uint64_t n, bool from_then_on) {
  g_fails_from = n;
  g_fails_to = from_then_on ? UINT64_MAX : n;
  g_seen = 0;
  g_failed = 0;
  g_bytes_asked = 0;
}

std::uint64_t AllocationFaults::Failed() { return g_failed; }

std::uint64_t AllocationFaults::BytesAsked() { return g_bytes_asked; }

bool AllocationFaults::Strike(std::size_t bytes) {
  if (emulator::Turn::Current() != emulator::Turn::Of::kLibrary) return false;
  g_bytes_asked += bytes;
  if (g_fails_from == 0) return false;
  ++g_seen;
  if (g_seen < g_fails_from || g_seen > g_fails_to) return false;
  ++g_failed;
  return true;
}

// The linker sends every use of malloc and its kin in this program to __wrap_malloc, and __real_malloc to the system's.

extern "C" {

void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* block, std::size_t size);

void* __wrap_malloc(std::size_t size) {
  return AllocationFaults::Strike(size) ? nullptr : __real_malloc(size);
}

void* __wrap_calloc(std::size_t count, std::size_t size) {
  return AllocationFaults::Strike(count * size) ? nullptr : __real_calloc(count, size);
}

void* __wrap_realloc(void* block, std::size_t size) {
  return AllocationFaults::Strike(size) ? nullptr : __real_realloc(block, size);
}
}

// The nothrow forms of the standard library come here, too. So do its array forms, but sanitizers have their own.

void* operator new(std::size_t size) {
  if (void* const block = std::malloc(size == 0 ? 1 : size)) return block;
  throw std::bad_alloc();
}

void* operator new[](std::size_t size) { return operator new(size); }

void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }
