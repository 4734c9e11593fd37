#include <array>
#include <bit>
#include <stdexcept>

#include "emulator/list.h"

namespace emulator {
namespace {

constexpr std::size_t kLongestShortForm = 255;      // its own byte and the type byte included
constexpr std::size_t kLongestMediumForm = 0xFFFF;  // the type byte included

void AppendLittleEndian(std::uint64_t value, int bytes, std::string& out) {
  for (int i = 0; i < bytes; ++i)
    out += static_cast<char>(static_cast<unsigned char>(value >> (8 * i) & 0xFFU));
}

/// The bytes that are needed: the high ones left out when they are all ones in a negative number, zeros in another.
std::string ShortestInteger(std::int64_t value) {
  std::string bytes;
  AppendLittleEndian(static_cast<std::uint64_t>(value), 8, bytes);
  const char filler = value < 0 ? '\xFF' : '\0';
  while (!bytes.empty() && bytes.back() == filler) bytes.pop_back();
  return bytes;
}

ListForm ShortestForm(std::size_t counted) {
  if (counted < kLongestShortForm) return ListForm::kShortest;
  return counted <= kLongestMediumForm ? ListForm::kMedium : ListForm::kLong;
}

}  // namespace

ListBuilder& ListBuilder::String(std::string_view bytes) {
  return Item(static_cast<int>(ListType::kString), bytes);
}

ListBuilder& ListBuilder::WideString(std::u16string_view text) {
  std::string bytes;
  for (const char16_t unit : text) AppendLittleEndian(unit, 2, bytes);
  return Item(static_cast<int>(ListType::kWideString), bytes);
}

ListBuilder& ListBuilder::Integer(std::int64_t value) {
  const ListType type = value < 0 ? ListType::kNegativeInteger : ListType::kNonNegativeInteger;
  return Item(static_cast<int>(type), ShortestInteger(value));
}

ListBuilder& ListBuilder::Double(double value) {
  std::string bytes;
  AppendLittleEndian(std::bit_cast<std::uint64_t>(value), 8, bytes);
  return Item(static_cast<int>(ListType::kDouble), bytes);
}

ListBuilder& ListBuilder::Decimal(std::int64_t mantissa, std::int8_t exponent) {
  const ListType type = mantissa < 0 ? ListType::kNegativeDecimal : ListType::kNonNegativeDecimal;
  return Item(static_cast<int>(type), static_cast<char>(exponent) + ShortestInteger(mantissa));
}

ListBuilder& ListBuilder::Absent() { return Raw("\x01"); }

ListBuilder& ListBuilder::List(const ListBuilder& list) {
  return Item(static_cast<int>(ListType::kString), list.Bytes());
}

ListBuilder& ListBuilder::Item(int type, std::string_view data, ListForm form) {
  const std::size_t counted = data.size() + 1;
  if (form == ListForm::kShortest) form = ShortestForm(counted);
  if (form == ListForm::kShortest) {
    AppendLittleEndian(counted + 1, 1, bytes_);
  } else if (form == ListForm::kMedium) {
    if (counted > kLongestMediumForm) throw std::length_error("an item too long for the medium form");
    bytes_ += '\0';
    AppendLittleEndian(counted, 2, bytes_);
  } else {
    if (counted > 0xFFFFFFFFU) throw std::length_error("an item too long for a list");
    bytes_.append(3, '\0');
    AppendLittleEndian(counted, 4, bytes_);
  }
  bytes_ += static_cast<char>(type);
  bytes_ += data;
  return *this;
}

ListBuilder& ListBuilder::Raw(std::string_view bytes) {
  bytes_ += bytes;
  return *this;
}

}  // namespace emulator
