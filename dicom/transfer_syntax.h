#pragma once

#include <string_view>

namespace vessa {

// Transfer syntaxes by UID (PS3.6 table A-1). UIDs are compared as they stand: a padding byte makes one
// unknown.

bool IsEncapsulatedTransferSyntax(std::string_view uid);
/// Explicit VR big endian, the one syntax of that order.
bool IsBigEndianTransferSyntax(std::string_view uid);
/// Native, big endian or encapsulated.
bool IsKnownTransferSyntax(std::string_view uid);
bool IsExplicitVRTransferSyntax(std::string_view uid);
/// Neither native nor encapsulated. Explicit VR big endian counts as unsupported, although it is known.
bool IsUnsupportedTransferSyntax(std::string_view uid);

}  // namespace vessa
