#include <gtest/gtest.h>

#include <set>

#include "dicom/dictionary.h"
#include "tests/dicom/registry_file.h"

namespace vessa {
namespace {

const std::set<std::string>& RefusedKeywords() {
  static const std::set<std::string> keywords = {"MagnificationType", "BeamOrderIndex",
                                                 "DoubleExposureMeterset", "DoubleExposureFieldDelta"};
  return keywords;
}

TEST(Keyword, FindsTheTag) {
  EXPECT_EQ(LookupKeyword("PatientName"), (Tag{0x0010, 0x0010}));
  EXPECT_EQ(LookupKeyword("PatientName").Value(), 1048592U);
  EXPECT_EQ(LookupKeyword("ItemDelimitationItem"), kItemDelimitation);
}

TEST(Keyword, FindsTheFirstAndTheLastOfTheSortedRows) {
  EXPECT_EQ(LookupKeyword("AITDeviceType"), (Tag{0x4010, 0x1070}));
  EXPECT_EQ(LookupKeyword("dBdt"), (Tag{0x0018, 0x1318}));
}

TEST(Keyword, FindsEveryOneOfTheRegistryButThoseRefused) {
  constexpr std::size_t kSortedLines = 4899;
  ASSERT_EQ(RegistryLines().size(), 4993U);
  std::size_t refused = 0;
  for (std::size_t at = 0; at < kSortedLines; ++at) {
    const RegistryLine& line = RegistryLines()[at];
    const bool is_refused = RefusedKeywords().count(line.keyword) == 1;
    refused += is_refused ? 1U : 0U;
    EXPECT_EQ(LookupKeyword(line.keyword), is_refused ? kTagNotFound : line.Tag()) << line.keyword;
  }
  EXPECT_EQ(refused, 4U);
}

TEST(Keyword, RepeatingGroupsAndNamelessElementsHaveNone) {
  for (std::size_t at = 4899; at < RegistryLines().size(); ++at) {
    EXPECT_EQ(LookupKeyword(RegistryLines()[at].keyword), kTagNotFound) << RegistryLines()[at].keyword;
  }
  EXPECT_EQ(LookupKeyword("OverlayData").Value(), 4294967295U);
  EXPECT_EQ(LookupKeyword("Anonymous"), kTagNotFound);
  EXPECT_EQ(LookupKeyword("Invalid"), kTagNotFound);
}

TEST(Keyword, RefusedElementsAreStillFoundByTheirTags) {
  InitialiseDictionary();
  EXPECT_EQ(LookupTag(Tag{0x2010, 0x0060})->keyword, "MagnificationType");
  EXPECT_EQ(LookupTag(Tag{0x0074, 0x1324})->keyword, "BeamOrderIndex");
  EXPECT_EQ(LookupTag(Tag{0x0074, 0x1338})->keyword, "DoubleExposureMeterset");
  EXPECT_EQ(LookupTag(Tag{0x0074, 0x133A})->keyword, "DoubleExposureFieldDelta");
  EXPECT_EQ(LookupKeyword("BeamOrderIndexTrial"), (Tag{0x0074, 0x1024}));
}

TEST(Keyword, CaseMatters) {
  EXPECT_EQ(LookupKeyword("patientname"), kTagNotFound);
  EXPECT_EQ(LookupKeyword("PATIENTNAME"), kTagNotFound);
  EXPECT_EQ(LookupKeyword("DBdt"), kTagNotFound);
}

TEST(Keyword, NeitherAPartNorAnExtensionIsEnough) {
  EXPECT_EQ(LookupKeyword(""), kTagNotFound);
  EXPECT_EQ(LookupKeyword("PatientNam"), kTagNotFound);
  EXPECT_EQ(LookupKeyword("PatientName "), kTagNotFound);
  EXPECT_EQ(LookupKeyword(std::string_view("PatientName\0", 12)), kTagNotFound);
  EXPECT_EQ(LookupKeyword("00100010"), kTagNotFound);
}

TEST(Keyword, AnyBytesAndAnyLengthAreAllowed) {
  EXPECT_EQ(LookupKeyword("\xFF\x80"), kTagNotFound);
  EXPECT_EQ(LookupKeyword("PatientName\xC4"), kTagNotFound);
  EXPECT_EQ(LookupKeyword("~"), kTagNotFound);
  EXPECT_EQ(LookupKeyword(std::string(32767, 'P')), kTagNotFound);
}

}  // namespace
}  // namespace vessa
