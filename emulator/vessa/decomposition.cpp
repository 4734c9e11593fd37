#include "emulator/vessa/decomposition.h"

#include <fmt/format.h>

#include "emulator/vessa/call_report.h"
#include "emulator/vessa/handler_object.h"
#include "emulator/vessa/registered.h"
#include "emulator/vessa/watched_stream.h"

namespace emulator::tool {
void Decompose(Session& session, const DecomposeRequest& request, ContentSink& sink) {
  CallProgress& progress = session.Progress();
  progress.NameInput(request.input_name);
  ElementPath path(progress);
  const Registered stream(session.TheHost(), std::make_shared<WatchedStream>(request.stream, progress));
  const Registered handler(session.TheHost(), std::make_shared<HandlerObject>(sink, path, progress));
  const Registered client(session.TheHost(), std::make_shared<StopObject>(request.stop, path, progress));
  stream->Publish();
  try {
    session.CallList("zfDecomposeStream", ListBuilder()
                                              .Integer(stream.Oref())
                                              .String(request.transfer_syntax)
                                              .Integer(handler.Oref())
                                              .Integer(request.stop ? client.Oref() : 0));
  } catch (const LibraryFailure& failure) {
    handler->RethrowError();
    const std::string name = request.input_name;
    if (stream->HasReadError())
      throw ToolError(kInputUnreadable, fmt::format("{}: the file cannot be read to its end", name));
    throw LibraryFailure(fmt::format("{}: {}\n  at {}", name, failure.what(), PlaceText(progress)));
  }
}

}  // namespace emulator::tool
