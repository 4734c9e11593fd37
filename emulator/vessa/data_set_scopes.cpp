#include "emulator/vessa/data_set_scopes.h"

#include "emulator/vessa/numbers.h"
#include "emulator/vessa/printable_text.h"
#include "emulator/vessa/tag_text.h"

namespace emulator::tool {
namespace {

constexpr std::uint64_t kBitsOfAByte = 8;

constexpr std::size_t kCreatorBytes = 64;

std::uint64_t FirstUnsignedShort(std::string_view value) { return UnsignedLittleEndian(value.substr(0, 2)); }

}  // namespace

bool IsPrivateCreator(std::uint32_t tag) {
  constexpr std::uint32_t kFirst = 0x10;
  constexpr std::uint32_t kLast = 0xFF;
  return IsPrivate(tag) && ElementOf(tag) >= kFirst && ElementOf(tag) <= kLast;
}

void DataSetScopes::EnterItem() {
  const Scope& outer = scopes_.back();
  scopes_.push_back({outer.characters, outer.has_signed_pixels, outer.bits_allocated, {}});
}

std::string DataSetScopes::PrivateCreatorOf(std::uint32_t tag) const {
  const auto& creators = scopes_.back().private_creators;
  const auto creator = creators.find((tag & 0xFFFF0000U) | ElementOf(tag) >> 8U);
  return creator == creators.end() ? std::string() : creator->second;
}

void DataSetScopes::Observe(std::uint32_t tag, std::string_view value) {
  Scope& scope = scopes_.back();
  if (tag == kSpecificCharacterSet) scope.characters = CharacterSets(value);
  if (tag == kPixelRepresentation) scope.has_signed_pixels = FirstUnsignedShort(value) == 1;
  if (tag == kBitsAllocated) scope.bits_allocated = FirstUnsignedShort(value);
  if (IsPrivateCreator(tag))
    scope.private_creators[tag] = PrintableAscii(WithoutPadding(value.substr(0, kCreatorBytes)));
}

std::string_view DataSetScopes::Resolve(std::uint32_t tag, std::string_view vr) const {
  const Scope& scope = scopes_.back();
  if (vr == "XS") return scope.has_signed_pixels ? "SS" : "US";
  if (vr != "OX") return vr;
  const bool fits_bytes = scope.bits_allocated > 0 && scope.bits_allocated <= kBitsOfAByte;
  return tag == kPixelData && fits_bytes ? "OB" : "OW";
}

}  // namespace emulator::tool
