#include "vdoc/vdoc_query.h"

#include <utility>

#include "vdoc/exceptions.h"
#include "vdoc/message_texts.h"
#include "vdoc/property_list.h"

namespace vessa {

CVDocQuery::CVDocQuery(const VessaROList& property_list, bool sequence_answer,
                       std::unique_ptr<CVessaBinaryOutputStream> result_stream)
    : property_list_{property_list},
      sequence_answer_{sequence_answer},
      result_stream_{std::move(result_stream)} {}

CVDocQuery::~CVDocQuery() {
  // What a failed query had found so far is the host's, too. Once shown, the last block is not sent again,
  // whatever the host said to it.
  if (result_stream_ && !results_shown_) result_stream_->Flush();
}

VessaROList CVDocQuery::Results() {
  results_shown_ = true;
  if (result_stream_) result_stream_->Flush();
  return VessaROList(results_.Bytes());
}

void CVDocQuery::Reset() {
  if (property_list_.Count() % 2 == 0) throw CVDocQueryException(vdoc_text::kEvenLength);
  path_.SetTarget(ReadPropertyList(property_list_));
}

Status CVDocQuery::StartItem(Tag, std::uint32_t length) {
  value_length_ = length;  // of a pixel data fragment; elements of a sequence's item set their own
  path_.CountItem();
  return kSuccess;
}

Status CVDocQuery::StartElement(Tag tag, Vr vr, std::uint32_t length) {
  value_length_ = length;
  vr_ = vr;
  path_.PushTag(tag);
  return kSuccess;
}

Status CVDocQuery::EndElement(Tag) {
  path_.Pop();
  return kSuccess;
}

Status CVDocQuery::StartSequence(Tag) {
  if (sequence_answer_ && path_.Relation() == PathRelation::kEqual) {
    vr_ = kVrSQ;
    KeepAnswer({});
    throw CSuccessException();
  }
  path_.PushItemCounter();
  return kSuccess;
}

Status CVDocQuery::EndSequence() {
  path_.Pop();
  return kSuccess;
}

bool CVDocQuery::WantsValue(Tag) {
  const PathRelation relation = path_.Relation();
  return relation != PathRelation::kBefore && relation != PathRelation::kLeads;
}

Status CVDocQuery::Data(Tag, std::uint32_t chunk_number, std::span<const std::uint8_t> chunk) {
  switch (path_.Relation()) {
    case PathRelation::kBefore:
    case PathRelation::kLeads:
      return kSuccess;
    case PathRelation::kEqual:
      return result_stream_ ? DeliverToStream(chunk_number, chunk) : Deliver(chunk_number, chunk);
    case PathRelation::kInside:
    case PathRelation::kPassed:
      break;
  }
  throw CSuccessException();
}

Status CVDocQuery::Deliver(std::uint32_t chunk_number, std::span<const std::uint8_t> chunk) {
  if (chunk_number != 1) throw CVDocQueryException(vdoc_text::kDataTooLong);
  KeepAnswer(chunk);
  // A value that goes on is no answer yet: its next chunk is the failure above.
  if (value_length_ > chunk.size()) return kSuccess;
  throw CSuccessException();
}

Status CVDocQuery::DeliverToStream(std::uint32_t chunk_number, std::span<const std::uint8_t> chunk) {
  if (chunk_number == 1) {
    pending_first_chunk_.assign(chunk.begin(), chunk.end());
    KeepAnswer(chunk);
    return kSuccess;
  }
  if (chunk_number == 2) RaiseIfNegative(result_stream_->WriteBytes(pending_first_chunk_));
  return result_stream_->WriteBytes(chunk);
}

// VR and value of the first chunk; later fragments of pixel data are no part of the answer.
void CVDocQuery::KeepAnswer(std::span<const std::uint8_t> chunk) {
  if (!results_.Bytes().empty()) return;
  results_.AppendString(vr_.Text());
  results_.AppendString(chunk);
}

}  // namespace vessa
