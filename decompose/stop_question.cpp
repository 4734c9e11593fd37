#include "decompose/stop_question.h"

#include "host/callin.h"

namespace vessa {

bool ShouldStopDecomposition(std::uint32_t client_oref, Tag tag) {
  CallMethod<"u">(client_oref, "ShouldStopDecomposition", ResultWanted::kYes, tag.Value());
  return ConvertResultToInteger() != 0;
}

}  // namespace vessa
