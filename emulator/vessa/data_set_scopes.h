#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/vessa/character_sets.h"

namespace emulator::tool {

/// True for an element that reserves a block of private ones (PS3.5 section 7.8.1).
bool IsPrivateCreator(std::uint32_t tag);

/// The elements that decide how others are read, as they stand for the data set or the sequence item at hand. An item
/// inherits what encloses it and may say otherwise.
class DataSetScopes {
 public:
  DataSetScopes() : scopes_(1) {}

  void EnterItem();
  void LeaveItem() {
    if (scopes_.size() > 1) scopes_.pop_back();
  }

  /// Takes note of an element's value, of which the first chunk is enough.
  void Observe(std::uint32_t tag, std::string_view value);

  /// Who reserved the block that a private element lies in (PS3.5 section 7.8.1), in ASCII; empty when nobody did.
  std::string PrivateCreatorOf(std::uint32_t tag) const;

  const CharacterSets& Characters() const { return scopes_.back().characters; }

  /// The VR in the standard's terms. The dictionary of implicit VR syntaxes has placeholders where the standard leaves
  /// a choice: XS becomes US or SS by Pixel Representation, OX becomes OW, or OB for pixel data of up to 8 bits.
  std::string_view Resolve(std::uint32_t tag, std::string_view vr) const;

 private:
  struct Scope {
    CharacterSets characters;
    bool has_signed_pixels = false;
    std::uint64_t bits_allocated = 0;                       ///< 0 when not known
    std::map<std::uint32_t, std::string> private_creators;  ///< by the tag of the creator; not inherited
  };
  std::vector<Scope> scopes_;
};

}  // namespace emulator::tool
