#include "dicom/tag.h"

#include "dicom/hex_text.h"

namespace vessa {

std::string TagText(Tag tag) { return HexText(tag.Value(), 8); }

std::string TagDisplay(Tag tag) {
  std::string text = "(gggg,eeee)";
  text.replace(1, 4, HexText(tag.Group(), 4));
  text.replace(6, 4, HexText(tag.Element(), 4));
  return text;
}

}  // namespace vessa
