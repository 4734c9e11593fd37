#include "fuzz/stream_account.h"

#include <algorithm>
#include <array>
#include <string>

#include "emulator/tag_text.h"
#include "emulator/transfer_syntax.h"
#include "fuzz/target.h"

namespace fuzz {
namespace {

using emulator::kItem;
using emulator::kItemDelimitation;
using emulator::kSequenceDelimitation;
using emulator::kUndefinedLength;

constexpr std::uint32_t kLongestChunk = 32648;

/// The VRs that the library reads with reserved bytes and a 4-byte length.
bool HasLongLength(std::string_view vr) {
  constexpr std::array<std::string_view, 7> kLong = {"OX", "OB", "OW", "OF", "SQ", "UT", "UN"};
  return std::find(kLong.begin(), kLong.end(), vr) != kLong.end();
}

}  // namespace

// --- Bytes -------------------------------------------------------------------------------------------------------

void StreamAccount::Match(std::string_view expected) {
  Require(bytes_.substr(std::min(position_, bytes_.size())).starts_with(expected),
          "an event stands for other bytes than those of the stream");
  position_ += expected.size();
}

void StreamAccount::MatchNumber(std::uint32_t number, std::size_t bytes) {
  std::string encoded;
  for (std::size_t i = 0; i < bytes; ++i) {
    encoded += static_cast<char>(static_cast<unsigned char>(number >> 8U * i & 0xFFU));
  }
  Match(encoded);
}

void StreamAccount::MatchTag(std::uint32_t tag) {
  MatchNumber(emulator::GroupOf(tag), 2);
  MatchNumber(emulator::ElementOf(tag), 2);
}

/// Its length is read like that of any element: where VRs are explicit, as a VR and a length.
void StreamAccount::PassItemDelimitation() {
  MatchTag(kItemDelimitation);
  const bool is_long = is_explicit_ && HasLongLength(bytes_.substr(std::min(position_, bytes_.size()), 2));
  position_ += is_long ? 8 : 4;
  Require(position_ <= bytes_.size(), "an item ended behind the end of the stream");
}

// --- What is open ------------------------------------------------------------------------------------------------

void StreamAccount::Push(Kind kind, std::uint32_t tag, std::uint32_t length) {
  open_.push_back({kind, tag, length, position_ + length});
}

StreamAccount::Open& StreamAccount::Innermost(Kind kind) {
  Require(!open_.empty() && open_.back().kind == kind, "an event out of its order");
  return open_.back();
}

bool StreamAccount::PeeksForEver() const {
  if (position_ != bytes_.size() || open_.empty()) return false;
  const Open& innermost = open_.back();
  return innermost.kind == Kind::kItem && innermost.length != kUndefinedLength && innermost.end > position_;
}

// --- Events ------------------------------------------------------------------------------------------------------

void StreamAccount::StartContent(std::string_view transfer_syntax) {
  Require(!started_, "the content starts twice");
  started_ = true;
  is_explicit_ = !emulator::HasImplicitVr(transfer_syntax);
}

void StreamAccount::EndContent() {
  Require(started_ && !ended_ && open_.empty(), "the content ends where it must not");
  ended_ = true;
}

void StreamAccount::StartElement(std::uint32_t tag, std::string_view vr, std::uint32_t length) {
  Require(started_ && !ended_, "an element outside of the content");
  Require(open_.empty() || open_.back().kind == Kind::kItem, "an element where none can be");
  MatchTag(tag);
  if (!is_explicit_) {
    MatchNumber(length, 4);
  } else {
    Match(vr);
    position_ += 2 - vr.size();  // of a VR with a zero byte in it, only what stands before it is told
    if (HasLongLength(vr)) position_ += 2;
    MatchNumber(length, HasLongLength(vr) ? 4 : 2);
  }
  Require(length == kUndefinedLength || length % 2 == 0, "an element of odd length");
  Push(Kind::kElement, tag, length);
  open_.back().left = length;
}

void StreamAccount::EndElement(std::uint32_t tag) {
  Require(Innermost(Kind::kElement).tag == tag, "an element ends that has not started");
  const Open& element = open_.back();
  const bool has_content = element.length != kUndefinedLength && element.length != 0;
  Require(!has_content || position_ >= element.end, "an element ends before its value does");
  open_.pop_back();
}

void StreamAccount::Data(std::uint32_t tag, std::uint32_t chunk, std::string_view bytes) {
  Require(!open_.empty(), "a value outside of an element");
  Open& innermost = open_.back();
  Require(chunk == ++innermost.chunks, "a chunk out of its order");
  Require(bytes.size() == std::min<std::uint64_t>(innermost.left, kLongestChunk), "a chunk of a wrong size");
  if (innermost.kind == Kind::kElement) Require(tag == innermost.tag, "a value of another element");
  innermost.left -= bytes.size();
  Match(bytes);
}

void StreamAccount::StartSequence() {
  const Open& element = Innermost(Kind::kElement);
  Push(Kind::kSequence, element.tag, element.length);
}

void StreamAccount::EndSequence() {
  const Open sequence = Innermost(Kind::kSequence);
  if (sequence.length == kUndefinedLength) {
    MatchTag(kSequenceDelimitation);
    position_ += 4;  // its length, whatever it is
  }
  open_.pop_back();
}

void StreamAccount::StartItem(std::uint32_t tag, std::uint32_t length) {
  Require(!open_.empty(), "an item outside of an element");
  if (open_.back().kind == Kind::kSequence) {
    Require(tag == open_.back().tag, "an item of another sequence");
    MatchTag(kItem);
    MatchNumber(length, 4);
    Push(Kind::kItem, tag, length);
    return;
  }
  Innermost(Kind::kElement);
  MatchTag(tag);  // of a fragment or of the delimitation behind all
  MatchNumber(length, 4);
  Push(Kind::kFragment, tag, length);
  open_.back().left = length;
}

void StreamAccount::EndItem(std::uint32_t tag, std::uint32_t length) {
  Require(!open_.empty() && open_.back().tag == tag && open_.back().length == length,
          "an item ends that has not started");
  if (open_.back().kind == Kind::kFragment) {
    Require(open_.back().left == 0, "a fragment ends before its value does");
  } else if (Innermost(Kind::kItem).length == kUndefinedLength) {
    // At the end of the stream such an item ends without its delimitation; then the call fails.
    if (position_ < bytes_.size()) PassItemDelimitation();
  } else {
    Require(position_ >= open_.back().end, "an item ends before its length does");
  }
  open_.pop_back();
}

}  // namespace fuzz
