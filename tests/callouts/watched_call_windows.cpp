#include <stdlib.h>

#include "tests/callouts/watched_call.h"

namespace emulator {

// GoogleTest takes its options from the environment, too.
void StartAgainWith(const std::string& full_test_name) { _putenv_s("GTEST_FILTER", full_test_name.c_str()); }

}  // namespace emulator
