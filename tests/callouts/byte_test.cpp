#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>

#include "tests/callouts/loaded_library.h"
#include "tests/support/processor_time.h"

namespace emulator {
namespace {

class SwitchByteOrdering : public LoadedLibrary {
 protected:
  static std::string Swap(const std::string& bytes, std::int32_t unit_size) {
    vessa::HostString buffer{};
    Fill(buffer, bytes);
    EXPECT_EQ(TheLibrary().Call("zfSwitchByteOrdering", buffer, unit_size), 0);
    EXPECT_EQ(buffer.count, bytes.size());
    return std::string(Contents(buffer));
  }
};

TEST_F(SwitchByteOrdering, ReversesEveryUnit) {
  EXPECT_EQ(Swap("123456", 1), "123456");
  EXPECT_EQ(Swap("123456", 2), "214365");
  EXPECT_EQ(Swap("12345678", 4), "43218765");
  EXPECT_EQ(Swap("12345678", 8), "87654321");
}

TEST_F(SwitchByteOrdering, TakesTheBytesBehindIntoALastPartialUnit) {
  vessa::HostString buffer{};
  std::memcpy(buffer.bytes, "123456AB", 8);
  buffer.count = 6;
  EXPECT_EQ(TheLibrary().Call("zfSwitchByteOrdering", buffer, 4), 0);
  EXPECT_EQ(buffer.count, 6);
  EXPECT_EQ(std::memcmp(buffer.bytes, "4321BA65", 8), 0);
}

TEST_F(SwitchByteOrdering, LeavesAnEmptyBufferAlone) { EXPECT_EQ(Swap("", 4), ""); }

TEST_F(SwitchByteOrdering, RefusesOtherUnitsAndLeavesTheBufferUnchanged) {
  for (const std::int32_t unit_size : {3, 0, -1, 5, 16}) {
    vessa::HostString buffer{};
    Fill(buffer, "12345678");
    EXPECT_EQ(TheLibrary().Call("zfSwitchByteOrdering", buffer, unit_size), 1) << unit_size;
    EXPECT_EQ(Contents(buffer), "12345678");
  }
}

/// The bytes of a full buffer once every unit is reversed; the byte that the last one lacks counts as zero.
std::string ReversedFull(std::string bytes, std::size_t unit_size) {
  bytes.resize(vessa::HostString::kCapacity + 1, '\0');
  for (std::size_t unit = 0; unit < bytes.size(); unit += unit_size) {
    const auto start = bytes.begin() + static_cast<std::ptrdiff_t>(unit);
    std::reverse(start, start + static_cast<std::ptrdiff_t>(unit_size));
  }
  bytes.pop_back();
  return bytes;
}

TEST_F(SwitchByteOrdering, TakesTheByteBehindAFullBufferAsZeroAndDoesNotWriteIt) {
  constexpr std::size_t kBehind = offsetof(vessa::HostString, bytes) + vessa::HostString::kCapacity;
  static_assert(kBehind < sizeof(vessa::HostString), "the struct is padded by the byte behind its array");
  std::string bytes;
  while (bytes.size() < vessa::HostString::kCapacity) bytes += static_cast<char>(bytes.size() % 251 + 1);
  for (const std::int32_t unit_size : {2, 4, 8}) {
    vessa::HostString buffer{};
    auto* const memory = reinterpret_cast<unsigned char*>(&buffer);
    Fill(buffer, bytes);
    memory[kBehind] = 0xEE;
    EXPECT_EQ(TheLibrary().Call("zfSwitchByteOrdering", buffer, unit_size), 0);
    EXPECT_TRUE(Contents(buffer) == ReversedFull(bytes, static_cast<std::size_t>(unit_size))) << unit_size;
    EXPECT_EQ(memory[kBehind], 0xEE) << unit_size;
  }
}

class BigHexToDecimal : public LoadedLibrary {
 protected:
  static std::string Convert(const std::string& hexadecimal) {
    vessa::HostString buffer{};
    Fill(buffer, hexadecimal);
    EXPECT_EQ(TheLibrary().Call("zfBigHexToDecimal", buffer), 0) << hexadecimal;
    return std::string(Contents(buffer));
  }
  static void ExpectRefusal(const std::string& text) {
    vessa::HostString buffer{};
    Fill(buffer, text);
    EXPECT_EQ(TheLibrary().Call("zfBigHexToDecimal", buffer), 1) << text;
    EXPECT_EQ(Contents(buffer), text);
  }
};

TEST_F(BigHexToDecimal, ConvertsNumbersOfAnyLength) {
  EXPECT_EQ(Convert(""), "0");
  EXPECT_EQ(Convert("0"), "0");
  EXPECT_EQ(Convert("0000"), "0");
  EXPECT_EQ(Convert("FF"), "255");
  EXPECT_EQ(Convert("ff"), "255");
  EXPECT_EQ(Convert("10"), "16");
  EXPECT_EQ(Convert(std::string(32, 'F')), "340282366920938463463374607431768211455");
}

TEST_F(BigHexToDecimal, HoldsSixtyFourDigits) {
  EXPECT_EQ(Convert(std::string(53, 'F')),
            "6582018229284824168619876730229402019930943462534319453394436095");
  EXPECT_EQ(Convert("1" + std::string(53, '0')),
            "6582018229284824168619876730229402019930943462534319453394436096");
  ExpectRefusal(std::string(54, 'F'));
}

TEST_F(BigHexToDecimal, RefusesCharactersAboveNineThatAreNoDigits) {
  ExpectRefusal("1G");
  ExpectRefusal(":");
  ExpectRefusal("FFg0");
  for (const char* const text : {"\x80", "\xFF", "1\x80", "\xB0"}) ExpectRefusal(text);
}

TEST_F(BigHexToDecimal, CountsCharactersBelowNineByTheirCode) {
  EXPECT_EQ(Convert(" "), "240");
  EXPECT_EQ(Convert("-"), "253");
  EXPECT_EQ(Convert("/"), "255");
  EXPECT_EQ(Convert(std::string(1, '\0')), "208");
  EXPECT_EQ(Convert("1 "), "256");
}

TEST_F(BigHexToDecimal, AnswersAFullBufferAtOnce) {
  const double seconds = ProcessorSeconds([] {
    EXPECT_EQ(Convert(std::string(32767, '0')), "0");
    EXPECT_EQ(Convert(std::string(32766, '0') + "1"), "1");
    ExpectRefusal("1" + std::string(32766, '0'));
  });
  EXPECT_LT(seconds,
            kCoarseTick);  // milliseconds; scaling each of the zeros would take a hundred billion steps
}

}  // namespace
}  // namespace emulator
