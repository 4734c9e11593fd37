#include "decompose/content_handler.h"

#include <string>

#include "host/callin.h"

namespace vessa {
namespace {

[[noreturn]] void RaiseEventFailure(std::string_view method, Status status) {
  throw CDecomposeException("Callin error calling method '" + std::string(method) + "': %1",
                            std::to_string(status));
}

}  // namespace

/// Calls the host's method with the values as the format's letters say.
template <ArgumentFormat kFormat, class... Values>
Status CContentHandler::CallEvent(std::string_view method, const Values&... values) {
  try {
    PushMethod(oref_, method, ResultWanted::kYes);
    InvokeMethod(PushArguments<kFormat>(values...));
    DropResult();
  } catch (const Status status) {
    RaiseEventFailure(method, status);
  }
  return kSuccess;
}

Status CContentHandler::StartContent(std::string_view transfer_syntax) {
  return CallEvent<"a">("StartContent", std::string(transfer_syntax).c_str());
}

Status CContentHandler::EndContent() { return CallEvent<"">("EndContent"); }

Status CContentHandler::StartItem(Tag tag, std::uint32_t length) {
  return CallEvent<"uu">("StartItem", tag.Value(), length);
}

Status CContentHandler::EndItem(Tag tag, std::uint32_t length) {
  return CallEvent<"uu">("EndItem", tag.Value(), length);
}

Status CContentHandler::StartElement(Tag tag, Vr vr, std::uint32_t length) {
  const std::string_view text = vr.Text();
  return CallEvent<"u*au">("StartElement", tag.Value(), static_cast<std::int32_t>(text.size()), text.data(),
                           length);
}

Status CContentHandler::EndElement(Tag tag) { return CallEvent<"u">("EndElement", tag.Value()); }

Status CContentHandler::Data(Tag tag, std::uint32_t chunk_number, std::span<const std::uint8_t> chunk) {
  return CallEvent<"uu*a">("Data", tag.Value(), chunk_number, static_cast<std::int32_t>(chunk.size()),
                           chunk.data());
}

Status CContentHandler::StartSequence(Tag /*tag*/) { return CallEvent<"">("StartSequence"); }

Status CContentHandler::EndSequence() { return CallEvent<"">("EndSequence"); }

}  // namespace vessa
