#pragma once

#include "host/binary_interface.h"

namespace emulator {

/// The functions of the stand-in host by position. They work on the current host. A position that the host does not
/// offer ends the process with a line on standard error, for there is no answer that its caller would understand.
const vessa::HostServices& CallbackTable();

}  // namespace emulator
