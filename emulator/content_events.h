#pragma once

#include <span>
#include <string_view>

#include "emulator/content_sink.h"
#include "emulator/host_error.h"
#include "emulator/value.h"

namespace emulator {

/// Hands the event that the library reported by calling `method` of a content handler on to a sink.
/// @throws HostError  kMethodMissing for no event, kWrongParameters for other arguments than the event has; else what
///                    the sink throws
void DispatchEvent(std::string_view method, std::span<const Value> arguments, ContentSink& sink);

}  // namespace emulator
