#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "emulator/stream_object.h"
#include "emulator/vessa/content_sink.h"
#include "emulator/vessa/session.h"
#include "emulator/vessa/stop_object.h"

namespace emulator::tool {

/// A file, to be read. Throws ToolError (kInputUnreadable).
std::shared_ptr<FileStream> OpenFile(const std::string& path);

/// A file with DICOM data and what the command line says about it.
struct DicomInput {
  std::string path;                        ///< in UTF-8
  std::string syntax;                      ///< transfer syntax UID of the data set; empty: as the file says
  std::uint64_t most_output;               ///< bytes that a deflated data set may inflate to
  std::string more_bytes = {};             ///< that the library finds behind the end of the data
  std::string name = {};                   ///< for messages, in place of the path
  const char* syntax_option = "--syntax";  ///< that names the syntax on the command line
};

/// A file opened as a host opens it. One with the preamble and "DICM" (PS3.10 section 7.1) begins with its meta
/// information, which is decomposed first and names the syntax of the data set that follows. Any other file is a
/// data set from its first byte on. A deflated data set is inflated before the library sees it; all others are read
/// piece by piece.
class DicomFile {
 public:
  /// @throws ToolError  kInputUnreadable
  explicit DicomFile(DicomInput input);

  /// Decomposes the meta information, where there is one, and the data set; may be called again. `stop` is asked
  /// about the data set's tags.
  /// @throws ToolError  kWrongUsage for a file whose syntax nobody names; else as Decompose does
  void DecomposeInto(Session& session, ContentSink& sink, const StopRule& stop = {}) const;

  /// A stream that stands at the first byte of some elements, and the syntax of these.
  struct PositionedStream {
    std::string name;  ///< of the input, for messages
    std::shared_ptr<StreamObject> stream;
    std::string transfer_syntax;
  };
  /// The data set. The meta information, where there is one, goes to `meta_sink`.
  /// @throws ToolError  as DecomposeInto does
  PositionedStream OpenDataSet(Session& session, ContentSink& meta_sink) const;
  /// The meta information of a file that has it, up to its end: what follows may lie there in another syntax.
  PositionedStream OpenMeta(Session& session) const;
  /// Of the data set; empty where nobody names it. Throws as Decompose does.
  std::string TransferSyntax(Session& session) const;

  const std::string& Path() const { return input_.path; }
  bool HasPreamble() const { return has_preamble_; }
  /// Where its first element lies.
  std::uint64_t FirstElementOffset() const;

 private:
  std::shared_ptr<StreamObject> WithMoreBytes(std::shared_ptr<StreamObject> stream) const;
  std::string DecomposeMeta(Session& session, ContentSink& sink,
                            const std::shared_ptr<StreamObject>& stream) const;
  std::int64_t EndOfMeta(Session& session, const std::shared_ptr<StreamObject>& file) const;
  std::string MoveBehindMeta(Session& session, ContentSink& meta_sink,
                             const std::shared_ptr<StreamObject>& stream) const;

  DicomInput input_;
  bool has_preamble_;
};

}  // namespace emulator::tool
