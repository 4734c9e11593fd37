#include "dicom/byte_order.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <vector>

#include "dicom/exception.h"

namespace vessa {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr ByteOrder kLittle = ByteOrder::kLittleEndian;
constexpr ByteOrder kBig = ByteOrder::kBigEndian;
constexpr ByteOrder kIllegal = static_cast<ByteOrder>(2);

TEST(ByteOrderOf, IsBigForOneTransferSyntax) {
  EXPECT_EQ(ByteOrderOf("1.2.840.10008.1.2.2"), kBig);
  EXPECT_EQ(ByteOrderOf("1.2.840.10008.1.2"), kLittle);
  EXPECT_EQ(ByteOrderOf("1.2.840.10008.1.2.1"), kLittle);
  EXPECT_EQ(ByteOrderOf("1.2.840.10008.1.2.2 "), kLittle);
  EXPECT_EQ(ByteOrderOf(""), kLittle);
}

TEST(ReadTag, ReadsGroupAndElementEachInTheGivenOrder) {
  const std::array<std::uint8_t, 4> big = {0x00, 0x10, 0x00, 0x20};
  const std::array<std::uint8_t, 4> little = {0x10, 0x00, 0x20, 0x00};
  EXPECT_EQ(ReadTag(kBig, big).Value(), 0x00100020U);
  EXPECT_EQ(ReadTag(kLittle, little).Value(), 0x00100020U);
  const std::array<std::uint8_t, 4> high = {0xFE, 0xFF, 0xDD, 0xE0};
  EXPECT_EQ(ReadTag(kLittle, high), kSequenceDelimitation);
}

template <class Action>
std::string FailureText(Action action) {
  try {
    action();
  } catch (const CDecomposeException& failure) {
    return failure.Text();
  }
  return "no failure";
}

TEST(ReadTag, RefusesAnOrderThatIsNone) {
  const std::array<std::uint8_t, 4> bytes = {};
  for (const int code : {-1, 2, 256}) {
    EXPECT_EQ(FailureText([&] { ReadTag(static_cast<ByteOrder>(code), bytes); }),
              "Internal error: illegal byte-ordering code");
  }
}

TEST(EncodeTag, WritesGroupAndElementEachInTheGivenOrder) {
  std::array<std::uint8_t, 4> bytes = {};
  EncodeTag(kLittle, Tag{0x7FE1, 0xA0B2}, bytes);
  EXPECT_EQ(bytes, (std::array<std::uint8_t, 4>{0xE1, 0x7F, 0xB2, 0xA0}));
  EncodeTag(kBig, Tag{0x7FE1, 0xA0B2}, bytes);
  EXPECT_EQ(bytes, (std::array<std::uint8_t, 4>{0x7F, 0xE1, 0xA0, 0xB2}));
}

TEST(EncodeTag, RefusesAnOrderThatIsNone) {
  std::array<std::uint8_t, 4> bytes = {1, 2, 3, 4};
  EXPECT_EQ(FailureText([&] { EncodeTag(kIllegal, kPixelData, bytes); }),
            "Internal error: illegal byte-ordering code");
  EXPECT_EQ(bytes, (std::array<std::uint8_t, 4>{1, 2, 3, 4}));
}

TEST(ReadUnsigned, ReadsTwoBytesForSizeTwoAndFourForEveryOther) {
  const std::array<std::uint8_t, 4> bytes = {0x81, 0x02, 0x03, 0xF4};
  EXPECT_EQ(ReadUnsigned(kLittle, 2, bytes.data()), 0x0281U);
  EXPECT_EQ(ReadUnsigned(kBig, 2, bytes.data()), 0x8102U);
  for (const std::size_t size : {0U, 1U, 3U, 4U, 8U}) {
    EXPECT_EQ(ReadUnsigned(kLittle, size, bytes.data()), 0xF4030281U) << size;
    EXPECT_EQ(ReadUnsigned(kBig, size, bytes.data()), 0x810203F4U) << size;
  }
}

TEST(ReadUnsigned, TouchesTwoBytesOnlyForSizeTwo) {
  const Bytes bytes = {0x34, 0x12};  // a third byte read would be seen by the address sanitizer
  EXPECT_EQ(ReadUnsigned(kLittle, 2, bytes.data()), 0x1234U);
}

/// Swaps the first `length` bytes; the storage is all of `bytes`.
Bytes Switched(Bytes bytes, std::size_t length, std::int32_t unit_size) {
  EXPECT_EQ(SwitchByteOrdering(bytes.data(), length, bytes.size(), unit_size), kSuccess);
  return bytes;
}

TEST(SwitchByteOrdering, ReversesEveryUnit) {
  const Bytes bytes = {1, 2, 3, 4, 5, 6, 7, 8};
  EXPECT_EQ(Switched(bytes, 8, 1), bytes);
  EXPECT_EQ(Switched(bytes, 8, 2), (Bytes{2, 1, 4, 3, 6, 5, 8, 7}));
  EXPECT_EQ(Switched(bytes, 8, 4), (Bytes{4, 3, 2, 1, 8, 7, 6, 5}));
  EXPECT_EQ(Switched(bytes, 8, 8), (Bytes{8, 7, 6, 5, 4, 3, 2, 1}));
}

TEST(SwitchByteOrdering, ALastPartialUnitTakesInTheBytesBehindIt) {
  const Bytes bytes = {1, 2, 3, 4, 5, 6, 7, 8, 9};
  EXPECT_EQ(Switched(bytes, 6, 2), (Bytes{2, 1, 4, 3, 6, 5, 7, 8, 9}));
  EXPECT_EQ(Switched(bytes, 6, 4), (Bytes{4, 3, 2, 1, 8, 7, 6, 5, 9}));
  EXPECT_EQ(Switched(bytes, 1, 8), (Bytes{8, 7, 6, 5, 4, 3, 2, 1, 9}));
}

TEST(SwitchByteOrdering, ByteBehindTheStorageCountsAsZeroAndIsNotWritten) {
  EXPECT_EQ(Switched({1, 2, 3}, 3, 2), (Bytes{2, 1, 0}));
  EXPECT_EQ(Switched({1, 2, 3, 4, 5, 6, 7}, 7, 4), (Bytes{4, 3, 2, 1, 0, 7, 6}));
  EXPECT_EQ(Switched({1, 2, 3, 4, 5, 6, 7}, 7, 8), (Bytes{0, 7, 6, 5, 4, 3, 2}));
  EXPECT_EQ(Switched({1}, 1, 8), Bytes{0});
}

TEST(SwitchByteOrdering, FullHostBufferEndsWithAZeroUnit) {
  Bytes bytes(32767, 0x11);
  bytes.back() = 0x99;
  for (const std::int32_t size : {2, 4, 8}) {
    const Bytes result = Switched(bytes, bytes.size(), size);
    const std::size_t cut_unit =
        bytes.size() / static_cast<std::size_t>(size) * static_cast<std::size_t>(size);
    EXPECT_EQ(result[cut_unit], 0x00) << size;
    EXPECT_EQ(std::count(result.begin(), result.end(), 0x99), size == 2 ? 0 : 1) << size;
  }
}

TEST(SwitchByteOrdering, LengthZeroChangesNothing) {
  const Bytes bytes = {1, 2, 3, 4, 5, 6, 7, 8};
  for (const std::int32_t size : {1, 2, 4, 8}) EXPECT_EQ(Switched(bytes, 0, size), bytes);
}

TEST(SwitchByteOrdering, RefusesOtherUnitSizesAndLeavesTheBytesAlone) {
  const Bytes before = {1, 2, 3, 4, 5, 6, 7, 8};
  for (const std::int32_t size : {0, 3, 5, 6, 7, 9, 16, -1, -2, -8, 0x10002}) {
    Bytes bytes = before;
    EXPECT_EQ(SwitchByteOrdering(bytes.data(), bytes.size(), bytes.size(), size), E_INVALIDARG) << size;
    EXPECT_EQ(bytes, before) << size;
  }
}

/// The rule as it reads: storage with zeros behind it, each unit that begins inside the length reversed.
Bytes ReversedByTheRule(const Bytes& bytes, std::size_t length, std::size_t unit) {
  Bytes padded = bytes;
  padded.resize(bytes.size() + unit, 0);
  for (std::size_t at = 0; at < length; at += unit) {
    Bytes copy;
    for (std::size_t back = unit; back > 0; --back) copy.push_back(padded[at + back - 1]);
    std::copy(copy.begin(), copy.end(), padded.begin() + static_cast<std::ptrdiff_t>(at));
  }
  padded.resize(bytes.size());
  return padded;
}

TEST(SwitchByteOrdering, FollowsTheRuleForEveryLengthAndCapacity) {
  for (std::size_t capacity = 0; capacity <= 34; ++capacity) {
    Bytes bytes(capacity);
    for (std::size_t at = 0; at < capacity; ++at) bytes[at] = static_cast<std::uint8_t>(at + 1);
    for (std::size_t length = 0; length <= capacity; ++length) {
      for (const std::int32_t unit : {1, 2, 4, 8}) {
        EXPECT_EQ(Switched(bytes, length, unit),
                  ReversedByTheRule(bytes, length, static_cast<std::size_t>(unit)))
            << "capacity " << capacity << " length " << length << " unit " << unit;
      }
    }
  }
}

}  // namespace
}  // namespace vessa
