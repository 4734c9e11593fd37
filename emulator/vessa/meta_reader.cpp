#include "emulator/vessa/meta_reader.h"

#include "emulator/vessa/printable_text.h"
#include "emulator/vessa/tag_text.h"

namespace emulator::tool {

std::string MetaReader::TransferSyntax() const { return std::string(WithoutPadding(value_)); }

void MetaReader::Data(std::uint32_t tag, std::uint32_t chunk, std::string_view bytes) {
  if (tag == kTransferSyntaxUid && chunk == 1) value_ = bytes;
  next_.Data(tag, chunk, bytes);
}

}  // namespace emulator::tool
