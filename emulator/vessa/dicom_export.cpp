#include "emulator/vessa/dicom_export.h"

#include <fmt/format.h>

#include <limits>
#include <optional>

#include "emulator/store/data_set_comparison.h"
#include "emulator/store/data_sets.h"
#include "emulator/store/file_start.h"
#include "emulator/transfer_syntax.h"
#include "emulator/vessa/composition.h"
#include "emulator/vessa/dicom_file.h"
#include "emulator/vessa/raw_deflate.h"

namespace emulator::tool {
namespace {

// A UUID of our own as PS3.5 section B.2 makes UIDs of them.
constexpr const char* kImplementationClass = "2.25.22480498679805805024504625340961356872";

Implementation Ours() { return {kImplementationClass, std::string("VESSADCM_") + VESSA_VERSION}; }

}  // namespace

void ExportDataSet(Session& session, StoreTransaction& transaction, const ExportRequest& request,
                   OutputFile& file) {
  const auto nodes = transaction.Nodes();
  const auto facts = FindDataSet(*nodes, request.id);
  if (!facts) throw ToolError(kInputUnreadable, fmt::format("no data set is stored as {}", request.id));
  const auto pixels = facts->pixels.empty() ? nullptr : transaction.OpenPixels(facts->pixels);
  const auto reason = WhyNotIn(request.transfer_syntax, *facts, pixels ? pixels->ByteCount() : 0);
  if (reason) {
    throw ToolError(kWrongUsage, fmt::format("{} cannot be written as {}: {}", request.name,
                                             request.transfer_syntax, *reason));
  }
  file.Write(FileStart(*nodes, request.id, request.transfer_syntax, Ours()));
  const auto write = [&file](std::string_view bytes) { file.Write(bytes); };
  ComposeRequest compose{request.name,           request.id, nodes, request.transfer_syntax,
                         facts->transfer_syntax, pixels,     write};
  if (request.transfer_syntax == kDeflatedExplicitLittleEndian) {
    RawDeflate deflate(write);
    compose.take = [&deflate](std::string_view bytes) { deflate.Write(bytes); };
    Compose(session, compose);
    deflate.Finish();
  } else {
    Compose(session, compose);
  }
  file.Flush();
}

std::size_t VerifyFile(Session& session, const DataSetOutline& source, OutputFile& file) {
  if (!file.IsPlainFile()) {
    throw ToolError(kWrongUsage, fmt::format("{}: what is written there cannot be verified", file.Path()));
  }
  file.Flush();
  DataSetOutline written;
  DicomFile({.path = file.PathForNow(),
             .syntax = {},
             .most_output = std::numeric_limits<std::uint64_t>::max(),
             .name = file.Path()})
      .DecomposeInto(session, written);
  const auto difference = FirstDifference(source, written);
  if (difference) throw LibraryFailure(fmt::format("{}: not as the source: {}", file.Path(), *difference));
  return written.Entries().size();
}

void ReportVerified(const OutputFile& file, std::size_t entries) {
  WriteError(fmt::format("{}: verified, {} elements and items are as in the source", file.Path(), entries));
}

}  // namespace emulator::tool
