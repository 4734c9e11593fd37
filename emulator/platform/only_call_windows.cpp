#include <windows.h>

#include "emulator/platform/only_call.h"

namespace emulator {
namespace {

/// The system's own lock: the compiler's runtime has no std::mutex here, as it takes its locks without memory.
struct Section {
  Section() { InitializeCriticalSection(&own); }
  ~Section() { DeleteCriticalSection(&own); }
  Section(const Section&) = delete;
  Section& operator=(const Section&) = delete;

  CRITICAL_SECTION own{};
};

Section running;

}  // namespace

OnlyCall::OnlyCall() { EnterCriticalSection(&running.own); }

OnlyCall::~OnlyCall() { LeaveCriticalSection(&running.own); }

}  // namespace emulator
