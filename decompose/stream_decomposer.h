#pragma once

#include <cstdint>
#include <string_view>

#include "decompose/content_handler_interface.h"
#include "stream/input_stream.h"

namespace vessa {

/// Parses a data set (PS3.5 section 7) from a stream's current position to its end and reports it as events.
/// Used once; owns neither stream nor handler.
class StreamDecomposer {
 public:
  /// @param client_oref  host object asked before each element whether to stop; 0 for none
  /// @param simple_pixel_data_frames  leaves out the events that mark the end of encapsulated pixel data
  StreamDecomposer(CVessaInputStream& stream, CContentHandlerInterface& handler, const std::uint32_t& client_oref,
                   bool simple_pixel_data_frames);

  /// @return  0; failures are thrown
  /// @throws CDecomposeException  the stream or the syntax cannot be parsed
  /// @throws Status  the stream or the handler failed
  Status DecomposeStream(std::string_view transfer_syntax);
};

}  // namespace vessa
