#include "emulator/long_strings.h"

#include <algorithm>
#include <utility>

#include "emulator/host_error.h"

namespace emulator {
namespace {

/// Short texts lie inside their objects, which a growing vector moves.
constexpr std::size_t kLeastCapacity = 64;

template <class Text>
void* New(vessa::LongStringDescriptor* descriptor, int length, std::vector<Text>& areas) {
  if (descriptor == nullptr || length < 0) throw HostError{kInvalidArgument};
  if (descriptor->length != 0 || descriptor->area != nullptr) throw HostError{kDescriptorInUse};
  Text area;
  area.reserve(std::max(static_cast<std::size_t>(length), kLeastCapacity));
  area.resize(static_cast<std::size_t>(length));
  areas.push_back(std::move(area));
  descriptor->length = static_cast<std::uint32_t>(length);
  descriptor->area = areas.back().data();
  return descriptor->area;
}

template <class Text>
Text Take(const vessa::LongStringDescriptor* descriptor, std::vector<Text>& areas) {
  if (descriptor == nullptr) throw HostError{kInvalidArgument};
  const auto found = std::find_if(areas.begin(), areas.end(), [descriptor](const Text& area) {
    return area.data() == descriptor->area && area.size() == descriptor->length;
  });
  if (found == areas.end()) throw HostError{kInvalidArgument};
  Text text = std::move(*found);
  areas.erase(found);
  return text;
}

}  // namespace

void* LongStrings::NewBytes(vessa::LongStringDescriptor* descriptor, int length) {
  return New(descriptor, length, bytes_);
}

void* LongStrings::NewUnits(vessa::LongStringDescriptor* descriptor, int length) {
  return New(descriptor, length, units_);
}

std::string LongStrings::TakeBytes(const vessa::LongStringDescriptor* descriptor) {
  return Take(descriptor, bytes_);
}

std::u16string LongStrings::TakeUnits(const vessa::LongStringDescriptor* descriptor) {
  const std::vector<std::uint16_t> units = Take(descriptor, units_);
  return {units.begin(), units.end()};
}

void LongStrings::Clear() {
  bytes_.clear();
  units_.clear();
}

}  // namespace emulator
