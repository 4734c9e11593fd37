#include "host/vessa_list.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

#include "host/list_format.h"

namespace vessa {
namespace {

constexpr std::uint64_t kSmallRooms[] = {32, 64, 128, 256, 512};
constexpr std::uint64_t kRoomStep = 1024;
constexpr std::uint64_t kGreatestRoom = std::numeric_limits<std::ptrdiff_t>::max() - kRoomStep;

std::uint64_t RoomFor(std::uint64_t bytes) {
  for (const std::uint64_t room : kSmallRooms) {
    if (bytes <= room) return room;
  }
  if (bytes > kGreatestRoom) throw std::bad_alloc();
  return (bytes + kRoomStep - 1) / kRoomStep * kRoomStep;
}

std::size_t HeaderBytes(std::uint64_t content) {
  if (content <= kGreatestShortContent) return kShortHeaderBytes;
  if (content <= kGreatestMediumContent) return kMediumHeaderBytes;
  return kLongHeaderBytes;
}

/// Writes the header of an item whose type and data take `content` bytes; all of `header` is used.
void WriteHeader(std::span<std::uint8_t> header, std::uint64_t content) {
  if (header.size() == kShortHeaderBytes) {
    header[0] = static_cast<std::uint8_t>(content + kShortHeaderBytes);
    return;
  }
  const std::size_t zeros = header.size() == kMediumHeaderBytes ? 1 : 3;
  std::fill_n(header.begin(), zeros, std::uint8_t{0});
  WriteLittleEndian(content, header.subspan(zeros));
}

/// Bytes of the shortest form of a number: the high bytes that are `filler` throughout are left out.
std::uint64_t ShortestBytes(std::uint64_t bits, std::uint64_t filler) {
  std::uint64_t bytes = 0;
  for (; bits != filler; ++bytes) bits = bits >> 8 | filler << 56;
  return bytes;
}

}  // namespace

VessaList::VessaList() : VessaROList(std::span<const std::uint8_t>()) { count_known_ = true; }

VessaList::VessaList(std::span<std::uint8_t> storage)
    : VessaROList(std::span<const std::uint8_t>(storage.data(), 0)),
      buffer_{storage.data()},
      capacity_{storage.size()},
      on_heap_{false} {
  count_known_ = true;
}

VessaList::~VessaList() {
  if (on_heap_) std::free(buffer_);
}

void VessaList::Reserve(std::uint64_t bytes) {
  if (bytes <= capacity_) return;
  const std::uint64_t room = RoomFor(bytes);
  void* grown = std::realloc(on_heap_ ? buffer_ : nullptr, static_cast<std::size_t>(room));
  if (grown == nullptr) throw std::bad_alloc();
  auto* const buffer = static_cast<std::uint8_t*>(grown);
  if (!on_heap_ && length_ != 0) std::memcpy(buffer, buffer_, static_cast<std::size_t>(length_));
  buffer_ = buffer;
  bytes_ = buffer;
  capacity_ = room;
  on_heap_ = true;
}

std::span<std::uint8_t> VessaList::Insert(std::uint64_t offset, ItemType type, std::uint64_t data_bytes) {
  // No header can say more.
  if (data_bytes > kGreatestLongContent - kTypeBytes) throw std::bad_alloc();
  const std::uint64_t content = kTypeBytes + data_bytes;
  const std::size_t header_bytes = HeaderBytes(content);
  const std::uint64_t item_bytes = header_bytes + content;
  Reserve(length_ + item_bytes);

  const std::span<std::uint8_t> item(buffer_ + offset, static_cast<std::size_t>(item_bytes));
  std::memmove(item.data() + item.size(), item.data(), static_cast<std::size_t>(length_ - offset));
  WriteHeader(item.first(header_bytes), content);
  item[header_bytes] = static_cast<std::uint8_t>(type);

  length_ += item_bytes;
  ++count_;
  if (offset_ >= offset) {  // an item at hand behind the new one moves up; a remembered end stays the end
    ++index_;
    offset_ += item_bytes;
  }
  return item.subspan(header_bytes + kTypeBytes);
}

void VessaList::AppendString(std::span<const std::uint8_t> text) {
  const std::span<std::uint8_t> data = Insert(length_, ItemType::kString, text.size());
  std::copy(text.begin(), text.end(), data.begin());
}

void VessaList::AppendString(std::string_view text) {
  const std::span<std::uint8_t> data = Insert(length_, ItemType::kString, text.size());
  std::copy(text.begin(), text.end(), data.begin());
}

void VessaList::AppendWString(std::u16string_view text) {
  const std::span<std::uint8_t> data =
      Insert(length_, ItemType::kWideString, std::uint64_t{text.size()} * sizeof(char16_t));
  for (std::size_t i = 0; i < text.size(); ++i) {
    WriteLittleEndian(text[i], data.subspan(i * sizeof(char16_t), sizeof(char16_t)));
  }
}

void VessaList::AppendInteger(ItemType type, std::uint64_t bits, std::uint64_t data_bytes) {
  WriteLittleEndian(bits, Insert(length_, type, data_bytes));
}

void VessaList::AppendInt(std::int32_t value) {
  if (value >= 0) return AppendInt64(value);
  const auto bits = static_cast<std::uint64_t>(std::int64_t{value});
  AppendInteger(ItemType::kNegativeInteger, bits, ShortestBytes(bits, ~std::uint64_t{0}));
}

void VessaList::AppendInt64(std::int64_t value) {
  const auto bits = static_cast<std::uint64_t>(std::max<std::int64_t>(value, 0));
  AppendInteger(ItemType::kNonNegativeInteger, bits, ShortestBytes(bits, 0));
}

void VessaList::Clear() {
  length_ = 0;
  index_ = 0;
  offset_ = 0;
  count_ = 0;
}

}  // namespace vessa
