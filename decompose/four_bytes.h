#pragma once

// What the headers of elements and items are made of (PS3.5 section 7.1): units of four bytes. Most of them lie at
// hand in the stream, and are then taken without a call of its operations.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "dicom/status.h"
#include "stream/input_stream.h"

namespace vessa {

using FourBytes = std::array<std::uint8_t, 4>;

/// @return  false at the end of the stream
inline bool PeekFourBytes(CVessaInputStream& stream, FourBytes& bytes) {
  if (stream.CanTake(bytes.size())) [[likely]] {
    std::copy_n(stream.AtHand().data(), bytes.size(), bytes.data());
    return true;
  }
  bool at_end = false;
  RaiseIfNegative(stream.Peek(bytes, at_end));
  return !at_end;
}

inline FourBytes ReadFourBytes(CVessaInputStream& stream) {
  FourBytes bytes;
  if (stream.CanTake(bytes.size())) [[likely]] {
    std::copy_n(stream.AtHand().data(), bytes.size(), bytes.data());
    stream.Take(bytes.size());
  } else {
    RaiseIfNegative(stream.Read(bytes));
  }
  return bytes;
}

inline void SkipFourBytes(CVessaInputStream& stream) {
  constexpr std::size_t kFour = FourBytes().size();
  if (stream.CanTake(kFour)) [[likely]] {
    stream.Take(kFour);
  } else {
    RaiseIfNegative(stream.Skip(kFour));
  }
}

}  // namespace vessa
