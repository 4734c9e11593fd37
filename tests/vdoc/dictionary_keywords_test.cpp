#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/paths.h"
#include "tests/vdoc/reference_parsing.h"

// Every row of the dictionary's source, named by keyword and by tag.

namespace {

struct Row {
  std::uint32_t tag = 0;
  std::string keyword;
  std::string vr;
};

// Tag, keyword, VR and VM, a tab between each.
std::vector<Row> ReadRegistry() {
  std::ifstream file(std::string(kSourceFolder) + "/dicom/registry.tsv");
  std::vector<Row> rows;
  for (std::string line; std::getline(file, line);) {
    std::istringstream fields(line);
    std::string tag;
    Row row;
    std::getline(fields, tag, '\t');
    std::getline(fields, row.keyword, '\t');
    std::getline(fields, row.vr, '\t');
    row.tag = static_cast<std::uint32_t>(std::stoul(tag, nullptr, 16));
    rows.push_back(row);
  }
  return rows;
}

constexpr std::size_t kRows = 4993;
constexpr std::size_t kKeywordRows =
    4899;  // the rows behind them, of repeating groups mostly, have no keyword of use
const std::set<std::uint32_t> kRefused = {0x20100060, 0x00741324, 0x00741338, 0x0074133A};

std::string Format(const char* format, unsigned first, unsigned second) {
  char text[sizeof "(gggg,eeee)"];
  static_cast<void>(std::snprintf(text, sizeof text, format, first, second));
  return text;
}

std::string HexReference(std::uint32_t tag) { return Format("(%04X,%04X)", tag >> 16, tag & 0xFFFF); }
std::string TagOf(std::uint32_t tag) { return Format("%04X%04X", tag >> 16, tag & 0xFFFF); }

TEST(DictionaryKeywords, EveryKeywordNamesItsTagButTheFourThatAreRefused) {
  const std::vector<Row> rows = ReadRegistry();
  ASSERT_EQ(rows.size(), kRows);
  std::size_t refused = 0;
  for (std::size_t i = 0; i < kKeywordRows; ++i) {
    const Row& row = rows[i];
    if (kRefused.contains(row.tag)) {
      ++refused;
      EXPECT_EQ(ParseReference(row.keyword), Message("Tag name not found in dictionary: " + row.keyword +
                                                     " at offset " + std::to_string(row.keyword.size() + 1)));
    } else {
      EXPECT_EQ(ParseReference(row.keyword), ListOf({row.tag})) << row.keyword;
    }
  }
  EXPECT_EQ(refused, kRefused.size());
}

TEST(DictionaryKeywords, KeywordsOfRepeatingGroupsAndOfNamelessRowsAreNotFound) {
  const std::vector<Row> rows = ReadRegistry();
  ASSERT_EQ(rows.size(), kRows);
  for (std::size_t i = kKeywordRows; i < kRows; ++i) {
    EXPECT_EQ(ParseReference(rows[i].keyword),
              Message("Tag name not found in dictionary: " + rows[i].keyword + " at offset " +
                      std::to_string(rows[i].keyword.size() + 1)));
  }
}

TEST(DictionaryKeywords, EveryTagCanBeWrittenInHexadecimal) {
  for (const Row& row : ReadRegistry()) EXPECT_EQ(ParseReference(HexReference(row.tag)), ListOf({row.tag}));
}

TEST(DictionaryKeywords, SequencesAloneHaveItems) {
  std::size_t sequences = 0;
  for (const Row& row : ReadRegistry()) {
    const Parsed parsed = ParseSubscript(HexReference(row.tag) + "[]");
    if ((row.tag >> 16 & 1) != 0) {
      EXPECT_EQ(parsed, Message("Unrecognized tag: " + TagOf(row.tag) + " at offset 12"));
    } else if (row.vr == "SQ") {
      ++sequences;
      EXPECT_EQ(parsed, ListOf({row.tag, 0})) << row.keyword;
    } else {
      EXPECT_EQ(parsed, Message("Element is not a sequence: " + TagOf(row.tag) + " at offset 12"));
    }
  }
  EXPECT_GT(sequences, 500U);
}

}  // namespace
