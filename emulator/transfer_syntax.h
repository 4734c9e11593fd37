#pragma once

// The transfer syntaxes of PS3.5 annex A that a host has to tell apart on its own.

#include <string_view>

namespace emulator {

inline constexpr const char* kImplicitLittleEndian = "1.2.840.10008.1.2";
inline constexpr const char* kExplicitLittleEndian = "1.2.840.10008.1.2.1";
inline constexpr const char* kDeflatedExplicitLittleEndian = "1.2.840.10008.1.2.1.99";
inline constexpr const char* kExplicitBigEndian = "1.2.840.10008.1.2.2";
inline constexpr const char* kPapyrusImplicitLittleEndian = "1.2.840.10008.1.20";

/// True where elements carry no VR.
constexpr bool HasImplicitVr(std::string_view uid) {
  return uid == kImplicitLittleEndian || uid == kPapyrusImplicitLittleEndian;
}

/// True where pixel data are not compressed.
constexpr bool HasNativePixels(std::string_view uid) {
  return HasImplicitVr(uid) || uid == kExplicitLittleEndian || uid == kDeflatedExplicitLittleEndian ||
         uid == kExplicitBigEndian;
}

/// True where pixel data come in fragments.
bool HasEncapsulatedPixels(std::string_view uid);

}  // namespace emulator
