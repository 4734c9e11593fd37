#include "stream/binary_oref_input_stream.h"

#include "host/callin.h"
#include "stream/callin_failure.h"

namespace vessa {

std::int32_t CVessaBinaryOrefInputStream::GetSize() {
  return WithFailureText(kSizeFailed, [this] { return ReadIntegerProperty(GetOref(), "Size"); });
}

}  // namespace vessa
