#pragma once

#include <optional>
#include <string>

#include "emulator/store/data_set_outline.h"

namespace emulator {

/// The first difference between a data set and what was written of it, in words that begin with the path of the
/// element: "(0008,1140) item 2 > (0008,1150): ...". Nothing when both are the same. The order of the elements in an
/// item does not matter. VRs that come from the dictionary, as in implicit VR syntaxes, are held against what may
/// stand for them.
std::optional<std::string> FirstDifference(const DataSetOutline& source, const DataSetOutline& written);

}  // namespace emulator
