#include "stream/unbuffered_input_stream.h"

#include <algorithm>
#include <array>
#include <limits>

#include "host/callin.h"
#include "stream/callin_failure.h"

namespace vessa {

Status CVessaUnbufferedInputStream::Read(std::span<std::uint8_t> destination) {
  if (destination.size() > std::numeric_limits<std::int32_t>::max()) return E_INVALIDARG;
  const std::span<const std::uint8_t> bytes = WithFailureText(kReadFailed, [&] {
    CallMethod<"i">(GetOref(), "Read", ResultWanted::kYes, static_cast<std::int32_t>(destination.size()));
    return PopString();
  });
  if (bytes.size() != destination.size()) {
    throw CDecomposeException("ReadBytes: too few bytes were read");
  }
  std::copy(bytes.begin(), bytes.end(), destination.begin());
  position_ += static_cast<std::int64_t>(bytes.size());
  return kSuccess;
}

Status CVessaUnbufferedInputStream::Peek(std::span<std::uint8_t> /*destination*/, bool& /*at_end*/) {
  return E_NOTIMPL;
}

Status CVessaUnbufferedInputStream::Skip(std::int64_t count) {
  constexpr std::int64_t kBlockBytes = 8000;
  if (count < 0) return E_INVALIDARG;
  std::array<std::uint8_t, kBlockBytes> block;
  while (count > 0) {
    const std::int64_t size = std::min(count, kBlockBytes);
    RaiseIfNegative(Read(std::span(block).first(static_cast<std::size_t>(size))));
    count -= size;
  }
  return kSuccess;
}

}  // namespace vessa
