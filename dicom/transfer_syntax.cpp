#include "dicom/transfer_syntax.h"

#include <algorithm>
#include <array>

namespace vessa {
namespace {

constexpr std::string_view kImplicitLittleEndian = "1.2.840.10008.1.2";
constexpr std::string_view kExplicitLittleEndian = "1.2.840.10008.1.2.1";
constexpr std::string_view kDeflatedExplicitLittleEndian = "1.2.840.10008.1.2.1.99";
constexpr std::string_view kExplicitBigEndian = "1.2.840.10008.1.2.2";
constexpr std::string_view kPapyrusImplicitLittleEndian = "1.2.840.10008.1.20";

constexpr std::array<std::string_view, 42> kEncapsulated = {
    "1.2.840.10008.1.2.1.98",   // encapsulated, uncompressed
    "1.2.840.10008.1.2.4.50",   // JPEG, 50 to 66
    "1.2.840.10008.1.2.4.51",   //
    "1.2.840.10008.1.2.4.52",   //
    "1.2.840.10008.1.2.4.53",   //
    "1.2.840.10008.1.2.4.54",   //
    "1.2.840.10008.1.2.4.55",   //
    "1.2.840.10008.1.2.4.56",   //
    "1.2.840.10008.1.2.4.57",   //
    "1.2.840.10008.1.2.4.58",   //
    "1.2.840.10008.1.2.4.59",   //
    "1.2.840.10008.1.2.4.60",   //
    "1.2.840.10008.1.2.4.61",   //
    "1.2.840.10008.1.2.4.62",   //
    "1.2.840.10008.1.2.4.63",   //
    "1.2.840.10008.1.2.4.64",   //
    "1.2.840.10008.1.2.4.65",   //
    "1.2.840.10008.1.2.4.66",   //
    "1.2.840.10008.1.2.4.70",   // JPEG lossless, first-order prediction
    "1.2.840.10008.1.2.5",      // RLE lossless
    "1.2.840.10008.1.2.4.80",   // JPEG-LS
    "1.2.840.10008.1.2.4.81",   //
    "1.2.840.10008.1.2.4.90",   // JPEG 2000
    "1.2.840.10008.1.2.4.91",   //
    "1.2.840.10008.1.2.4.92",   //
    "1.2.840.10008.1.2.4.93",   //
    "1.2.840.10008.1.2.4.100",  // MPEG-2
    "1.2.840.10008.1.2.4.101",  //
    "1.2.840.10008.1.2.6.1",    // RFC 2557 MIME
    "1.2.840.10008.1.2.6.2",    // XML encoding
    "1.2.840.10008.1.2.4.94",   // JPIP referenced
    "1.2.840.10008.1.2.4.95",   //
    "1.2.840.10008.1.2.4.102",  // MPEG-4 AVC / H.264
    "1.2.840.10008.1.2.4.103",  //
    "1.2.840.10008.1.2.4.104",  //
    "1.2.840.10008.1.2.4.105",  //
    "1.2.840.10008.1.2.4.106",  //
    "1.2.840.10008.1.2.4.107",  // HEVC / H.265
    "1.2.840.10008.1.2.4.108",  //
    "1.2.840.10008.1.2.7.1",    // SMPTE ST 2110
    "1.2.840.10008.1.2.7.2",    //
    "1.2.840.10008.1.2.7.3",    //
};

bool IsNative(std::string_view uid) {
  return uid == kImplicitLittleEndian || uid == kExplicitLittleEndian ||
         uid == kDeflatedExplicitLittleEndian || uid == kPapyrusImplicitLittleEndian;
}

}  // namespace

bool IsEncapsulatedTransferSyntax(std::string_view uid) {
  return std::find(kEncapsulated.begin(), kEncapsulated.end(), uid) != kEncapsulated.end();
}

bool IsBigEndianTransferSyntax(std::string_view uid) { return uid == kExplicitBigEndian; }

bool IsKnownTransferSyntax(std::string_view uid) {
  return IsNative(uid) || IsBigEndianTransferSyntax(uid) || IsEncapsulatedTransferSyntax(uid);
}

bool IsExplicitVRTransferSyntax(std::string_view uid) {
  return uid == kExplicitLittleEndian || uid == kDeflatedExplicitLittleEndian ||
         IsBigEndianTransferSyntax(uid) || IsEncapsulatedTransferSyntax(uid);
}

bool IsUnsupportedTransferSyntax(std::string_view uid) {
  return !IsNative(uid) && !IsEncapsulatedTransferSyntax(uid);
}

}  // namespace vessa
