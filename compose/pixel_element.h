#pragma once

#include <cstdint>

#include "compose/element_writer.h"
#include "dicom/vr.h"

namespace vessa {

/// Where the value of the top-level Pixel Data comes from, and how it is to be taken.
struct PixelDataStream {
  std::uint32_t oref;  ///< host stream, read from where it stands; 0 for none
  bool never_framed;   ///< takes the data as not framed, without a look at them
};

/// Writes the Pixel Data element (PS3.5 section A.4 where the stream holds framed data): its length is
/// undefined when it is marked so or the data are framed, else what is left in the stream. The bytes of the
/// stream are copied as they stand, with no item or delimiter around them.
/// @throws CComposeException  no stream, or one that ends early
/// @throws CDecomposeException  a host stream failed
/// @throws Status  kUnexpected  bytes are to be swapped and the VR has no swap unit
void ComposePixelElement(ElementWriter& writer, const PixelDataStream& pixel_data, Vr vr,
                         bool marked_undefined);

}  // namespace vessa
