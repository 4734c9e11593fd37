#pragma once

#include <cstddef>
#include <string>

#include "emulator/store/data_set_outline.h"
#include "emulator/store/data_store.h"
#include "emulator/vessa/output_file.h"
#include "emulator/vessa/session.h"

namespace emulator::tool {

/// What is to be written.
struct ExportRequest {
  std::string name;  ///< of the data set, for people
  std::string id;    ///< under which it is stored
  std::string transfer_syntax;
};

/// Writes a stored data set as a DICOM file (PS3.10 section 7.1) in a transfer syntax. A deflated one is deflated
/// here: the library composes it as explicit VR little endian.
/// @throws ToolError  kInputUnreadable for a name under which nothing is stored, kWrongUsage for a syntax that cannot
///                    hold the pixel data; else as Compose does
void ExportDataSet(Session& session, StoreTransaction& transaction, const ExportRequest& request,
                   OutputFile& file);

/// Decomposes a file that was just written, before it comes to its name, and holds it against its source.
/// @return  elements and items compared
/// @throws LibraryFailure  naming the first difference; else as DicomFile does
std::size_t VerifyFile(Session& session, const DataSetOutline& source, OutputFile& file);

/// Writes to standard error that what was written is the same as the source.
void ReportVerified(const OutputFile& file, std::size_t entries);

}  // namespace emulator::tool
