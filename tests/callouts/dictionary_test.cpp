#include <string>
#include <vector>

#include "tests/callouts/loaded_library.h"

namespace emulator {
namespace {

using Texts = std::vector<std::u16string>;

class TagInfo : public LoadedLibrary {
 protected:
  static Texts Ask(std::int64_t tag) {
    const ListResult result = Call("zfTagInfo", ListBuilder().Integer(tag));
    ExpectSuccess(result);
    Texts texts;
    for (const ListValue& value : result.values) {
      EXPECT_TRUE(value.Is(ListType::kWideString));
      texts.push_back(AsWideText(value.value));
    }
    return texts;
  }
};

TEST_F(TagInfo, DescribesAnAttribute) {
  EXPECT_EQ(Ask(0x00100010), (Texts{u"(0010,0010)", u"PN", u"PatientName", u"1", u""}));
}

TEST_F(TagInfo, DescribesAMemberOfARepeatingGroupUnderItsOwnTag) {
  EXPECT_EQ(Ask(0x60020010), (Texts{u"(6002,0010)", u"US", u"OverlayRows", u"1", u""}));
}

TEST_F(TagInfo, TakesPixelDataAsNoRepeatingGroup) {
  EXPECT_EQ(Ask(0x7FE00010), (Texts{u"(7FE0,0010)", u"OX", u"PixelData", u"1", u""}));
}

TEST_F(TagInfo, DescribesPrivateTagsByTheirPlace) {
  EXPECT_EQ(Ask(0x00091010), (Texts{u"(0009,1010)", u"LO", u"(private)", u"1", u"(private)"}));
  EXPECT_EQ(Ask(0x00090010), (Texts{u"(0009,0010)", u"LO", u"(private)", u"1", u"(private)"}));
  EXPECT_EQ(Ask(0x00091101), (Texts{u"(0009,1101)", u"UN", u"(private)", u"1", u"(private)"}));
  EXPECT_EQ(Ask(0x00090101), (Texts{u"(0009,0101)", u"UN", u"(private)", u"1", u"(private)"}));
  EXPECT_EQ(Ask(0x00070010), (Texts{u"(0007,0010)", u"UN", u"(private)", u"1", u"(private)"}));
  EXPECT_EQ(Ask(0x0009ABCD)[0], u"(0009,ABCD)");
}

TEST_F(TagInfo, AnswersAnUnknownTagWithFiveEmptyTexts) {
  EXPECT_EQ(Ask(0x00080002), (Texts{u"", u"", u"", u"", u""}));
}

TEST_F(TagInfo, TakesTheLow32BitsOfALongTag) {
  EXPECT_EQ(Ask(0x7700100010), (Texts{u"(0010,0010)", u"PN", u"PatientName", u"1", u""}));
  EXPECT_EQ(Ask(static_cast<std::int32_t>(0xFFFEE000))[2], u"Item");
}

TEST_F(TagInfo, TakesATagAsText) {
  const ListResult result = Call("zfTagInfo", ListBuilder().String("1048592"));
  ASSERT_EQ(result.values.size(), 5U);
  EXPECT_EQ(AsWideText(result.values[2].value), u"PatientName");
}

class NameTag : public LoadedLibrary {
 protected:
  static std::int64_t Ask(const ListBuilder& arguments) {
    const ListResult result = Call("zfNameTag", arguments);
    ExpectSuccess(result);
    EXPECT_EQ(result.values.size(), 1U);
    EXPECT_TRUE(result.values.at(0).Is(ListType::kNonNegativeInteger));
    return AsInteger(result.values.at(0).value);
  }
  static constexpr std::int64_t kNotFound = 4294967295;
};

TEST_F(NameTag, FindsAKeyword) {
  EXPECT_EQ(Ask(ListBuilder().String("PatientName")), 1048592);
  EXPECT_EQ(Ask(ListBuilder().WideString(u"PatientName")), 1048592);
}

TEST_F(NameTag, FindsATagAbove31BitsAsANonNegativeInteger) {
  EXPECT_EQ(Ask(ListBuilder().String("Item")), 0xFFFEE000);
}

TEST_F(NameTag, MindsTheCase) { EXPECT_EQ(Ask(ListBuilder().String("patientname")), kNotFound); }

TEST_F(NameTag, DoesNotFindRepeatingGroups) {
  EXPECT_EQ(Ask(ListBuilder().String("OverlayData")), kNotFound);
}

TEST_F(NameTag, RefusesFourKeywords) {
  for (const char* keyword :
       {"MagnificationType", "BeamOrderIndex", "DoubleExposureMeterset", "DoubleExposureFieldDelta"}) {
    EXPECT_EQ(Ask(ListBuilder().String(keyword)), kNotFound) << keyword;
  }
}

TEST_F(NameTag, FindsNothingForAnEmptyOrAbsentKeyword) {
  EXPECT_EQ(Ask(ListBuilder().String("")), kNotFound);
  EXPECT_EQ(Ask(ListBuilder().Absent()), kNotFound);
}

}  // namespace
}  // namespace emulator
