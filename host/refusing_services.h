#pragma once

#include "host/binary_interface.h"

namespace vessa {

/// A callback table whose every function fails with -1, in use while there is no host's.
extern const HostServices kRefusingServices;

}  // namespace vessa
