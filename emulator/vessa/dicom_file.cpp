#include "emulator/vessa/dicom_file.h"

#include <fmt/format.h>

#include <array>
#include <system_error>

#include "emulator/vessa/decomposition.h"
#include "emulator/vessa/meta_reader.h"
#include "emulator/vessa/printable_text.h"
#include "emulator/vessa/raw_inflate.h"
#include "emulator/vessa/tag_text.h"

namespace emulator::tool {
namespace {

constexpr std::int64_t kPreambleBytes = 128;
constexpr std::string_view kPrefix = "DICM";
constexpr const char* kExplicitLittleEndian = "1.2.840.10008.1.2.1";
constexpr const char* kDeflated = "1.2.840.10008.1.2.1.99";
constexpr std::int64_t kReadBytes = 32767;

std::shared_ptr<FileStream> OpenFile(const std::string& path) {
  try {
    return std::make_shared<FileStream>(path, FileStream::Mode::kRead);
  } catch (const std::system_error& error) {
    throw ToolError(kInputUnreadable, fmt::format("{}: {}", path, error.code().message()));
  }
}

std::string ReadFrom(StreamObject& stream, std::int64_t bytes, const std::string& path) {
  try {
    const std::array<Value, 1> arguments{bytes};
    return AsBytes(stream.Call("Read", arguments));
  } catch (const HostError&) {
    throw ToolError(kInputUnreadable, fmt::format("{}: the file cannot be read", path));
  }
}

bool StartsWithPreamble(const std::string& path) {
  const auto stream = OpenFile(path);
  stream->MoveTo(1 + kPreambleBytes);
  return ReadFrom(*stream, static_cast<std::int64_t>(kPrefix.size()), path) == kPrefix;
}

bool IsNoMetaElement(std::uint32_t tag) { return GroupOf(tag) != kMetaGroup; }

}  // namespace

DicomFile::DicomFile(DicomInput input)
    : input_(std::move(input)), has_preamble_(StartsWithPreamble(input_.path)) {}

void DicomFile::DecomposeInto(Session& session, ContentSink& sink, const StopRule& stop) const {
  const PositionedStream data_set = OpenDataSet(session, sink);
  Decompose(session, {data_set.name, data_set.stream, data_set.transfer_syntax, stop}, sink);
}

DicomFile::PositionedStream DicomFile::OpenDataSet(Session& session, ContentSink& meta_sink) const {
  std::shared_ptr<StreamObject> stream = OpenFile(input_.path);
  const std::string named = has_preamble_ ? DecomposeMeta(session, meta_sink, stream) : std::string();
  const std::string& syntax = input_.syntax.empty() ? named : input_.syntax;
  if (syntax.empty()) {
    throw ToolError(
        kWrongUsage,
        fmt::format("{}: {}; name the transfer syntax with --syntax UID, implicit or explicit", input_.path,
                    has_preamble_ ? "group 0002 names no transfer syntax"
                                  : "no preamble with \"DICM\", so no group 0002"));
  }
  if (syntax == kDeflated) return {input_.path + " (inflated)", Inflated(*stream), syntax};
  return {input_.path, stream, syntax};
}

std::optional<DicomFile::PositionedStream> DicomFile::OpenMeta() const {
  if (!has_preamble_) return std::nullopt;
  std::shared_ptr<StreamObject> stream = OpenFile(input_.path);
  stream->MoveTo(1 + kPreambleBytes + static_cast<std::int64_t>(kPrefix.size()));
  return PositionedStream{input_.path, std::move(stream), kExplicitLittleEndian};
}

std::string DicomFile::DecomposeMeta(Session& session, ContentSink& sink,
                                     const std::shared_ptr<StreamObject>& stream) const {
  stream->MoveTo(1 + kPreambleBytes + static_cast<std::int64_t>(kPrefix.size()));
  MetaReader meta(sink);
  Decompose(session, {input_.path, stream, kExplicitLittleEndian, IsNoMetaElement}, meta);
  return meta.TransferSyntax();
}

std::shared_ptr<StreamObject> DicomFile::Inflated(StreamObject& stream) const {
  try {
    const auto next_block = [this, &stream] { return ReadFrom(stream, kReadBytes, input_.path); };
    return std::make_shared<MemoryStream>(InflateRaw(next_block, input_.most_output));
  } catch (const InflateError& error) {
    throw ToolError(kInputUnreadable, fmt::format("{}: deflated data set: {}", input_.path, error.what()));
  }
}

}  // namespace emulator::tool
