#include "dicom/private_tag.h"

#include "dicom/hex_text.h"

namespace vessa {

std::string PrivateTagText(Tag tag) { return HexText(tag.Value(), 8, kLowerHexDigits); }

}  // namespace vessa
