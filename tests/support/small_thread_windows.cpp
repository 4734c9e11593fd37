#include <windows.h>

#include <stdexcept>

#include "tests/support/small_thread.h"

namespace {

constexpr SIZE_T kStackBytes = SIZE_T{256} * 1024;

DWORD WINAPI Run(void* action) {
  (*static_cast<std::function<void()>*>(action))();
  return 0;
}

HANDLE Start(std::function<void()>& action) {
  const HANDLE thread =
      CreateThread(nullptr, kStackBytes, Run, &action, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
  if (thread == nullptr) throw std::runtime_error("no thread of 256 KiB");
  return thread;
}

}  // namespace

SmallThread::SmallThread(std::function<void()> action)
    : action_(std::move(action)), handle_(reinterpret_cast<std::uintptr_t>(Start(action_))) {}

SmallThread::~SmallThread() {
  const auto thread = reinterpret_cast<HANDLE>(handle_);
  WaitForSingleObject(thread, INFINITE);
  CloseHandle(thread);
}
