#include "platform/code_page.h"

#include <gtest/gtest.h>

#include <array>

namespace vessa {
namespace {

using namespace std::string_view_literals;

/// True where the active code page is windows-1252: everywhere but on a Windows set up for another one.
bool IsWestern() { return Widen("\x80\xE9") == u"\u20AC\u00E9"; }

std::string AllBytes() {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  return bytes;
}

TEST(CodePage, ConvertsNothingToNothing) {
  EXPECT_EQ(Widen(""), u"");
  EXPECT_EQ(Narrow(u""), "");
  EXPECT_EQ(NarrowToBytes(u""), "");
}

TEST(CodePage, KeepsAsciiWithItsZeros) {
  EXPECT_EQ(Widen("a\0b~"sv), u"a\0b~"sv);
  EXPECT_EQ(Narrow(u"a\0b~"sv), "a\0b~"sv);
}

TEST(CodePage, ConvertsEveryByteThereAndBack) {
  if (!IsWestern()) GTEST_SKIP() << "another code page is active";
  const std::string bytes = AllBytes();
  const std::u16string wide = Widen(bytes);
  ASSERT_EQ(wide.size(), bytes.size());
  EXPECT_EQ(Narrow(wide), bytes);
}

TEST(CodePage, HasTheCharactersOfWindows1252) {
  if (!IsWestern()) GTEST_SKIP() << "another code page is active";
  // From Python: bytes(range(0x80, 0xA0)).decode('cp1252', 'replace')
  EXPECT_EQ(Widen("\x80\x82\x83\x84\x85\x86\x87\x88\x89\x8A\x8B\x8C\x8E"),
            u"\u20AC\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u017D");
  EXPECT_EQ(Widen("\x91\x92\x93\x94\x95\x96\x97\x98\x99\x9A\x9B\x9C\x9E\x9F"),
            u"\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\u017E\u0178");
  EXPECT_EQ(Widen("\xA0\xC4\xFF"), u"\u00A0\u00C4\u00FF");
}

TEST(CodePage, KeepsTheFiveUndefinedBytes) {
  if (!IsWestern()) GTEST_SKIP() << "another code page is active";
  constexpr std::array<char16_t, 5> kUndefined = {0x81, 0x8D, 0x8F, 0x90, 0x9D};
  for (const char16_t unit : kUndefined) {
    const std::string byte(1, static_cast<char>(unit));
    EXPECT_EQ(Widen(byte), std::u16string(1, unit));
    EXPECT_EQ(Narrow(std::u16string(1, unit)), byte);
  }
}

TEST(CodePage, ReplacesWhatHasNoByte) {
  if (!IsWestern()) GTEST_SKIP() << "another code page is active";
  EXPECT_EQ(Narrow(u"a\u4E2Db"), "a?b");
  EXPECT_EQ(Narrow(u"\xD83D\xDE00"), "??");  // a character beyond 16 bits: two halves
  EXPECT_EQ(Narrow(u"\xFFFD"), "?");
}

TEST(WidenInto, WritesAsMuchAsHasRoom) {
  std::array<char16_t, 4> out = {u'-', u'-', u'-', u'-'};
  EXPECT_EQ(WidenInto("abcdef", std::span(out).first(3)), 3U);
  EXPECT_EQ(std::u16string_view(out.data(), out.size()), u"abc-");
  EXPECT_EQ(WidenInto("x", out), 1U);
  EXPECT_EQ(std::u16string_view(out.data(), out.size()), u"xbc-");
}

TEST(WidenInto, WritesNothingOutOfNothingOrIntoNothing) {
  std::array<char16_t, 1> out = {u'-'};
  EXPECT_EQ(WidenInto("", out), 0U);
  EXPECT_EQ(WidenInto("abc", {}), 0U);
  EXPECT_EQ(out[0], u'-');
}

TEST(WidenInto, AgreesWithWiden) {
  if (!IsWestern()) GTEST_SKIP() << "another code page is active";
  std::array<char16_t, 256> out{};
  const std::size_t units = WidenInto(AllBytes(), out);
  EXPECT_EQ(std::u16string_view(out.data(), units), Widen(AllBytes()));
}

TEST(NarrowToBytes, TurnsCharactersTo255IntoTheirByte) {
  std::u16string wide;
  for (char16_t unit = 0; unit < 256; ++unit) wide += unit;
  EXPECT_EQ(NarrowToBytes(wide), AllBytes());
}

TEST(NarrowToBytes, SendsOnlyCharactersAbove255ThroughTheCodePage) {
  if (!IsWestern()) GTEST_SKIP() << "another code page is active";
  EXPECT_EQ(NarrowToBytes(u"\u0080\u20AC\u0152\u00FF\u4E2D"), "\x80\x80\x8C\xFF?");
}

}  // namespace
}  // namespace vessa
