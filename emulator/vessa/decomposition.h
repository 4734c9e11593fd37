#pragma once

#include <memory>
#include <string>

#include "emulator/stream_object.h"
#include "emulator/vessa/content_sink.h"
#include "emulator/vessa/session.h"
#include "emulator/vessa/stop_object.h"

namespace emulator::tool {

struct DecomposeRequest {
  std::string input_name;  ///< for messages
  std::shared_ptr<StreamObject> stream;
  std::string transfer_syntax;
  StopRule stop;  ///< no client is passed without one
};

/// Decomposes the stream from where it stands and leaves it behind the last byte that was parsed.
/// Throws LibraryFailure (the library's message with the place in the data), ToolError (kInputUnreadable) or what the
/// sink throws.
void Decompose(Session& session, const DecomposeRequest& request, ContentSink& sink);

}  // namespace emulator::tool
