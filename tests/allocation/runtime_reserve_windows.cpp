#include "tests/allocation/runtime_reserve.h"

bool ThrowsWithoutAnyMemory() { return false; }
