#pragma once

#include <cstdint>
#include <string_view>

#include "host/binary_interface.h"

namespace bench {

/// Callbacks that do nothing but answer: what is left of a call's time is the library's own. The one stream
/// hands out pointers into the data; everything else is accepted and dropped.
const vessa::HostServices* IdleHost();

/// The bytes behind every object reference, from their start.
void ServeStream(std::string_view data);

/// Bytes handed out since ServeStream.
std::uint64_t BytesServed();

}  // namespace bench
