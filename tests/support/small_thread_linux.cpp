#include <pthread.h>

#include <cstddef>
#include <stdexcept>

#include "tests/support/small_thread.h"

namespace {

constexpr std::size_t kStackBytes = std::size_t{256} * 1024;

void* Run(void* action) {
  (*static_cast<std::function<void()>*>(action))();
  return nullptr;
}

pthread_t Start(std::function<void()>& action) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, kStackBytes);
  pthread_t thread{};
  const int refused = pthread_create(&thread, &attributes, Run, &action);
  pthread_attr_destroy(&attributes);
  if (refused != 0) throw std::runtime_error("no thread of 256 KiB");
  return thread;
}

}  // namespace

SmallThread::SmallThread(std::function<void()> action)
    : action_(std::move(action)), handle_(Start(action_)) {}

SmallThread::~SmallThread() { pthread_join(handle_, nullptr); }
