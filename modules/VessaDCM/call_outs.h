#pragma once

#include <cstdint>

#include "modules/VessaDCM/call.h"

namespace vessa {

// The work behind the rows of the call-out table. What takes a Call runs inside the frame and reads its
// arguments in the order given here; the others are the host's entries themselves.

/// 1 tag -> display form, VR, keyword, VM, note; five empty texts for an unknown tag.
inline constexpr ArgumentRule kTagInfoArguments{1, " VessaDCM::zfTagInfo: tag argument missing"};
void zfTagInfo(Call& call);

/// 1 keyword -> tag; 4294967295 when there is none.
inline constexpr ArgumentRule kNameTagArguments{1, " VessaDCM::zfNameTag: tag name argument missing"};
void zfNameTag(Call& call);

/// 1 input stream oref, 2 transfer syntax, 3 content handler oref, 4 client oref -> nothing.
inline constexpr ArgumentRule kDecomposeStreamArguments{
    4,
    " VessaDCM::zfDecomposeStream: Expected input stream, transfer syntax, content handler oref and client "
    "oref "
    "arguments"};
void zfDecomposeStream(Call& call);

/// 1 property reference -> the encoded property list, as one 8-bit text.
inline constexpr ArgumentRule kParsePropertyReferenceArguments{
    1, "VessaDCM::zfParsePropertyReference: Expected property reference argument",
    ArgumentRule::Message::kPrecedesStep};
void zfParsePropertyReference(Call& call);

/// 1 property subscript reference -> the encoded property list, as one 8-bit text.
inline constexpr ArgumentRule kParsePropertySubscriptReferenceArguments{
    1, "VessaDCM::zfParsePropertySubscriptReference: Expected property subscript reference argument",
    ArgumentRule::Message::kPrecedesStep};
void zfParsePropertySubscriptReference(Call& call);

/// 1 input stream oref, 2 transfer syntax, 3 property list, 4 optional sequence-answer flag -> VR and value,
/// or nothing. The message names four arguments although three are demanded; both are kept.
inline constexpr ArgumentRule kQueryStreamArguments{
    3, " VessaDCM::zfQueryStream: Expected input stream, key, transfer syntax and vdoclist arguments"};
void zfQueryStream(Call& call);

/// 1 file-header flag, 2 file name, 3 transfer syntax, 4 property list, 5 optional sequence-answer flag, 6
/// optional output stream oref -> VR and value, or nothing. The message is that of zfQueryStream, and that is
/// kept.
inline constexpr ArgumentRule kQueryFileOrDataSetArguments{4, kQueryStreamArguments.missing_text};
void zfQueryFileOrDataSet(Call& call);

/// 1 input stream oref, 2 transfer syntax, 3 property list -> number of the next item, 0 when there is none.
inline constexpr ArgumentRule kGetNextSubscriptArguments{
    3, " VessaDCM::zfGetNextSubscript: Expected input stream, transfer syntax and vdoclist arguments"};
void zfGetNextSubscript(Call& call);

/// 1 output stream oref, 2 data set identifier, 3 transfer syntax to write, 4 original transfer syntax, 5
/// pixel data stream oref or 0 -> nothing. The message leaves the identifier out although five are demanded;
/// both are kept.
inline constexpr ArgumentRule kComposeStreamArguments{5,
                                                      " VessaDCM::zfComposeStream: Expected output stream, "
                                                      "original transfer syntax, transfer syntax, pixel data "
                                                      "stream arguments"};
void zfComposeStream(Call& call);

/// Reverses the units of `unit_size` bytes in place. @return 0, or 1 for a unit size that is none
std::int32_t zfSwitchByteOrdering(HostString* buffer, std::int32_t unit_size);

/// Hexadecimal text in, decimal text out. @return 0, or 1 with the buffer as it was
std::int32_t zfBigHexToDecimal(HostString* buffer);

/// Packs one host stream into another. @return 0 or -1
std::int32_t zfDeflateStream(std::int32_t level, std::int32_t in, std::int32_t out);

/// Unpacks one host stream into another: the streams stand one place earlier than in zfDeflateStream, and the
/// last argument is not used. @return 0 or -1
std::int32_t zfInflateStream(std::int32_t in, std::int32_t out, std::int32_t unused);

/// @return -1, whatever it is given
std::int32_t zfDICOMServer();

/// @return 0; leaves the buffer untouched
std::int32_t zfPLACEHOLDER(HostString* buffer);

}  // namespace vessa
