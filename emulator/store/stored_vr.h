#pragma once

// The VR that a host keeps for an element of a data set in an implicit VR syntax, where the library gives the
// dictionary's. It has to be one that can stand in a data set with explicit VRs.

#include <cstdint>
#include <optional>
#include <string_view>

namespace emulator {

/// What of a data set or an item decides between two VRs (PS3.5 section A.1 and the notes of PS3.6 table 6-1).
struct PixelDescription {
  std::optional<std::uint16_t> pixel_representation;     ///< (0028,0103)
  std::optional<std::uint16_t> bits_allocated;           ///< (0028,0100)
  std::optional<std::uint16_t> waveform_bits_allocated;  ///< (5400,1004)
};

/// The longest value of a VR whose length is written in 16 bits.
inline constexpr std::uint32_t kLongestShortValue = 0xFFFE;

/// True for the dictionary's placeholders XS (US or SS) and OX (OB or OW).
bool IsPlaceholder(std::string_view vr);

/// The VR to be kept when it does not depend on other elements, as it does for placeholders only:
///   private creators                      LO
///   other private and unknown elements    UN
///   a value too long for its VR's length  UN (PS3.5 section 6.2.2)
///   OD, OL, OV, SV, UC, UR, UV            UN: the library writes these with 16-bit lengths, which other programs cannot
///                                         read
///   all others                            the dictionary's
std::string_view StoredVr(std::uint32_t tag, std::string_view dictionary_vr, std::uint32_t length);

/// The VR behind a placeholder:
///   XS   SS when the pixels are signed, else US; US for look-up tables, which are never signed, and OW for values too
///        long for a 16-bit length
///   OX   OW; OB for pixel data and for waveforms whose samples have up to 8 bits
std::string_view ResolvedVr(std::uint32_t tag, std::string_view placeholder, std::uint32_t length,
                            const PixelDescription& description);

}  // namespace emulator
