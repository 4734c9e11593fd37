#pragma once

#include "host/binary_interface.h"

namespace emulator {

/// Fills the positions of a callback table that no host offers with a function that ends the process with a line on
/// standard error, for there is no answer that its caller would understand.
void FillUnusedPositions(vessa::HostServices& table);

}  // namespace emulator
