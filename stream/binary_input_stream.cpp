#include "stream/binary_input_stream.h"

#include <algorithm>

#include "host/callin.h"
#include "stream/callin_failure.h"

namespace vessa {

CVessaBinaryInputStream::CVessaBinaryInputStream(std::uint32_t oref, std::size_t look_ahead_bytes)
    : CVessaBinaryOrefInputStream(oref),
      buffer_{std::make_unique<std::uint8_t[]>(look_ahead_bytes)},  // all zero
      look_ahead_bytes_{look_ahead_bytes} {}

CVessaBinaryInputStream::~CVessaBinaryInputStream() {
  try {
    SkipHandedOut();
  } catch (...) {  // NOLINT(bugprone-empty-catch): nobody is left to be told
  }
}

Status CVessaBinaryInputStream::Open() {
  position_ = WithFailureText(kPositionFailed, [this] { return ReadIntegerProperty(GetOref(), "Position"); });
  return Fill();
}

Status CVessaBinaryInputStream::Read(std::span<std::uint8_t> destination) {
  if (destination.size() < Available()) [[likely]] {
    std::copy_n(buffer_.get() + index_, destination.size(), destination.data());
    index_ += destination.size();
    position_ += static_cast<std::int64_t>(destination.size());
    return kSuccess;
  }
  return Transfer(destination.size(), destination.data());
}

Status CVessaBinaryInputStream::Skip(std::int64_t count) {
  if (count < 0) return E_INVALIDARG;
  const auto bytes = static_cast<std::uint64_t>(count);
  if (bytes < Available()) [[likely]] {
    index_ += static_cast<std::size_t>(bytes);
    position_ += count;
    return kSuccess;
  }
  return Transfer(bytes, nullptr);
}

/// Moves past `count` bytes and copies them to `destination`, if there is one. The look-ahead is refilled as
/// soon as it is used up, so that the end of the stream is known with the last byte.
Status CVessaBinaryInputStream::Transfer(std::uint64_t count, std::uint8_t* destination) {
  std::uint64_t remaining = count;
  while (remaining > 0 && !at_end_) {
    if (Available() == 0) RaiseIfNegative(Fill());
    const std::size_t take = static_cast<std::size_t>(std::min<std::uint64_t>(remaining, Available()));
    if (destination != nullptr) destination = std::copy_n(buffer_.get() + index_, take, destination);
    index_ += take;
    remaining -= take;
    if (Available() == 0 && !at_end_) RaiseIfNegative(Fill());
  }
  position_ += static_cast<std::int64_t>(count - remaining);
  if (remaining > 0) throw E_FAIL;
  return kSuccess;
}

Status CVessaBinaryInputStream::Peek(std::span<std::uint8_t> destination, bool& at_end) {
  at_end = at_end_ && Available() == 0;
  if (at_end) return kSuccess;
  if (destination.size() > look_ahead_bytes_) return E_INVALIDARG;
  if (destination.size() > Available()) {
    if (const Status status = Fill(); status < 0) return status;
  }
  std::copy_n(buffer_.get() + index_, destination.size(), destination.data());
  return kSuccess;
}

/// Fetches the look-ahead that begins with the next byte.
Status CVessaBinaryInputStream::Fill() {
  WithFailureText(kSkipFailed, [this] { SkipHandedOut(); });
  if (at_end_) return E_INVALIDARG;
  WithFailureText(kPeekFailed, [this] { FetchLookAhead(); });
  return kSuccess;
}

/// Moves the host's stream past what was handed out of the look-ahead. That is forgotten at once, so that no
/// later failure has the host skip it again.
void CVessaBinaryInputStream::SkipHandedOut() {
  if (index_ == 0) return;
  CallMethod<"i">(GetOref(), "Skip", ResultWanted::kNo, static_cast<std::int32_t>(index_));
  index_ = 0;
  filled_ = 0;
}

void CVessaBinaryInputStream::FetchLookAhead() {
  CallMethod<"i">(GetOref(), "Peek", ResultWanted::kYes, static_cast<std::int32_t>(look_ahead_bytes_));
  const std::span<const std::uint8_t> bytes = PopString();
  filled_ = std::min(bytes.size(), look_ahead_bytes_);  // the rest comes again: only what is used is skipped
  std::copy_n(bytes.begin(), filled_, buffer_.get());
  at_end_ = filled_ == 0;
}

}  // namespace vessa
