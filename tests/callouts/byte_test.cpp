#include <chrono>
#include <cstring>
#include <string>

#include "tests/callouts/loaded_library.h"

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

TEST_F(SwitchByteOrdering, TakesTheByteBehindAFullBufferAsZeroAndDoesNotWriteIt) {
  for (const std::int32_t unit_size : {2, 4, 8}) {
    struct {
      vessa::HostString buffer;
      unsigned char guard[16];
    } memory{};
    std::memset(memory.buffer.bytes, 'x', vessa::HostString::kCapacity);
    std::memset(memory.guard, 0xEE, sizeof memory.guard);
    memory.buffer.count = vessa::HostString::kCapacity;
    EXPECT_EQ(TheLibrary().Call("zfSwitchByteOrdering", memory.buffer, unit_size), 0);
    const std::size_t last_unit = vessa::HostString::kCapacity + 1 - static_cast<std::size_t>(unit_size);
    EXPECT_EQ(memory.buffer.bytes[last_unit], 0) << unit_size;
    EXPECT_EQ(memory.buffer.bytes[last_unit + 1 - 2], 'x') << unit_size;
    EXPECT_EQ(memory.guard[0], 0xEE) << unit_size;
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
}

TEST_F(BigHexToDecimal, CountsCharactersBelowNineByTheirCode) {
  EXPECT_EQ(Convert(" "), "240");
  EXPECT_EQ(Convert("-"), "253");
  EXPECT_EQ(Convert("/"), "255");
  EXPECT_EQ(Convert(std::string(1, '\0')), "208");
  EXPECT_EQ(Convert("1 "), "256");
}

TEST_F(BigHexToDecimal, AnswersAFullBufferAtOnce) {
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(Convert(std::string(32767, '0')), "0");
  EXPECT_EQ(Convert(std::string(32766, '0') + "1"), "1");
  ExpectRefusal("1" + std::string(32766, '0'));
  // Milliseconds; the bound only tells them from the hours that the plain way would take.
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

}  // namespace
}  // namespace emulator
