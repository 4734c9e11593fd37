#pragma once

#include "fuzz/fuzz_input.h"

namespace fuzz {

/// What each target defines: one run over one input. A run that finds something does not return; see Require.
void RunInput(FuzzInput input);

/// Ends the process with a message, which libFuzzer takes for a finding, unless the condition holds.
void Require(bool condition, const char* what);

}  // namespace fuzz
