#pragma once

#include <cstdint>

#include "stream/input_stream.h"

namespace vessa {

/// What the streams over a host stream object have in common: the reference of that object.
class CVessaBinaryOrefInputStream : public CVessaInputStream {
 public:
  std::uint32_t GetOref() override { return oref_; }
  /// The host property "Size".
  /// @throws CDecomposeException  the host failed
  std::int32_t GetSize() override;

 protected:
  explicit CVessaBinaryOrefInputStream(std::uint32_t oref) : oref_{oref} {}

 private:
  std::uint32_t oref_;
};

}  // namespace vessa
