#include <pthread.h>

#include <cstddef>
#include <stdexcept>

#include "tests/support/small_stack.h"

namespace {

constexpr std::size_t kStackBytes = std::size_t{256} * 1024;

void* Run(void* action) {
  (*static_cast<const std::function<void()>*>(action))();
  return nullptr;
}

}  // namespace

void RunOnSmallStack(const std::function<void()>& action) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, kStackBytes);
  pthread_t thread{};
  std::function<void()> copy = action;
  const int refused = pthread_create(&thread, &attributes, Run, &copy);
  pthread_attr_destroy(&attributes);
  if (refused != 0) throw std::runtime_error("no thread of 256 KiB");
  pthread_join(thread, nullptr);
}
