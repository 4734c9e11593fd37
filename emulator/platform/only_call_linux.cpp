#include <mutex>

#include "emulator/platform/only_call.h"

namespace emulator {
namespace {

std::recursive_mutex running;

}  // namespace

OnlyCall::OnlyCall() { running.lock(); }

OnlyCall::~OnlyCall() { running.unlock(); }

}  // namespace emulator
