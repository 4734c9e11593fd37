#include "emulator/vessa/offset_follower.h"

#include <algorithm>
#include <array>

#include "emulator/tag_text.h"
#include "emulator/transfer_syntax.h"

namespace emulator::tool {
namespace {

constexpr std::uint64_t kShortHeader = 8;  // also of items and delimitations
constexpr std::uint64_t kLongHeader = 12;

/// The library reads other VRs with a 2-byte length.
bool HasLongHeader(std::string_view vr) {
  constexpr std::array<std::string_view, 7> kLong = {"OX", "OB", "OW", "OF", "SQ", "UT", "UN"};
  return std::find(kLong.begin(), kLong.end(), vr) != kLong.end();
}

}  // namespace

void OffsetFollower::StartContent(std::string_view transfer_syntax) {
  has_implicit_vrs_ = HasImplicitVr(transfer_syntax);
  if (transfer_syntax == kDeflatedExplicitLittleEndian) offset_ = 0;
}

std::uint64_t OffsetFollower::StartElement(std::string_view vr, std::uint32_t length) {
  lengths_.push_back(length);
  return Pass(!has_implicit_vrs_ && HasLongHeader(vr) ? kLongHeader : kShortHeader);
}

void OffsetFollower::EndElement() {
  if (!lengths_.empty()) lengths_.pop_back();
}

std::uint64_t OffsetFollower::StartItem() { return Pass(kShortHeader); }

void OffsetFollower::EndItem(bool is_fragment, std::uint32_t length) {
  if (!is_fragment && length == kUndefinedLength) Pass(kShortHeader);
}

void OffsetFollower::EndSequence() {
  if (!lengths_.empty() && lengths_.back() == kUndefinedLength) Pass(kShortHeader);
}

std::uint64_t OffsetFollower::Pass(std::uint64_t bytes) {
  const std::uint64_t start = offset_;
  offset_ += bytes;
  return start;
}

}  // namespace emulator::tool
