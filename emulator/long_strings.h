#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "host/binary_interface.h"

namespace emulator {

/// The areas that the host has handed out for texts too long for a short push.
class LongStrings {
 public:
  // All of these: @throws HostError  kInvalidArgument for a descriptor or length that cannot be, kDescriptorInUse

  void* NewBytes(vessa::LongStringDescriptor* descriptor, int length);
  void* NewUnits(vessa::LongStringDescriptor* descriptor, int length);
  /// The text that the library has put into the area, which with that is taken back.
  std::string TakeBytes(const vessa::LongStringDescriptor* descriptor);
  std::u16string TakeUnits(const vessa::LongStringDescriptor* descriptor);

  std::size_t Open() const { return bytes_.size() + units_.size(); }
  void Clear();

 private:
  std::vector<std::string> bytes_;
  std::vector<std::vector<std::uint16_t>> units_;
};

}  // namespace emulator
