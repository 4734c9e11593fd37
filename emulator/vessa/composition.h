#pragma once

#include <memory>
#include <string>

#include "emulator/globals.h"
#include "emulator/stream_object.h"
#include "emulator/vessa/session.h"
#include "emulator/vessa/writer_object.h"

namespace emulator::tool {

struct ComposeRequest {
  std::string name;                ///< for messages
  std::string id;                  ///< first subscript
  std::shared_ptr<Globals> nodes;  ///< with ^KevDICOM.Data
  std::string transfer_syntax;
  std::string original_transfer_syntax;
  std::shared_ptr<StreamObject> pixels;  ///< null for none
  WriterObject::Take take;               ///< is handed the data set piece by piece
};

/// Composes a data set. Throws LibraryFailure, ToolError (kInputUnreadable) or what `take` throws.
void Compose(Session& session, const ComposeRequest& request);

}  // namespace emulator::tool
