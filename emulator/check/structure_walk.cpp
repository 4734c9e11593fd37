#include "emulator/check/structure_walk.h"

#include <algorithm>
#include <utility>

#include "emulator/check/library_texts.h"
#include "emulator/tag_text.h"
#include "emulator/transfer_syntax.h"

namespace emulator {
namespace {

constexpr std::uint64_t kMostValueBytes = 32648;  // of (0002,0010): what the library hands on at once
constexpr std::size_t kPathSteps = 64;

struct Failure {
  std::string text;
};

bool IsOneOf(std::string_view vr, std::initializer_list<std::string_view> vrs) {
  return std::find(vrs.begin(), vrs.end(), vr) != vrs.end();
}

/// Those that the library reads with a 4-byte length. PS3.5 section 7.1.2 has more.
bool HasLongLength(std::string_view vr) { return IsOneOf(vr, {"OX", "OB", "OW", "OF", "SQ", "UT", "UN"}); }

bool MayBeUndefined(std::string_view vr) { return IsOneOf(vr, {"SQ", "UN", "OB", "OW", "NA"}); }

bool CanBeDecomposed(std::string_view syntax) {
  return syntax != kExplicitBigEndian && (HasNativePixels(syntax) || HasEncapsulatedPixels(syntax));
}

}  // namespace

StructureWalk::StructureWalk(DataCursor& cursor, std::string transfer_syntax, Extent extent,
                             const DictionaryVr& dictionary, FindingList& findings)
    : cursor_(cursor),
      transfer_syntax_(std::move(transfer_syntax)),
      extent_(extent),
      dictionary_(dictionary),
      findings_(findings),
      has_implicit_vrs_(HasImplicitVr(transfer_syntax_)) {}

Prediction StructureWalk::Run() {
  Prediction prediction;
  try {
    if (!CanBeDecomposed(transfer_syntax_)) throw Failure{library_texts::UnsupportedSyntax(transfer_syntax_)};
    Step step = Step::kGoesOn;
    while (step == Step::kGoesOn) step = TakeStep();
    if (step == Step::kWaits) prediction.outcome = Prediction::Outcome::kDoesNotReturn;
  } catch (const Failure& failure) {
    prediction.outcome = Prediction::Outcome::kFails;
    prediction.message = library_texts::Message(failure.text);
  } catch (const DataEnded&) {
    prediction.outcome = Prediction::Outcome::kFails;
    prediction.message = library_texts::Message("");
  }
  prediction.offset = cursor_.Offset();
  prediction.is_at_end = cursor_.IsAtEnd();
  prediction.path = Path();
  return prediction;
}

StructureWalk::Step StructureWalk::TakeStep() {
  if (open_.empty()) return StepAtTopLevel();
  if (path_.back().item_is_open != 0) return StepInItem();
  StepBetweenItems();
  return Step::kGoesOn;
}

StructureWalk::Step StructureWalk::StepAtTopLevel() {
  if (cursor_.IsAtEnd()) return Step::kEnds;
  if (extent_ == Extent::kMetaGroup && GroupOf(cursor_.PeekTag()) != kMetaGroup) return Step::kEnds;
  ReadElement();
  return Step::kGoesOn;
}

/// An item of defined length ends by position alone, one of undefined length with its delimitation or with the data.
StructureWalk::Step StructureWalk::StepInItem() {
  if (IsInDefinedItem() && cursor_.Offset() >= *open_.back().item_end) {
    if (cursor_.Offset() > *open_.back().item_end) Note(FindingKind::kOverrun, *open_.back().item_end);
    CloseItem();
  } else if (!cursor_.IsAtEnd()) {
    if (extent_ == Extent::kMetaGroup) cursor_.PeekTag();
    ReadElement();
  } else if (IsInDefinedItem()) {
    return Step::kWaits;
  } else {
    Note(FindingKind::kUnendedItem, cursor_.Offset());
    CloseItem();
  }
  return Step::kGoesOn;
}

void StructureWalk::StepBetweenItems() {
  const std::optional<std::uint64_t> end = open_.back().end;
  if (end && cursor_.Offset() >= *end) {
    if (cursor_.Offset() > *end) Note(FindingKind::kOverrun, *end);
    return CloseSequence();
  }
  const std::uint64_t offset = cursor_.Offset();
  const std::uint32_t tag = cursor_.TakeTag();
  const std::uint32_t length = cursor_.TakeNumber(4);
  if (tag == kSequenceDelimitation) {
    if (end) throw Failure{library_texts::kSequenceEndInDefinedSequence};
    if (length != 0) Note(FindingKind::kDelimiterLength, offset);
    return CloseSequence();
  }
  if (tag != kItem) throw Failure{library_texts::NoItem(tag)};
  OpenItem(length);
}

// Element, in stream order:
//   tag      4 bytes   group, element
//   VR and length      see ReadVrAndLength; also behind delimitation tags
//   value    length bytes, or items up to a delimitation
void StructureWalk::ReadElement() {
  Header header{cursor_.Offset(), cursor_.TakeTag(), {}, 0};
  ReadVrAndLength(header);
  if (header.tag == kItem) throw Failure{library_texts::kItemAsElement};
  if (header.tag == kSequenceDelimitation) throw Failure{library_texts::kSequenceEndAsElement};
  if (header.tag == kItemDelimitation) {
    if (open_.empty() || IsInDefinedItem()) throw Failure{library_texts::kUnexpectedItemEnd};
    if (header.length != 0) Note(FindingKind::kDelimiterLength, header.offset);
    return CloseItem();
  }
  Inspect(header);
  StartElement(header);
}

// VR and length, in stream order:
//   VR        2 bytes   absent in implicit syntaxes
//   reserved  2 bytes   only before a 4-byte length
//   length    2 or 4
void StructureWalk::ReadVrAndLength(Header& header) {
  if (has_implicit_vrs_) {
    header.vr = dictionary_(header.tag);
    if (header.vr.empty()) header.vr = "UN";
    header.length = cursor_.TakeNumber(4);
  } else {
    header.vr = cursor_.Take(2);
    const bool is_long = HasLongLength(header.vr);
    header.length = cursor_.TakeNumber(2);
    if (is_long) header.length = cursor_.TakeNumber(4);
  }
  if (header.length == kUndefinedLength) {
    if (!MayBeUndefined(header.vr)) throw Failure{library_texts::UndefinedLength(header.vr)};
  } else if (header.length % 2 != 0) {
    throw Failure{library_texts::kOddLength};
  }
}

void StructureWalk::StartElement(const Header& header) {
  path_.push_back({header.tag, 0, 0, 0});
  const bool is_sequence = header.vr == "SQ";
  if (is_sequence && header.length != 0) {
    open_.emplace_back();
    if (header.length != kUndefinedLength) open_.back().end = cursor_.Offset() + header.length;
    return;
  }
  if (!is_sequence && header.length == kUndefinedLength) {
    PassFragments(header);
  } else if (!is_sequence) {
    PassValue(header.tag, header.length);
  }
  EndElement();
}

void StructureWalk::EndElement() { path_.pop_back(); }

void StructureWalk::OpenItem(std::uint32_t length) {
  PathStep& step = path_.back();
  step.items += 1;
  step.item_is_open = 1;
  step.item_length = length;
  OpenSequence& sequence = open_.back();
  sequence.last_tag.reset();
  sequence.item_end.reset();
  if (length != kUndefinedLength) sequence.item_end = cursor_.Offset() + length;
}

void StructureWalk::CloseItem() { path_.back().item_is_open = 0; }

void StructureWalk::CloseSequence() {
  open_.pop_back();
  EndElement();
}

void StructureWalk::PassValue(std::uint32_t tag, std::uint32_t length) {
  const std::uint64_t kept = tag == kTransferSyntaxUid ? std::min<std::uint64_t>(length, kMostValueBytes) : 0;
  if (tag == kTransferSyntaxUid) transfer_syntax_value_ = cursor_.Take(kept);
  cursor_.Skip(length - kept);
}

/// Encapsulated pixel data (PS3.5 section A.4): items up to a sequence delimitation.
void StructureWalk::PassFragments(const Header& header) {
  if (!HasEncapsulatedPixels(transfer_syntax_))
    throw Failure{library_texts::NoEncapsulatedSyntax(transfer_syntax_)};
  if (header.tag != kPixelData) throw Failure{library_texts::NoEncapsulatedTag(header.tag)};
  if (header.vr != "OB" && header.vr != "OW") throw Failure{library_texts::NoEncapsulatedVr(header.vr)};
  for (;;) {
    const std::uint32_t tag = cursor_.TakeTag();
    const std::uint32_t length = cursor_.TakeNumber(4);
    if (tag == kSequenceDelimitation) {
      if (length != 0) throw Failure{library_texts::FragmentsEndWithLength(length)};
      return;
    }
    if (tag != kItem) throw Failure{library_texts::kNoFragment};
    if (length == kUndefinedLength) throw Failure{library_texts::kUndefinedFragment};
    PathStep& step = path_.back();
    step.items += 1;
    step.item_is_open = 1;
    PassValue(header.tag, length);
    step.item_is_open = 0;
  }
}

void StructureWalk::Note(FindingKind kind, std::uint64_t offset) {
  if (!is_misread_) findings_.Note(kind, offset, [this] { return Path(); });
}

std::string StructureWalk::Path() const {
  if (path_.empty()) return {};
  const std::span<const PathStep> first = std::span(path_).first(std::min(path_.size(), kPathSteps));
  return PathText(first, path_.size(), path_.back());
}

}  // namespace emulator
