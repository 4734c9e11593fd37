#include "emulator/vessa/dicom_file.h"

#include <fmt/format.h>

#include <system_error>

#include "emulator/vessa/decomposition.h"
#include "emulator/vessa/extended_stream.h"
#include "emulator/vessa/inflated_stream.h"
#include "emulator/vessa/meta_reader.h"
#include "emulator/vessa/null_sink.h"
#include "emulator/vessa/printable_text.h"
#include "emulator/vessa/shortened_stream.h"
#include "emulator/vessa/tag_text.h"

namespace emulator::tool {
namespace {

constexpr std::int64_t kPreambleBytes = 128;
constexpr std::string_view kPrefix = "DICM";
constexpr const char* kExplicitLittleEndian = "1.2.840.10008.1.2.1";
constexpr const char* kDeflated = "1.2.840.10008.1.2.1.99";

bool StartsWithPreamble(const std::string& path) {
  const auto stream = OpenFile(path);
  stream->MoveTo(1 + kPreambleBytes);
  return ReadFrom(*stream, static_cast<std::int64_t>(kPrefix.size()), path) == kPrefix;
}

bool IsNoMetaElement(std::uint32_t tag) { return GroupOf(tag) != kMetaGroup; }

}  // namespace

std::shared_ptr<FileStream> OpenFile(const std::string& path) {
  try {
    return std::make_shared<FileStream>(path, FileStream::Mode::kRead);
  } catch (const std::system_error& error) {
    const bool is_folder = error.code() == std::errc::is_a_directory;
    throw ToolError(kInputUnreadable, fmt::format("{}: {}{}", path, error.code().message(),
                                                  is_folder ? "; -r reads the files in it" : ""));
  }
}

DicomFile::DicomFile(DicomInput input)
    : input_(std::move(input)), has_preamble_(StartsWithPreamble(input_.path)) {
  if (input_.name.empty()) input_.name = input_.path;
}

void DicomFile::DecomposeInto(Session& session, ContentSink& sink, const StopRule& stop) const {
  const PositionedStream data_set = OpenDataSet(session, sink);
  Decompose(session, {data_set.name, data_set.stream, data_set.transfer_syntax, stop}, sink);
}

DicomFile::PositionedStream DicomFile::OpenDataSet(Session& session, ContentSink& meta_sink) const {
  const std::shared_ptr<StreamObject> stream = WithMoreBytes(OpenFile(input_.path));
  const std::string syntax = MoveBehindMeta(session, meta_sink, stream);
  if (syntax.empty()) {
    throw ToolError(
        kWrongUsage,
        fmt::format("{}: {}; name the transfer syntax with {} UID, implicit or explicit", input_.name,
                    has_preamble_ ? "group 0002 names no transfer syntax"
                                  : "no preamble with \"DICM\", so no group 0002",
                    input_.syntax_option));
  }
  if (syntax == kDeflated) {
    return {input_.name + " (inflated)",
            WithMoreBytes(InflatedStream(*stream, input_.name, input_.most_output)), syntax};
  }
  return {input_.name, stream, syntax};
}

/// Bytes up to the end of group 0002.
std::int64_t DicomFile::EndOfMeta(Session& session, const std::shared_ptr<StreamObject>& file) const {
  try {
    NullSink no_events;
    DecomposeMeta(session, no_events, file);
    return file->Position() - 1;
  } catch (const LibraryFailure&) {
    return file->ByteCount();  // what lies in front of the damage can be read all the same
  }
}

DicomFile::PositionedStream DicomFile::OpenMeta(Session& session) const {
  const std::shared_ptr<StreamObject> file = OpenFile(input_.path);
  const auto meta = std::make_shared<ShortenedStream>(file, EndOfMeta(session, file));
  meta->MoveTo(1 + static_cast<std::int64_t>(FirstElementOffset()));
  return {input_.path, meta, kExplicitLittleEndian};
}

std::string DicomFile::TransferSyntax(Session& session) const {
  NullSink no_meta;
  return MoveBehindMeta(session, no_meta, OpenFile(input_.path));
}

/// @return  the syntax of the data set, where the stream then stands
std::string DicomFile::MoveBehindMeta(Session& session, ContentSink& meta_sink,
                                      const std::shared_ptr<StreamObject>& stream) const {
  const std::string named = has_preamble_ ? DecomposeMeta(session, meta_sink, stream) : std::string();
  return input_.syntax.empty() ? named : input_.syntax;
}

std::shared_ptr<StreamObject> DicomFile::WithMoreBytes(std::shared_ptr<StreamObject> stream) const {
  if (input_.more_bytes.empty()) return stream;
  return std::make_shared<ExtendedStream>(std::move(stream), input_.more_bytes);
}

std::uint64_t DicomFile::FirstElementOffset() const {
  return has_preamble_ ? static_cast<std::uint64_t>(kPreambleBytes) + kPrefix.size() : 0;
}

std::string DicomFile::DecomposeMeta(Session& session, ContentSink& sink,
                                     const std::shared_ptr<StreamObject>& stream) const {
  stream->MoveTo(1 + kPreambleBytes + static_cast<std::int64_t>(kPrefix.size()));
  MetaReader meta(sink);
  Decompose(session, {input_.name, stream, kExplicitLittleEndian, IsNoMetaElement}, meta);
  return meta.TransferSyntax();
}

}  // namespace emulator::tool
