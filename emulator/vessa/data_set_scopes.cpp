#include "emulator/vessa/data_set_scopes.h"

#include "emulator/vessa/numbers.h"
#include "emulator/vessa/tag_text.h"

namespace emulator::tool {
namespace {

constexpr std::uint64_t kBitsOfAByte = 8;

std::uint64_t FirstUnsignedShort(std::string_view value) { return UnsignedLittleEndian(value.substr(0, 2)); }

}  // namespace

void DataSetScopes::Observe(std::uint32_t tag, std::string_view value) {
  Scope& scope = scopes_.back();
  if (tag == kSpecificCharacterSet) scope.characters = CharacterSets(value);
  if (tag == kPixelRepresentation) scope.has_signed_pixels = FirstUnsignedShort(value) == 1;
  if (tag == kBitsAllocated) scope.bits_allocated = FirstUnsignedShort(value);
}

std::string_view DataSetScopes::Resolve(std::uint32_t tag, std::string_view vr) const {
  const Scope& scope = scopes_.back();
  if (vr == "XS") return scope.has_signed_pixels ? "SS" : "US";
  if (vr != "OX") return vr;
  const bool fits_bytes = scope.bits_allocated > 0 && scope.bits_allocated <= kBitsOfAByte;
  return tag == kPixelData && fits_bytes ? "OB" : "OW";
}

}  // namespace emulator::tool
