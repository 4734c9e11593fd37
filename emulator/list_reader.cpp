#include <bit>
#include <cmath>
#include <stdexcept>

#include "emulator/list.h"

namespace emulator {
namespace {

[[noreturn]] void Refuse(const char* why, std::size_t offset) {
  throw std::invalid_argument("no value list: " + std::string(why) + " at byte " + std::to_string(offset));
}

std::uint64_t LittleEndian(std::string_view bytes) {
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    value |= std::uint64_t{static_cast<unsigned char>(bytes[i])} << (8 * i);
  }
  return value;
}

std::int64_t NegativeInteger(std::string_view bytes) {
  const std::uint64_t omitted = bytes.size() == 8 ? 0 : ~std::uint64_t{0} << (8 * bytes.size());
  return std::bit_cast<std::int64_t>(LittleEndian(bytes) | omitted);
}

/// Walks through a list and knows where it is, for its complaints.
class Reader {
 public:
  explicit Reader(std::string_view bytes) : bytes_(bytes) {}

  bool AtEnd() const { return at_ == bytes_.size(); }

  ListValue Next() {
    start_ = at_;
    ListValue item;
    const std::size_t counted = Length();
    if (counted == 0) return item;
    const std::string_view body = Take(counted);
    item.type = static_cast<unsigned char>(body.front());
    item.data = body.substr(1);
    item.value = ValueOf(item);
    return item;
  }

 private:
  /// Length of the type byte and the data of the item; 0 when it is absent.
  std::size_t Length() {
    const std::uint64_t first = Number(1);
    if (first != 0) return first - 1;
    std::uint64_t length = Number(2);
    if (length == 0) length = Number(4);
    if (length == 0) Refuse("an item without a type byte", start_);
    return length;
  }

  std::string_view Take(std::size_t count) {
    if (count > bytes_.size() - at_) Refuse("an item that runs past the end", start_);
    const std::string_view taken = bytes_.substr(at_, count);
    at_ += count;
    return taken;
  }

  std::uint64_t Number(std::size_t size) { return LittleEndian(Take(size)); }

  Value ValueOf(const ListValue& item) const {
    switch (item.type) {
      case static_cast<int>(ListType::kString):
        return item.data;
      case static_cast<int>(ListType::kWideString):
        return WideText(item.data);
      case static_cast<int>(ListType::kNonNegativeInteger):
      case static_cast<int>(ListType::kNegativeInteger):
        return Integer(item.type == static_cast<int>(ListType::kNegativeInteger), item.data);
      case static_cast<int>(ListType::kNonNegativeDecimal):
      case static_cast<int>(ListType::kNegativeDecimal):
        return Decimal(item.type == static_cast<int>(ListType::kNegativeDecimal), item.data);
      case static_cast<int>(ListType::kDouble):
        if (item.data.size() != 8) Refuse("a double of other than 8 bytes", start_);
        return std::bit_cast<double>(LittleEndian(item.data));
      default:
        Refuse("an unknown type", start_);
    }
  }

  std::u16string WideText(std::string_view data) const {
    if (data.size() % 2 != 0) Refuse("16-bit text of odd length", start_);
    std::u16string text;
    for (std::size_t i = 0; i < data.size(); i += 2) {
      text += static_cast<char16_t>(LittleEndian(data.substr(i, 2)));
    }
    return text;
  }

  Value Integer(bool negative, std::string_view data) const {
    if (data.size() > 8) Refuse("an integer of more than 8 bytes", start_);
    if (negative) return NegativeInteger(data);
    const std::uint64_t value = LittleEndian(data);
    if (value > INT64_MAX) return static_cast<double>(value);
    return static_cast<std::int64_t>(value);
  }

  Value Decimal(bool negative, std::string_view data) const {
    if (data.empty()) Refuse("a decimal without exponent", start_);
    if (data.size() > 9) Refuse("a mantissa of more than 8 bytes", start_);
    const std::string_view digits = data.substr(1);
    const double mantissa =
        negative ? static_cast<double>(NegativeInteger(digits)) : static_cast<double>(LittleEndian(digits));
    const auto exponent = std::bit_cast<std::int8_t>(data.front());
    return exponent < 0 ? mantissa / std::pow(10.0, -exponent) : mantissa * std::pow(10.0, exponent);
  }

  std::string_view bytes_;
  std::size_t at_ = 0;
  std::size_t start_ = 0;
};

}  // namespace

std::vector<ListValue> ReadList(std::string_view bytes) {
  std::vector<ListValue> items;
  for (Reader reader(bytes); !reader.AtEnd();) items.push_back(reader.Next());
  return items;
}

}  // namespace emulator
