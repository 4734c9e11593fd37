#include "emulator/vessa/value_representation.h"

#include <algorithm>
#include <array>

namespace emulator::tool {
namespace {

constexpr std::array kRows = {
    ValueRepresentation{"AE", ValueKind::kText, 1, true},
    ValueRepresentation{"AS", ValueKind::kText, 1, true},
    ValueRepresentation{"AT", ValueKind::kTag, 4, true},
    ValueRepresentation{"CS", ValueKind::kText, 1, true},
    ValueRepresentation{"DA", ValueKind::kText, 1, true},
    ValueRepresentation{"DS", ValueKind::kNumberText, 1, true},
    ValueRepresentation{"DT", ValueKind::kText, 1, true},
    ValueRepresentation{"FD", ValueKind::kFloat, 8, true},
    ValueRepresentation{"FL", ValueKind::kFloat, 4, true},
    ValueRepresentation{"IS", ValueKind::kNumberText, 1, true},
    ValueRepresentation{"LO", ValueKind::kLocalText, 1, true},
    ValueRepresentation{"LT", ValueKind::kLocalText, 1, false},
    ValueRepresentation{"OB", ValueKind::kBytes, 1, false},
    ValueRepresentation{"OD", ValueKind::kBytes, 1, false},
    ValueRepresentation{"OF", ValueKind::kBytes, 1, false},
    ValueRepresentation{"OL", ValueKind::kBytes, 1, false},
    ValueRepresentation{"OV", ValueKind::kBytes, 1, false},
    ValueRepresentation{"OW", ValueKind::kBytes, 1, false},
    ValueRepresentation{"PN", ValueKind::kPersonName, 1, true},
    ValueRepresentation{"SH", ValueKind::kLocalText, 1, true},
    ValueRepresentation{"SL", ValueKind::kSigned, 4, true},
    ValueRepresentation{"SQ", ValueKind::kSequence, 1, false},
    ValueRepresentation{"SS", ValueKind::kSigned, 2, true},
    ValueRepresentation{"ST", ValueKind::kLocalText, 1, false},
    ValueRepresentation{"SV", ValueKind::kSigned, 8, true},
    ValueRepresentation{"TM", ValueKind::kText, 1, true},
    ValueRepresentation{"UC", ValueKind::kLocalText, 1, true},
    ValueRepresentation{"UI", ValueKind::kText, 1, true},
    ValueRepresentation{"UL", ValueKind::kUnsigned, 4, true},
    ValueRepresentation{"UN", ValueKind::kBytes, 1, false},
    ValueRepresentation{"UR", ValueKind::kText, 1, false},
    ValueRepresentation{"US", ValueKind::kUnsigned, 2, true},
    ValueRepresentation{"UT", ValueKind::kLocalText, 1, false},
    ValueRepresentation{"UV", ValueKind::kUnsigned, 8, true},
};

constexpr ValueRepresentation kUnknown{"UN", ValueKind::kBytes, 1, false};

constexpr bool NameIsLess(const ValueRepresentation& row, std::string_view name) { return row.name < name; }

}  // namespace

const ValueRepresentation& FindValueRepresentation(std::string_view vr) {
  const auto row = std::lower_bound(kRows.begin(), kRows.end(), vr, NameIsLess);
  return row != kRows.end() && row->name == vr ? *row : kUnknown;
}

}  // namespace emulator::tool
