#include "stream/callin_failure.h"

#include <string>

namespace vessa {

void RaiseCallinFailure(std::string_view text, Status status) {
  throw CDecomposeException(text, std::to_string(status));
}

}  // namespace vessa
