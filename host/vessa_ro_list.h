#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace vessa {

/// Type codes of the items of a host value list.
enum class ItemType : std::int32_t {
  kAbsent = -1,
  kString = 1,
  kWideString = 2,
  kNonNegativeInteger = 4,
  kNegativeInteger = 5,
  kNonNegativeDecimal = 6,
  kNegativeDecimal = 7,
  kDouble = 8,
};

/// One item as it stands in the list: its raw type code (see ItemType; other codes are possible in a
/// malformed list) and its data, which point into the list.
struct ListItem {
  std::int32_t type = static_cast<std::int32_t>(ItemType::kAbsent);
  std::span<const std::uint8_t> data;
};

/// A read-only view of a host value list; it owns nothing and never reads outside the bytes it was given.
/// Reading items in ascending order is linear overall, for the position last reached is remembered. Failures:
/// std::invalid_argument "List Format Error", std::out_of_range "Index out of bounds" or "LONGLONG too
/// large", std::out_of_range or std::overflow_error "Exponent too large", std::bad_alloc.
class VessaROList {
 public:
  explicit VessaROList(std::span<const std::uint8_t> bytes) : bytes_{bytes.data()}, length_{bytes.size()} {}
  virtual ~VessaROList() = default;
  VessaROList(const VessaROList&) = default;
  VessaROList& operator=(const VessaROList&) = default;

  /// Number of items. The item at hand stays the same.
  /// @throws std::invalid_argument  the items do not end where the list ends
  std::uint64_t Count();

  /// Makes the item with that 0-based index the item at hand; an index equal to the count is the end of the
  /// list. On a failure the item at hand stays the same.
  /// @return  the first byte of the item, or the end of the list
  /// @throws std::out_of_range      the index is above the count
  /// @throws std::invalid_argument  the items before it run past the end of the list
  const std::uint8_t* Seek(std::uint64_t index);

  /// Header of the item at hand. At the end of the list there is no item: "Index out of bounds".
  /// @throws std::invalid_argument  the item has no type byte or runs past the end of the list
  ListItem ItemHeader() const;

  /// The data of the item at hand as a list of their own, whatever its type byte.
  VessaROList GetSublist() const;

  /// The item at hand as 8-bit text: 16-bit text in the system's code page, numbers in decimal; absent:
  /// empty.
  std::string GetString() const;

  /// The item at hand as a number: text up to where it stops being a number, fractions cut off, absent: 0.
  /// GetInt saturates at 32 bits, save for a double, of which it keeps the low 32 bits of the 64-bit integer.
  std::int32_t GetInt() const;
  std::int64_t GetInt64() const;

  std::span<const std::uint8_t> Bytes() const { return {bytes_, static_cast<std::size_t>(length_)}; }

 protected:
  const std::uint8_t* bytes_;
  std::uint64_t length_;
  std::uint64_t index_ = 0;   // of the item at hand
  std::uint64_t offset_ = 0;  // of the item at hand
  std::uint64_t count_ = 0;
  bool count_known_ = false;

 private:
  std::uint64_t OffsetBehind(std::uint64_t offset) const;
  const std::uint8_t* Remember(std::uint64_t index, std::uint64_t offset);
  const std::uint8_t* SeekAtOrBehindEnd(std::uint64_t index);
};

}  // namespace vessa
