#include "emulator/check/data_cursor.h"

#include <algorithm>

namespace emulator {
namespace {

constexpr std::uint64_t kLookAheadBytes = 8000;
constexpr std::size_t kWindowBytes = 4096;
constexpr unsigned kTagBytes = 4;

std::uint32_t LittleEndian(std::string_view bytes) {
  std::uint32_t number = 0;
  for (std::size_t index = bytes.size(); index-- > 0;)
    number = number << 8U | static_cast<unsigned char>(bytes[index]);
  return number;
}

std::uint32_t TagIn(std::string_view bytes) {
  return LittleEndian(bytes.substr(0, 2)) << 16U | LittleEndian(bytes.substr(2, 2));
}

}  // namespace

DataCursor::DataCursor(StreamObject& stream, std::uint64_t offset)
    : stream_(stream),
      size_(static_cast<std::uint64_t>(stream.ByteCount())),
      offset_(std::min(offset, size_)) {
  LoadLookAhead(offset_);
}

std::uint32_t DataCursor::PeekTag() {
  FollowLookAhead();
  const std::string_view bytes = Window(offset_, kTagBytes);
  return TagIn(bytes.size() == kTagBytes ? bytes : std::string_view(look_ahead_start_.data(), kTagBytes));
}

std::uint32_t DataCursor::TakeTag() { return TagIn(Take(kTagBytes)); }

std::uint32_t DataCursor::TakeNumber(unsigned bytes) { return LittleEndian(Take(bytes)); }

std::string DataCursor::Take(std::uint64_t bytes) {
  std::string taken;
  const std::uint64_t start = offset_;
  Skip(bytes);
  while (taken.size() < bytes) {
    const std::size_t wanted =
        static_cast<std::size_t>(std::min<std::uint64_t>(bytes - taken.size(), kWindowBytes));
    taken += Window(start + taken.size(), wanted);
  }
  return taken;
}

void DataCursor::Skip(std::uint64_t bytes) {
  if (bytes > size_ - offset_) {
    offset_ = size_;
    throw DataEnded();
  }
  offset_ += bytes;
}

std::string_view DataCursor::Window(std::uint64_t offset, std::size_t bytes) {
  bytes = static_cast<std::size_t>(std::min<std::uint64_t>(bytes, size_ - std::min(offset, size_)));
  if (offset < window_offset_ || offset + bytes > window_offset_ + window_.size()) {
    stream_.MoveTo(static_cast<std::int64_t>(offset) + 1);
    const std::array<Value, 1> count{static_cast<std::int64_t>(kWindowBytes)};
    window_ = AsBytes(stream_.Call("Read", count));
    window_offset_ = offset;
  }
  const std::string_view window = window_;
  return window.substr(static_cast<std::size_t>(offset - window_offset_), bytes);
}

/// The library loads its look-ahead anew where it is used up, and where a tag that it peeks at is not all in it.
void DataCursor::FollowLookAhead() {
  if (offset_ >= look_ahead_offset_ + 3 * kLookAheadBytes) {  // of the loads on the way the last ones matter
    const std::uint64_t loads = (offset_ - look_ahead_offset_) / kLookAheadBytes;
    LoadLookAhead(look_ahead_offset_ + (loads - 1) * kLookAheadBytes);
  }
  while (look_ahead_end_ <= offset_ && look_ahead_end_ < size_) LoadLookAhead(look_ahead_end_);
  if (look_ahead_end_ < offset_ + kTagBytes) LoadLookAhead(offset_);
}

void DataCursor::LoadLookAhead(std::uint64_t offset) {
  const std::string_view bytes = Window(offset, kTagBytes);
  std::copy(bytes.begin(), bytes.end(), look_ahead_start_.begin());
  look_ahead_offset_ = offset;
  look_ahead_end_ = std::min(offset + kLookAheadBytes, size_);
}

}  // namespace emulator
