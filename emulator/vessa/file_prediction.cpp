#include "emulator/vessa/file_prediction.h"

#include "emulator/vessa/dictionary.h"
#include "emulator/vessa/inflated_stream.h"

namespace emulator::tool {

FileReport PredictFile(Session& session, const FileOptions& options, const std::string& path,
                       bool from_first_byte) {
  Dictionary dictionary(session);
  CheckRequest request;
  request.transfer_syntax = options.TransferSyntax();
  request.from_first_byte = from_first_byte;
  request.dictionary = [&dictionary](std::uint32_t tag) { return dictionary.Find(tag).vr; };
  request.inflate = [&](StreamObject& deflated) {
    return InflatedStream(deflated, path, options.MostOutput());
  };
  const std::shared_ptr<StreamObject> stream = OpenFile(path);
  try {
    return CheckFile(*stream, request);
  } catch (const HostError&) {
    throw ToolError(kInputUnreadable, path + ": the file cannot be read");
  }
}

}  // namespace emulator::tool
