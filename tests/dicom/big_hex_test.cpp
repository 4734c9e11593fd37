#include "dicom/big_hex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <chrono>

#include "dicom/status.h"

namespace vessa {
namespace {

struct Conversion {
  std::string_view hexadecimal;
  std::string_view decimal;
};

/// Expected texts by Python's integers.
constexpr Conversion kConversions[] = {
    {"0", "0"},
    {"1", "1"},
    {"9", "9"},
    {"A", "10"},
    {"F", "15"},
    {"10", "16"},
    {"63", "99"},
    {"64", "100"},
    {"FF", "255"},
    {"80000000", "2147483648"},
    {"FFFFFFFF", "4294967295"},
    {"100000000", "4294967296"},
    {"7FFFFFFFFFFFFFFF", "9223372036854775807"},
    {"8000000000000000", "9223372036854775808"},
    {"FFFFFFFFFFFFFFFF", "18446744073709551615"},
    {"10000000000000000", "18446744073709551616"},
    {"8AC7230489E80000", "10000000000000000000"},
    {"56BC75E2D63100000", "100000000000000000000"},
    {"FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF", "340282366920938463463374607431768211455"},
    {"100000000000000000000000000000000", "340282366920938463463374607431768211456"},
    {"26E4D30ECCC3215DD8F3157D27E23ACBDCFE67FFFFFFFFFFFFFFF",
     "999999999999999999999999999999999999999999999999999999999999999"},
    {"26E4D30ECCC3215DD8F3157D27E23ACBDCFE68000000000000000",
     "1000000000000000000000000000000000000000000000000000000000000000"},
    {"80000000000000000000000000000000000000000000000000000",
     "3291009114642412084309938365114701009965471731267159726697218048"},
    {"FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF",
     "6582018229284824168619876730229402019930943462534319453394436095"},
    {"100000000000000000000000000000000000000000000000000000",
     "6582018229284824168619876730229402019930943462534319453394436096"},
    {"184F03E93FF9F4DAA797ED6E38ED64BF6A1F00FFFFFFFFFFFFFFFF",
     "9999999999999999999999999999999999999999999999999999999999999999"},
    {"A5CD", "42445"},
    {"26F2A74DE4", "167279807972"},
    {"A6A3A4506513270E", "12007621696699967246"},
    {"1125D23F0824128B2F33", "80977909576133742636851"},
    {"19531985D5D9DC9F81818E811", "125401385864804234588421941265"},
    {"4CCA86C36F675CC81E74EF5E8E25D94", "6379556560745875920367789175193361812"},
    {"3D9C172411E20B8F6B0D549B6F03675A1600A35A", "351729369127737197315395237851540090966681625434"},
    {"F90C192CFD3AC94AF0F21DDB66CAD4A268D116ECE1738F7D9",
     "97705936413241395711878619089844436736785318842465334654937"},
    {"7EB1F29D0DA9953F48F1A09F76B5A170B33839263059F28C105D",
     "203591189449254667958352418430317153914019859257456192549294173"},
};

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  return lower;
}

/// The status raised, or success.
Status StatusOf(std::string_view hexadecimal) {
  try {
    BigHexToDecimal(hexadecimal);
  } catch (Status status) {
    return status;
  }
  return kSuccess;
}

std::string Fs(std::size_t count) { return std::string(count, 'F'); }
std::string Zeros(std::size_t count) { return std::string(count, '0'); }

TEST(BigHexToDecimal, ConvertsNumbersOfUpToSixtyFourDecimalDigits) {
  for (const auto& [hexadecimal, decimal] : kConversions) {
    EXPECT_EQ(BigHexToDecimal(hexadecimal), decimal) << hexadecimal;
  }
}

TEST(BigHexToDecimal, CaseDoesNotMatter) {
  for (const auto& [hexadecimal, decimal] : kConversions) {
    EXPECT_EQ(BigHexToDecimal(LowerCase(hexadecimal)), decimal) << hexadecimal;
  }
  EXPECT_EQ(BigHexToDecimal("fF"), "255");
}

TEST(BigHexToDecimal, EmptyAndZerosGiveZero) {
  EXPECT_EQ(BigHexToDecimal(""), "0");
  EXPECT_EQ(BigHexToDecimal("0"), "0");
  EXPECT_EQ(BigHexToDecimal("0000"), "0");
  EXPECT_EQ(BigHexToDecimal(Zeros(32767)), "0");
}

TEST(BigHexToDecimal, ZerosInFrontChangeNothing) {
  for (const auto& [hexadecimal, decimal] : kConversions) {
    EXPECT_EQ(BigHexToDecimal("000" + std::string(hexadecimal)), decimal);
    EXPECT_EQ(BigHexToDecimal(Zeros(32767 - hexadecimal.size()) + std::string(hexadecimal)), decimal);
  }
}

TEST(BigHexToDecimal, SixtyFiveDecimalDigitsAreTooMany) {
  // 10 to the power of 64, the first number of 65 digits, and the next one; the one before is in the table
  // above.
  EXPECT_EQ(StatusOf("184F03E93FF9F4DAA797ED6E38ED64BF6A1F010000000000000000"), E_FAIL);
  EXPECT_EQ(StatusOf("184F03E93FF9F4DAA797ED6E38ED64BF6A1F010000000000000001"), E_FAIL);
  EXPECT_EQ(StatusOf(Fs(53)), kSuccess);
  EXPECT_EQ(StatusOf(Fs(54)), E_FAIL);
  EXPECT_EQ(StatusOf("1" + Zeros(53)), kSuccess);
  EXPECT_EQ(StatusOf("2" + Zeros(53)), E_FAIL);
  EXPECT_EQ(StatusOf("1" + Zeros(54)), E_FAIL);
  EXPECT_EQ(StatusOf("1" + Zeros(32766)), E_FAIL);
  EXPECT_EQ(StatusOf(Fs(32767)), E_FAIL);
}

TEST(BigHexToDecimal, RefusesWhatSortsAboveNineAndIsNoHexadecimalLetter) {
  for (int code = 0; code < 256; ++code) {
    const bool refused = code > '9' && std::isxdigit(code) == 0;
    const std::string text = {'1', static_cast<char>(code), '2'};
    EXPECT_EQ(StatusOf(text), refused ? kUnexpected : kSuccess) << code;
  }
}

TEST(BigHexToDecimal, RefusesABadCharacterWhereverItStands) {
  for (const char* text : {"G", ":", "g", "G000", "000G", "12:34", "x10", "0x10", "\x80", "\xFF"}) {
    EXPECT_EQ(StatusOf(text), kUnexpected) << text;
  }
  EXPECT_EQ(StatusOf("G" + Zeros(32766)), kUnexpected);
}

TEST(BigHexToDecimal, WhatSortsBelowZeroIsKeptAsADigitOfItsOwn) {
  EXPECT_EQ(BigHexToDecimal(" "), "240");
  EXPECT_EQ(BigHexToDecimal("/"), "255");
  EXPECT_EQ(BigHexToDecimal("-"), "253");
  EXPECT_EQ(BigHexToDecimal(std::string_view("\0", 1)), "208");
  EXPECT_EQ(BigHexToDecimal("1 "), "256");
  EXPECT_EQ(BigHexToDecimal(" 1"), "3841");
  EXPECT_EQ(BigHexToDecimal("-1"), "4049");
  EXPECT_EQ(BigHexToDecimal("F F"), "7695");
  EXPECT_EQ(BigHexToDecimal("+10"), "64272");
  EXPECT_EQ(BigHexToDecimal("   "), "65520");
  EXPECT_EQ(BigHexToDecimal(" " + Zeros(51)),
            "6170642089954522658081134434590064393685259496125924487557283840");
  EXPECT_EQ(StatusOf(" " + Zeros(52)), E_FAIL);
}

TEST(BigHexToDecimal, OfTwoErrorsTheOneNearerTheEndIsRaised) {
  EXPECT_EQ(StatusOf("G1" + Zeros(54)), E_FAIL);
  EXPECT_EQ(StatusOf("1G" + Zeros(54)), kUnexpected);
  EXPECT_EQ(StatusOf("1" + Zeros(54) + "G"), kUnexpected);
  EXPECT_EQ(StatusOf("G" + Fs(54)), E_FAIL);
  EXPECT_EQ(StatusOf("F" + Fs(52) + "G"), kUnexpected);
}

TEST(BigHexToDecimal, AFullBufferIsAnsweredAtOnce) {
  // Scaling every zero would take hours; a second leaves room for the slowest of machines and sanitizers.
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(BigHexToDecimal(Zeros(32766) + "1"), "1");
  EXPECT_EQ(BigHexToDecimal(Zeros(32767 - 53) + Fs(53)),
            "6582018229284824168619876730229402019930943462534319453394436095");
  EXPECT_EQ(StatusOf(Fs(1) + Zeros(32766)), E_FAIL);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
}

}  // namespace
}  // namespace vessa
