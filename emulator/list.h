#pragma once

// The host's value list, written and read by the host. All numbers in it are little endian.
//
//   short form   L type data      L = 2..255 counts itself, the type byte and the data
//   absent       1
//   medium form  0 N N type data  N (16 bits, not 0) counts the type byte and the data
//   long form    0 0 0 N N N N type data

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/value.h"

namespace emulator {

/// Type bytes of the items of a value list.
enum class ListType : int {
  kAbsent = -1,
  kString = 1,
  kWideString = 2,
  kNonNegativeInteger = 4,
  kNegativeInteger = 5,
  kNonNegativeDecimal = 6,
  kNegativeDecimal = 7,
  kDouble = 8,
};

/// How an item begins; kShortest is what the host itself writes.
enum class ListForm { kShortest, kMedium, kLong };

class ListBuilder {
 public:
  ListBuilder& String(std::string_view bytes);
  ListBuilder& WideString(std::u16string_view text);
  ListBuilder& Integer(std::int64_t value);
  ListBuilder& Double(double value);
  /// mantissa x 10 to the power of exponent
  ListBuilder& Decimal(std::int64_t mantissa, std::int8_t exponent);
  ListBuilder& Absent();
  /// A list as one item.
  ListBuilder& List(const ListBuilder& list);
  /// An item of any type byte, with any data, in any form that can hold them.
  /// @throws std::length_error  the data are too long for the form
  ListBuilder& Item(int type, std::string_view data, ListForm form = ListForm::kShortest);
  /// Bytes as they stand, whatever they are.
  ListBuilder& Raw(std::string_view bytes);

  const std::string& Bytes() const { return bytes_; }

 private:
  std::string bytes_;
};

/// One item of a list.
struct ListValue {
  int type = static_cast<int>(ListType::kAbsent);  ///< see ListType
  std::string data;                                ///< as it stands in the list
  /// Strings as bytes or 16-bit text, integers as integers, decimals and doubles as doubles; absent: nothing.
  Value value;

  bool Is(ListType other) const { return type == static_cast<int>(other); }
};

/// The items of a list.
/// @throws std::invalid_argument  the bytes are no list: an item runs past the end, or its type or data are
/// impossible;
///                                the text says where
std::vector<ListValue> ReadList(std::string_view bytes);

}  // namespace emulator
