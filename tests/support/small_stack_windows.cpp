#include "tests/support/small_stack.h"

void RunOnSmallStack(const std::function<void()>& action) { action(); }
