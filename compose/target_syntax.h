#pragma once

#include <string_view>

#include "dicom/byte_order.h"
#include "dicom/transfer_syntax.h"

namespace vessa {

/// How a data set is written, and from what byte order its values come.
struct TargetSyntax {
  TargetSyntax(std::string_view target, std::string_view original)
      : order{ByteOrderOf(target)},
        original_order{ByteOrderOf(original)},
        has_explicit_vrs{IsExplicitVRTransferSyntax(target)} {}

  bool SwapsBytes() const { return order != original_order; }

  ByteOrder order;
  ByteOrder original_order;
  bool has_explicit_vrs;
};

}  // namespace vessa
