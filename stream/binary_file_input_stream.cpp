#include "stream/binary_file_input_stream.h"

#include <algorithm>
#include <cerrno>
#include <limits>

#include "platform/file.h"

namespace vessa {

CVessaBinaryFileInputStream::CVessaBinaryFileInputStream(std::string name) : name_{std::move(name)} {
  EmptyWindow(0);
}

Status CVessaBinaryFileInputStream::Open() {
  file_.reset(std::fopen(name_.c_str(), "rb"));
  if (!file_) return E_INVALIDARG;
  static_cast<void>(std::setvbuf(file_.get(), nullptr, _IONBF, 0));  // the window is the buffer
  EmptyWindow(TellFile(file_.get()));
  // Some systems open a directory like a file, and only reading it fails.
  static_cast<void>(Fill());
  if (std::ferror(file_.get()) == 0 || errno != EISDIR) return kSuccess;
  file_.reset();
  return E_INVALIDARG;
}

Status CVessaBinaryFileInputStream::Read(std::span<std::uint8_t> destination) {
  std::span<std::uint8_t> rest = destination.subspan(TakeFromWindow(destination));
  if (rest.empty()) return kSuccess;
  if (rest.size() < kWindowBytes) {
    if (const Status status = Fill(); status < 0) return kReadFell;
    rest = rest.subspan(TakeFromWindow(rest));
  } else {
    const std::size_t got = std::fread(rest.data(), 1, rest.size(), file_.get());
    EmptyWindow(Offset() + static_cast<std::int64_t>(got));
    rest = rest.subspan(got);
  }
  return rest.empty() ? kSuccess : kReadFell;
}

Status CVessaBinaryFileInputStream::Peek(std::span<std::uint8_t> destination, bool& at_end) {
  at_end = false;
  if (destination.size() > kWindowBytes) return PeekPastWindow(destination, at_end);
  if (destination.size() > Available()) {
    if (const Status status = Fill(); status < 0) return status;
  }
  const std::size_t found = std::min(destination.size(), Available());
  std::copy_n(next_, found, destination.begin());
  return PeekStatus(found, destination.size(), at_end);
}

/// What a peek answers that found `found` of the `wanted` bytes.
Status CVessaBinaryFileInputStream::PeekStatus(std::size_t found, std::size_t wanted, bool& at_end) const {
  if (found == wanted) return kSuccess;
  if (found > 0 || std::ferror(file_.get()) != 0) return E_INVALIDARG;
  at_end = true;
  return kSuccess;
}

/// The rare peek that is longer than the window: read, and back again.
Status CVessaBinaryFileInputStream::PeekPastWindow(std::span<std::uint8_t> destination, bool& at_end) {
  const std::int64_t offset = Offset();
  if (!MoveTo(offset)) return E_INVALIDARG;
  const std::size_t found = std::fread(destination.data(), 1, destination.size(), file_.get());
  if (!MoveTo(offset)) return E_INVALIDARG;
  return PeekStatus(found, destination.size(), at_end);
}

Status CVessaBinaryFileInputStream::Skip(std::int64_t count) {
  if (count >= 0 && static_cast<std::uint64_t>(count) <= Available()) {
    Take(static_cast<std::size_t>(count));
    return kSuccess;
  }
  constexpr std::int64_t kFurthest = std::numeric_limits<std::int64_t>::max();
  if (window_offset_ < 0 || count > kFurthest - Offset()) return E_INVALIDARG;
  return MoveTo(Offset() + count) ? kSuccess : E_INVALIDARG;
}

std::int32_t CVessaBinaryFileInputStream::GetSize() {
  const std::int64_t offset = Offset();
  const std::int64_t end = FindEnd();
  if (!MoveTo(offset) || end < 0) return E_INVALIDARG;
  return static_cast<std::int32_t>(end + 1);
}

std::uint32_t CVessaBinaryFileInputStream::GetOref() { throw E_NOTIMPL; }

bool CVessaBinaryFileInputStream::PassOver(std::uint64_t count) {
  if (count <= Available()) {
    Take(static_cast<std::size_t>(count));
    return true;
  }
  const std::int64_t offset = Offset();
  const std::int64_t left = FindEnd() - offset;
  const bool there = left >= 0 && count <= static_cast<std::uint64_t>(left);
  if (!MoveTo(there ? offset + static_cast<std::int64_t>(count) : offset)) throw E_INVALIDARG;
  return there;
}

std::size_t CVessaBinaryFileInputStream::TakeFromWindow(std::span<std::uint8_t> destination) {
  const std::size_t take = std::min(destination.size(), Available());
  std::copy_n(next_, take, destination.begin());
  Take(take);
  return take;
}

/// Keeps what is at hand and adds to it what the window can take from the file.
Status CVessaBinaryFileInputStream::Fill() {
  if (window_offset_ < 0) return E_INVALIDARG;
  std::size_t filled = Available();
  const std::int64_t offset = Offset();
  std::copy(next_, behind_, window_.data());
  filled += std::fread(window_.data() + filled, 1, kWindowBytes - filled, file_.get());
  EmptyWindow(offset);
  behind_ += filled;
  return kSuccess;
}

/// Goes to an offset from the start of the file, with an empty window. On false nothing has changed.
bool CVessaBinaryFileInputStream::MoveTo(std::int64_t offset) {
  if (!SeekFile(file_.get(), offset, SEEK_SET)) return false;
  EmptyWindow(offset);
  return true;
}

void CVessaBinaryFileInputStream::EmptyWindow(std::int64_t offset) {
  window_offset_ = offset;
  next_ = behind_ = window_.data();
}

/// Leaves the file at its end: a MoveTo has to follow.
/// @return  offset of the end, -1 when the file does not tell
std::int64_t CVessaBinaryFileInputStream::FindEnd() {
  return SeekFile(file_.get(), 0, SEEK_END) ? TellFile(file_.get()) : -1;
}

}  // namespace vessa
