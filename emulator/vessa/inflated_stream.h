#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "emulator/stream_object.h"

namespace emulator::tool {

/// The deflated data set (PS3.5 section A.5) that begins where `stream` stands, inflated.
/// @param name  of the input, for messages
/// @throws ToolError  kInputUnreadable: corrupt or cut data, more than `most_bytes`, or a stream that cannot be read
std::shared_ptr<StreamObject> InflatedStream(StreamObject& stream, const std::string& name,
                                             std::uint64_t most_bytes);

/// Up to `bytes` of a stream. Throws ToolError (kInputUnreadable).
std::string ReadFrom(StreamObject& stream, std::int64_t bytes, const std::string& name);

}  // namespace emulator::tool
