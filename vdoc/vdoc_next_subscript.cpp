#include "vdoc/vdoc_next_subscript.h"

#include <utility>
#include <vector>

#include "vdoc/exceptions.h"
#include "vdoc/message_texts.h"
#include "vdoc/property_list.h"

namespace vessa {

void CVDocNextSubscript::Reset() {
  if (property_list_.Count() % 2 != 0) throw CVDocQueryException(vdoc_text::kEvenLength);  // "even" is kept
  std::vector<std::uint32_t> target = ReadPropertyList(property_list_);
  if (target.empty()) throw CVDocQueryException(vdoc_text::kEmptyList);
  wanted_ = ++target.back();  // behind FFFFFFFF comes 0, which no item has
  path_.SetTarget(std::move(target));
}

Status CVDocNextSubscript::StartItem(Tag, std::uint32_t) {
  path_.CountItem();
  switch (path_.Relation()) {
    case PathRelation::kBefore:
    case PathRelation::kLeads:
      return kSuccess;
    case PathRelation::kEqual:
      found_ = wanted_;
      break;
    case PathRelation::kInside:
    case PathRelation::kPassed:
      break;
  }
  throw CSuccessException();
}

Status CVDocNextSubscript::StartElement(Tag tag, Vr, std::uint32_t) {
  path_.PushTag(tag);
  return kSuccess;
}

Status CVDocNextSubscript::EndElement(Tag) {
  path_.Pop();
  return kSuccess;
}

Status CVDocNextSubscript::StartSequence(Tag) {
  path_.PushItemCounter();
  return kSuccess;
}

Status CVDocNextSubscript::EndSequence() {
  path_.Pop();
  return kSuccess;
}

}  // namespace vessa
