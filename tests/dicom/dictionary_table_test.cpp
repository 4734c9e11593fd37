#include "dicom/dictionary_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>

#include "tests/dicom/registry_file.h"

namespace vessa {
namespace {

TEST(DictionaryTable, IsTheRegistryRowByRow) {
  ASSERT_EQ(RegistryLines().size(), kDictionaryRows);
  for (std::size_t at = 0; at < kDictionaryRows; ++at) {
    const RegistryLine& line = RegistryLines()[at];
    const DictionaryRow& row = kDictionaryTable[at];
    EXPECT_EQ(row.tag, line.Tag()) << line.keyword;
    EXPECT_EQ(row.tag_text, line.tag_text);
    EXPECT_EQ(row.keyword, line.keyword);
    EXPECT_EQ(row.vr.Text(), line.vr) << line.keyword;
    EXPECT_EQ(row.vm, line.vm) << line.keyword;
  }
}

TEST(DictionaryTable, SortsTheKeywordRowsAsBytesAndEndsThemWithTheLowerCaseOne) {
  for (std::size_t at = 1; at < kKeywordRows; ++at) {
    EXPECT_LT(RegistryLines()[at - 1].keyword, RegistryLines()[at].keyword);
  }
  EXPECT_EQ(kDictionaryTable[kKeywordRows - 1].keyword, "dBdt");
}

TEST(DictionaryTable, TagTextsAreTheTagsInUpperCase) {
  for (const DictionaryRow& row : kDictionaryTable) EXPECT_EQ(row.tag_text, TagText(row.tag));
}

TEST(DictionaryTable, NoTagComesTwiceAndNoneIsPrivateButTheRepeatingGroups) {
  std::set<std::uint32_t> seen;
  for (const DictionaryRow& row : kDictionaryTable) {
    EXPECT_TRUE(seen.insert(row.tag.Value()).second) << row.tag_text;
  }
  for (std::size_t at = 0; at < kKeywordRows; ++at) EXPECT_FALSE(kDictionaryTable[at].tag.IsPrivate());
}

TEST(DictionaryTable, HoldsEachPlaceholderVrAsOftenAsTheStandardLeavesAChoice) {
  std::map<std::string_view, int> counts;
  for (const DictionaryRow& row : kDictionaryTable) ++counts[row.vr.Text()];
  EXPECT_EQ(counts["XS"], 27);
  EXPECT_EQ(counts["OX"], 11);
  EXPECT_EQ(counts["NA"], 3);
}

TEST(DictionaryTable, UsesNoVrButThoseOfTheStandardAndThePlaceholders) {
  const std::set<std::string_view> vrs = {"AE", "AS", "AT", "CS", "DA", "DS", "DT", "FD", "FL", "IS",
                                          "LO", "LT", "OB", "OD", "OF", "OL", "OV", "OW", "PN", "SH",
                                          "SL", "SQ", "SS", "ST", "SV", "TM", "UC", "UI", "UL", "UN",
                                          "UR", "US", "UT", "UV", "XS", "OX", "NA"};
  for (const DictionaryRow& row : kDictionaryTable) EXPECT_EQ(vrs.count(row.vr.Text()), 1U) << row.keyword;
}

TEST(DictionaryTable, KeepsTheRowsThatNoKeywordFindsBehindTheOthers) {
  std::map<std::string, int> counts;
  for (std::size_t at = kKeywordRows; at < kDictionaryRows; ++at) {
    const DictionaryRow& row = kDictionaryTable[at];
    const bool nameless = row.keyword == "Anonymous" || row.keyword == "Invalid";
    ++counts[std::string(nameless ? row.keyword : row.tag_text.substr(0, 4))];
  }
  const std::map<std::string, int> expected = {{"60FF", 40}, {"50FF", 26},     {"0028", 9},
                                               {"1000", 6},  {"7FFF", 5},      {"0020", 1},
                                               {"1010", 1},  {"Anonymous", 3}, {"Invalid", 3}};
  EXPECT_EQ(counts, expected);
}

TEST(DictionaryTable, HoldsTheCommandElements) {
  const auto commands = std::count_if(kDictionaryTable.begin(), kDictionaryTable.end(),
                                      [](const DictionaryRow& row) { return row.tag.Group() == 0; });
  EXPECT_EQ(commands, 46);
}

TEST(DictionaryTable, IndexNamesEachRowOnceWithItsTagAndVr) {
  std::set<std::uint16_t> rows;
  for (const TagIndexPair& pair : kTagIndexPairs) {
    ASSERT_LT(pair.row, kDictionaryRows);
    rows.insert(pair.row);
    EXPECT_EQ(Tag{pair.tag}, kDictionaryTable[pair.row].tag);
    EXPECT_EQ(pair.vr, kDictionaryTable[pair.row].vr);
  }
  EXPECT_EQ(rows.size(), kDictionaryRows);
}

}  // namespace
}  // namespace vessa
