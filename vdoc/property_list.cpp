#include "vdoc/property_list.h"

namespace vessa {

std::vector<std::uint32_t> ReadPropertyList(VessaROList& list) {
  const std::uint64_t count = list.Count();
  std::vector<std::uint32_t> entries;
  entries.reserve(static_cast<std::size_t>(count));
  for (std::uint64_t i = 0; i < count; ++i) {
    list.Seek(i);
    entries.push_back(static_cast<std::uint32_t>(list.GetInt64()));
  }
  return entries;
}

}  // namespace vessa
