#pragma once

#include <cstdint>

#include "decompose/content_handler_interface.h"
#include "host/argument_format.h"

namespace vessa {

/// Hands every event to a host object, as a call of the method with the event's name. What the method returns
/// is fetched and dropped.
/// @throws CDecomposeException  by every event: the host failed; the text names the method
class CContentHandler final : public CContentHandlerInterface {
 public:
  explicit CContentHandler(std::uint32_t oref) : oref_{oref} {}

  Status StartContent(std::string_view transfer_syntax) override;
  Status EndContent() override;
  Status StartItem(Tag tag, std::uint32_t length) override;
  Status EndItem(Tag tag, std::uint32_t length) override;
  Status StartElement(Tag tag, Vr vr, std::uint32_t length) override;
  Status EndElement(Tag tag) override;
  Status Data(Tag tag, std::uint32_t chunk_number, std::span<const std::uint8_t> chunk) override;
  Status StartSequence(Tag tag) override;
  Status EndSequence() override;

 private:
  template <ArgumentFormat kFormat, class... Values>
  Status CallEvent(std::string_view method, const Values&... values);

  std::uint32_t oref_;
};

}  // namespace vessa
