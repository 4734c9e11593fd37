#include "host/vessa_ro_list.h"

#include <stdexcept>

#include "host/decimal.h"
#include "host/list_format.h"
#include "host/list_number.h"
#include "host/wide_bytes.h"
#include "platform/code_page.h"
#include "platform/number_text.h"

namespace vessa {
namespace {

std::string_view AsText(std::span<const std::uint8_t> data) {
  return {reinterpret_cast<const char*>(data.data()), data.size()};
}

/// Raw code of an item as one of ItemType's.
ItemType KnownType(std::int32_t code) {
  switch (const auto type = static_cast<ItemType>(code)) {
    case ItemType::kAbsent:
    case ItemType::kString:
    case ItemType::kWideString:
    case ItemType::kNonNegativeInteger:
    case ItemType::kNegativeInteger:
    case ItemType::kNonNegativeDecimal:
    case ItemType::kNegativeDecimal:
    case ItemType::kDouble:
      return type;
  }
  ThrowListFormatError();
}

}  // namespace

// Offset of the item behind the one at `offset`, which lies within the list. Where a header's length leads is
// not looked at; 64 bits hold every sum.
std::uint64_t VessaROList::OffsetBehind(std::uint64_t offset) const {
  const std::span<const std::uint8_t> rest = Bytes().subspan(static_cast<std::size_t>(offset));
  if (rest[0] != 0) return offset + rest[0];
  if (rest.size() < kMediumHeaderBytes) ThrowListFormatError();
  const std::uint64_t medium = ReadLittleEndian(rest.subspan(1, 2));
  if (medium != 0) return offset + kMediumHeaderBytes + medium;
  if (rest.size() < kLongHeaderBytes) ThrowListFormatError();
  return offset + kLongHeaderBytes + ReadLittleEndian(rest.subspan(3, 4));
}

std::uint64_t VessaROList::Count() {
  if (count_known_) return count_;
  std::uint64_t passed = index_;
  std::uint64_t offset = offset_;
  for (; offset < length_; ++passed) offset = OffsetBehind(offset);
  if (offset != length_) ThrowListFormatError();
  count_ = passed;
  count_known_ = true;
  return count_;
}

const std::uint8_t* VessaROList::Remember(std::uint64_t index, std::uint64_t offset) {
  index_ = index;
  offset_ = offset;
  return bytes_ + offset;
}

const std::uint8_t* VessaROList::Seek(std::uint64_t index) {
  if (index == 0) return Remember(0, 0);
  if (index == index_) return bytes_ + offset_;
  if (count_known_ && index >= count_) return SeekAtOrBehindEnd(index);

  const bool ahead = index > index_;
  std::uint64_t passed = ahead ? index_ : 0;
  std::uint64_t offset = ahead ? offset_ : 0;
  while (offset < length_) {
    offset = OffsetBehind(offset);
    if (++passed == index && offset < length_) return Remember(index, offset);
  }
  if (offset != length_) ThrowListFormatError();
  count_ = passed;
  count_known_ = true;
  return SeekAtOrBehindEnd(index);
}

const std::uint8_t* VessaROList::SeekAtOrBehindEnd(std::uint64_t index) {
  if (index > count_) throw std::out_of_range("Index out of bounds");
  return Remember(index, length_);
}

ListItem VessaROList::ItemHeader() const {
  if (offset_ == length_) throw std::out_of_range("Index out of bounds");
  const std::uint64_t end = OffsetBehind(offset_);
  if (end > length_) ThrowListFormatError();
  const std::span<const std::uint8_t> item =
      Bytes().subspan(static_cast<std::size_t>(offset_), static_cast<std::size_t>(end - offset_));
  if (item[0] == kAbsentItem) return {};

  std::size_t header = kShortHeaderBytes;
  if (item[0] == 0)
    header = ReadLittleEndian(item.subspan(1, 2)) != 0 ? kMediumHeaderBytes : kLongHeaderBytes;
  if (item.size() < header + kTypeBytes) ThrowListFormatError();
  return {item[header], item.subspan(header + kTypeBytes)};
}

VessaROList VessaROList::GetSublist() const { return VessaROList(ItemHeader().data); }

std::string VessaROList::GetString() const {
  const ListItem item = ItemHeader();
  switch (KnownType(item.type)) {
    case ItemType::kAbsent:
      return {};
    case ItemType::kString:
      return std::string(AsText(item.data));
    case ItemType::kWideString:
      return Narrow(WideBytes(item.data).Text());
    case ItemType::kNonNegativeInteger:
      return IntegerText(ReadNonNegativeInteger(item.data));
    case ItemType::kNegativeInteger:
      return IntegerText(ReadNegativeInteger(item.data));
    case ItemType::kNonNegativeDecimal:
      return DecimalText(ReadNonNegativeDecimal(item.data));
    case ItemType::kNegativeDecimal:
      return DecimalText(ReadNegativeDecimal(item.data));
    case ItemType::kDouble:
      return DoubleText(ReadDouble(item.data));
  }
  ThrowListFormatError();
}

std::int32_t VessaROList::GetInt() const {
  const ListItem item = ItemHeader();
  switch (KnownType(item.type)) {
    case ItemType::kAbsent:
      return 0;
    case ItemType::kString:
      return ScaleToInt32(ParseDecimal(AsText(item.data)));
    case ItemType::kWideString:
      return ScaleToInt32(ParseDecimal(WideBytes(item.data)));
    case ItemType::kNonNegativeInteger:
      return SaturateToInt32(ReadNonNegativeInteger(item.data));
    case ItemType::kNegativeInteger:
      return SaturateToInt32(ReadNegativeInteger(item.data));
    case ItemType::kNonNegativeDecimal:
      return ScaleToInt32(ReadNonNegativeDecimal(item.data));
    case ItemType::kNegativeDecimal:
      return ScaleToInt32(ReadNegativeDecimal(item.data));
    case ItemType::kDouble:
      // Kept: the low half of the 64-bit integer, where every other type saturates.
      return static_cast<std::int32_t>(TruncateDouble(ReadDouble(item.data)));
  }
  ThrowListFormatError();
}

std::int64_t VessaROList::GetInt64() const {
  const ListItem item = ItemHeader();
  switch (KnownType(item.type)) {
    case ItemType::kAbsent:
      return 0;
    case ItemType::kString:
      return ScaleToInt64(ParseDecimal(AsText(item.data)));
    case ItemType::kWideString:
      return ScaleToInt64(ParseDecimal(WideBytes(item.data)));
    case ItemType::kNonNegativeInteger:
      return ReadNonNegativeInteger(item.data);
    case ItemType::kNegativeInteger:
      return ReadNegativeInteger(item.data);
    case ItemType::kNonNegativeDecimal:
      return ScaleToInt64(ReadNonNegativeDecimal(item.data));
    case ItemType::kNegativeDecimal:
      return ScaleToInt64(ReadNegativeDecimal(item.data));
    case ItemType::kDouble:
      return TruncateDouble(ReadDouble(item.data));
  }
  ThrowListFormatError();
}

}  // namespace vessa
