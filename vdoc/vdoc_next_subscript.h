#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "decompose/content_handler_interface.h"
#include "host/vessa_ro_list.h"
#include "vdoc/document_path.h"

namespace vessa {

/// Finds the sequence item behind the one that a subscript reference names (behind none when its last
/// subscript is 0), and ends the decomposition, by CSuccessException, when that item starts or when a later
/// one does.
class CVDocNextSubscript : public CContentHandlerInterface {
 public:
  /// @param property_list  a view of tag, item number, tag, item number, ...; its bytes must outlive the
  /// handler
  explicit CVDocNextSubscript(const VessaROList& property_list) : property_list_{property_list} {}

  /// Number of the item found; 0 for none.
  std::uint32_t Found() const { return found_; }

  /// @throws CVDocQueryException  a property list of odd length, or an empty one
  /// @throws std::exception  no list at all: the list codec's failures
  void Reset() override;
  Status StartContent(std::string_view) override { return kSuccess; }
  Status EndContent() override { return kSuccess; }
  Status StartItem(Tag tag, std::uint32_t length) override;
  Status EndItem(Tag, std::uint32_t) override { return kSuccess; }
  Status StartElement(Tag tag, Vr vr, std::uint32_t length) override;
  Status EndElement(Tag tag) override;
  Status Data(Tag, std::uint32_t, std::span<const std::uint8_t>) override { return kSuccess; }
  Status StartSequence(Tag tag) override;
  Status EndSequence() override;
  bool WantsValue(Tag) override { return false; }

 private:
  VessaROList property_list_;
  CDocumentPath path_;
  std::uint32_t wanted_ = 0;  // the item that answers
  std::uint32_t found_ = 0;
};

}  // namespace vessa
