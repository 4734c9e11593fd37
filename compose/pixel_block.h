#pragma once

#include <cstddef>

namespace vessa {

/// Pixel data are looked at and copied in blocks of the size in which decomposed values come. A multiple of
/// every swap unit.
inline constexpr std::size_t kPixelBlockBytes = 32648;
static_assert(kPixelBlockBytes % 8 == 0);

}  // namespace vessa
