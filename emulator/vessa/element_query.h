#pragma once

// Asking the library for one element, through a stream or through the file's name.

#include <memory>
#include <optional>
#include <string>

#include "emulator/stream_object.h"
#include "emulator/vessa/dicom_file.h"
#include "emulator/vessa/session.h"

namespace emulator::tool {

/// What a query found.
struct ElementAnswer {
  std::string vr;
  std::string value;  ///< with a result stream: at most the first chunk
};

struct ElementQuery {
  std::string property_list;
  bool sequence_may_answer = false;
};

/// Over the elements from where the stream stands, which moves. Throws LibraryFailure, or ToolError
/// (kInputUnreadable).
std::optional<ElementAnswer> QueryStream(Session& session, const DicomFile::PositionedStream& input,
                                         const ElementQuery& query);

/// Over a file by its name: from the first byte of group 0002 when `has_header`, else from its first byte. Values of
/// more than one chunk go to `result_stream`, if there is one. Throws LibraryFailure.
std::optional<ElementAnswer> QueryFile(Session& session, const std::string& path, bool has_header,
                                       const std::string& transfer_syntax, const ElementQuery& query,
                                       const std::shared_ptr<StreamObject>& result_stream = nullptr);

/// The number of the item behind the one that the property list names; 0 when there is none. Throws as QueryStream.
std::uint32_t NextItem(Session& session, const DicomFile::PositionedStream& input,
                       const std::string& property_list);

}  // namespace emulator::tool
