#pragma once

#include <string_view>

namespace emulator {

/// What the 128 bytes in front of "DICM" are to programs that do not know DICOM (PS3.10 section 7.1 leaves them to the
/// application). A file with one of the later kinds can be started as well as viewed.
enum class PreambleKind { kNone, kZero, kTiff, kOther, kPe, kElf, kMachO, kScript };

PreambleKind KindOfPreamble(std::string_view preamble);

/// "zero", "TIFF", "PE", ...; "none" for a file without preamble.
const char* NameOf(PreambleKind kind);

constexpr bool IsExecutable(PreambleKind kind) { return kind >= PreambleKind::kPe; }

}  // namespace emulator
