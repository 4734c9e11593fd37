#pragma once

#include <cstdint>
#include <vector>

#include "host/vessa_ro_list.h"

namespace vessa {

/// The entries of a property list: tags and item numbers in turn. Each is read as a 64-bit integer and cut to
/// 32 bits, so that a host may hand a tag of group 8000 and above as a positive or as a negative number.
/// @throws std::exception  the list codec's failures
std::vector<std::uint32_t> ReadPropertyList(VessaROList& list);

}  // namespace vessa
