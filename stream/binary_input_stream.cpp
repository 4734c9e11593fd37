#include "stream/binary_input_stream.h"

#include <algorithm>

#include "host/callin.h"
#include "stream/callin_failure.h"

namespace vessa {

/// Moves the host's stream past what was handed out of the look-ahead. That is forgotten at once, so that no
/// later failure has the host skip it again.
inline void CVessaBinaryInputStream::SkipHandedOut() {
  const std::int64_t handed_out = next_ - look_ahead_.get();
  if (handed_out == 0) return;
  CallMethod<"i">(GetOref(), "Skip", ResultWanted::kNo, static_cast<std::int32_t>(handed_out));
  look_ahead_position_ += handed_out;
  next_ = behind_ = look_ahead_.get();
}

inline std::size_t CVessaBinaryInputStream::FetchLookAhead(std::uint64_t unwanted) {
  CallMethod<"i">(GetOref(), "Peek", ResultWanted::kYes, static_cast<std::int32_t>(look_ahead_bytes_));
  const std::span<const std::uint8_t> bytes = PopString();
  // Of more than was asked for the rest comes again: only what is used is skipped.
  const std::size_t filled = std::min(bytes.size(), look_ahead_bytes_);
  const auto passed = static_cast<std::size_t>(std::min<std::uint64_t>(unwanted, filled));
  std::copy_n(bytes.data() + passed, filled - passed, look_ahead_.get() + passed);
  next_ = look_ahead_.get();
  behind_ = next_ + filled;
  at_end_ = filled == 0;
  return filled;
}

/// Fetches the look-ahead that begins with the next byte, the first `unwanted` bytes of which nobody will see.
/// @return  bytes at hand then; none is the end
std::size_t CVessaBinaryInputStream::Fill(std::uint64_t unwanted) {
  WithFailureText(kSkipFailed, [this] { SkipHandedOut(); });
  return WithFailureText(kPeekFailed, [this, unwanted] { return FetchLookAhead(unwanted); });
}

CVessaBinaryInputStream::CVessaBinaryInputStream(std::uint32_t oref, std::size_t look_ahead_bytes)
    : CVessaBinaryOrefInputStream(oref),
      look_ahead_{std::make_unique<std::uint8_t[]>(look_ahead_bytes)},  // all zero
      look_ahead_bytes_{look_ahead_bytes} {
  next_ = behind_ = look_ahead_.get();
}

CVessaBinaryInputStream::~CVessaBinaryInputStream() {
  try {
    SkipHandedOut();
  } catch (...) {  // NOLINT(bugprone-empty-catch): nobody is left to be told
  }
}

Status CVessaBinaryInputStream::Open() {
  look_ahead_position_ =
      WithFailureText(kPositionFailed, [this] { return ReadIntegerProperty(GetOref(), "Position"); });
  Fill();
  return kSuccess;
}

Status CVessaBinaryInputStream::Read(std::span<std::uint8_t> destination) {
  return Transfer(destination.size(), destination.data());
}

Status CVessaBinaryInputStream::Skip(std::int64_t count) {
  if (count < 0) return E_INVALIDARG;
  return Transfer(static_cast<std::uint64_t>(count), nullptr);
}

bool CVessaBinaryInputStream::PassOver(std::uint64_t count) {
  RaiseIfNegative(Transfer(count, nullptr));
  return true;
}

/// Moves past `count` bytes and copies them to `destination`, if there is one. The look-ahead is refilled as
/// soon as it is used up, so that the end of the stream is known with the last byte.
Status CVessaBinaryInputStream::Transfer(std::uint64_t count, std::uint8_t* destination) {
  std::uint64_t remaining = count;
  std::size_t available = Available();
  while (remaining > 0 && !at_end_) {
    if (available == 0) available = Fill();
    const auto take = static_cast<std::size_t>(std::min<std::uint64_t>(remaining, available));
    if (destination != nullptr) destination = std::copy_n(next_, take, destination);
    Take(take);
    remaining -= take;
    available -= take;
    if (available == 0 && !at_end_) available = Fill(destination == nullptr ? remaining : 0);
  }
  if (remaining > 0) throw E_FAIL;
  return kSuccess;
}

Status CVessaBinaryInputStream::Peek(std::span<std::uint8_t> destination, bool& at_end) {
  at_end = at_end_;  // then nothing is at hand
  if (at_end) return kSuccess;
  if (destination.size() > look_ahead_bytes_) return E_INVALIDARG;
  if (destination.size() > Available()) Fill();
  std::copy_n(next_, destination.size(), destination.data());
  return kSuccess;
}

}  // namespace vessa
