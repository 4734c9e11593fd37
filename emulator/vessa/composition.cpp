#include "emulator/vessa/composition.h"

#include <fmt/format.h>

#include "emulator/vessa/registered.h"
#include "emulator/vessa/watched_stream.h"

namespace emulator::tool {

void Compose(Session& session, const ComposeRequest& request) {
  CallProgress& progress = session.Progress();
  progress.NameInput(request.name);
  Host host(request.nodes);  // the current one, as long as it lives
  session.Equip(host);
  const Registered writer(host, std::make_shared<WriterObject>(request.take, progress));
  const Registered pixels(host, std::make_shared<WatchedStream>(request.pixels, progress));
  try {
    session.CallList("zfComposeStream", ListBuilder()
                                            .Integer(writer.Oref())
                                            .String(request.id)
                                            .String(request.transfer_syntax)
                                            .String(request.original_transfer_syntax)
                                            .Integer(request.pixels ? pixels.Oref() : 0));
  } catch (const LibraryFailure& failure) {
    writer->RethrowError();
    if (pixels->HasReadError()) {
      throw ToolError(kInputUnreadable,
                      fmt::format("{}: the pixel data cannot be read to their end", request.name));
    }
    throw LibraryFailure(fmt::format("{}: {}", request.name, failure.what()));
  }
  writer->RethrowError();
}

}  // namespace emulator::tool
