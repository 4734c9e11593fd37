#include "emulator/check/findings.h"

#include <gtest/gtest.h>

#include "tests/check/checked.h"

using dicom_bytes::Hex;
using dicom_bytes::Item;
using dicom_bytes::UndefinedItem;
using emulator::FileReport;
using emulator::FindingKind;
using emulator::Prediction;

namespace {

const std::string kName = kExplicit.Element(0x00100010, "PN", "Doe^John");
const std::string kId = kExplicit.Element(0x00100020, "LO", "1234");

/// The findings of a data set that decomposes with success, as "kind count offset path" lines.
std::string FindingsOf(const FileReport& report) {
  EXPECT_EQ(report.prediction.outcome, Prediction::Outcome::kSucceeds) << report.prediction.message;
  std::string lines;
  for (std::size_t index = 0; index < emulator::kFindingKinds; ++index) {
    const auto kind = static_cast<FindingKind>(index);
    const emulator::Finding& finding = report.findings.Of(kind);
    if (finding.count == 0) continue;
    lines += std::string(NameOf(kind)) + " " + std::to_string(finding.count) + " " +
             std::to_string(finding.first_offset) + " " + finding.first_path + "\n";
  }
  return lines;
}

TEST(Findings, AreNoneInAnOrdinaryDataSet) {
  EXPECT_EQ(
      FindingsOf(CheckedExplicit(kExplicit.Sequence(0x00081140, Item(kName + kId) + Item(kName)) + kName)),
      "");
  EXPECT_EQ(
      FindingsOf(CheckedExplicit(kExplicit.UndefinedSequence(0x00081140, UndefinedItem(kName)) + kName)), "");
  EXPECT_EQ(FindingsOf(
                Checked(kImplicit.Element(0x00100010, "PN", "Doe^John"), dicom_bytes::kImplicitLittleEndian)),
            "");
}

TEST(Findings, TellOfADataSetWithoutElements) {
  EXPECT_EQ(FindingsOf(CheckedExplicit("")), "empty-data-set 1 0 \n");
}

TEST(Findings, TellOfTagsThatDoNotAscend) {
  EXPECT_EQ(FindingsOf(CheckedExplicit(kId + kName + kName)), "unordered-tags 2 12 \n");
  EXPECT_EQ(FindingsOf(CheckedExplicit(kExplicit.Sequence(0x00081140, Item(kId + kName)))),
            "unordered-tags 1 32 (0008,1140) item 1\n");
}

TEST(Findings, TellOfVrsWhoseLengthIsReadAsAShortOne) {
  const std::string header =
      Hex("08 00 05 01  4F 44  0000");  // and eight more bytes that are taken for an element
  EXPECT_EQ(FindingsOf(CheckedExplicit(header + Hex("10 00 10 00 50 4E 00 00"))), "short-length-vr 1 0 \n");
  for (const char* vr : {"OD", "OL", "OV", "SV", "UC", "UR", "UV"}) {
    const std::string element = Hex("08 00 05 01") + vr + Hex("0000");
    EXPECT_EQ(CheckedExplicit(element).findings.Of(FindingKind::kShortLengthVr).count, 1U) << vr;
  }
}

TEST(Findings, AreNotGuessedBehindAMisreadElement) {
  const FileReport report = CheckedExplicit(Hex("08 00 05 01  4F 44  0000  00000000 00000000"));
  EXPECT_EQ(FindingsOf(report), "short-length-vr 1 0 \n");
}

TEST(Findings, TellOfVrsThatTheStandardDoesNotHave) {
  EXPECT_EQ(FindingsOf(CheckedExplicit(kName + kExplicit.Element(0x00100020, "ZZ", "1234"))),
            "unknown-vr 1 16 \n");
}

TEST(Findings, TellOfPlaceholdersOfImplicitVrs) {
  const std::string data_set =
      kImplicit.Element(0x00280106, "", "12") + kImplicit.Element(0x7FE00010, "", "1234");
  EXPECT_EQ(FindingsOf(Checked(data_set, dicom_bytes::kImplicitLittleEndian)), "placeholder-vr 2 0 \n");
}

TEST(Findings, TellOfZerosBehindTheDataSet) {
  EXPECT_EQ(FindingsOf(CheckedExplicit(kName + std::string(24, '\0'))), "zero-elements 3 16 \n");
}

TEST(Findings, TellOfAFileThatIsReadFromItsFirstByte) {
  const std::string meta_only = kExplicit.Element(0x00020010, "UI", "1.2.3.4.") + kName;
  EXPECT_EQ(FindingsOf(CheckedExplicit(meta_only)), "unpositioned 1 0 \n");
  const FileReport whole = Checked(FileOf("", dicom_bytes::kExplicitLittleEndian, kName),
                                   dicom_bytes::kExplicitLittleEndian, true);
  EXPECT_EQ(whole.findings.Of(FindingKind::kUnpositioned).count, 1U);
}

TEST(Findings, TellOfASyntaxThatTheFirstElementIsNotIn) {
  EXPECT_EQ(Checked(kName, dicom_bytes::kImplicitLittleEndian).findings.Of(FindingKind::kWrongSyntax).count,
            1U);
  const std::string implicit = kImplicit.Element(0x00100010, "PN", "Doe^John");
  EXPECT_EQ(CheckedExplicit(implicit).findings.Of(FindingKind::kWrongSyntax).count, 1U);
}

TEST(Findings, TellOfTagsThatNoDataSetHolds) {
  EXPECT_EQ(FindingsOf(CheckedExplicit(kName + kExplicit.Element(0xFFFE1234, "LO", ""))),
            "stray-tag 1 16 \n");
}

TEST(Findings, TellOfDelimitersWithALength) {
  const std::string item = dicom_bytes::TagAndLength(dicom_bytes::kItem, dicom_bytes::kUndefined) + kName;
  const std::string item_end = Hex("FEFF 0DE0 0000 0200");
  const std::string sequence_end = Hex("FEFF DDE0 0400 0000");
  const std::string header = kExplicit.Header(0x00081140, "SQ", dicom_bytes::kUndefined);
  EXPECT_EQ(FindingsOf(CheckedExplicit(header + item + item_end + sequence_end)),
            "delimiter-length 2 36 (0008,1140) item 1\n");
}

TEST(Findings, TellOfElementsThatRunOverTheirItem) {
  const std::string item = dicom_bytes::TagAndLength(dicom_bytes::kItem, 12) + kName;
  EXPECT_EQ(FindingsOf(CheckedExplicit(kExplicit.Sequence(0x00081140, item))),
            "overrun 1 32 (0008,1140) item 1\n");
}

TEST(Findings, TellOfAnItemThatTheEndOfTheDataEnds) {
  const std::string item = dicom_bytes::TagAndLength(dicom_bytes::kItem, dicom_bytes::kUndefined) + kName;
  EXPECT_EQ(FindingsOf(CheckedExplicit(kExplicit.Sequence(0x00081140, item))),
            "unended-item 1 36 (0008,1140) item 1\n");
}

TEST(Findings, HaveNamesThatScriptsCanUse) {
  for (std::size_t index = 0; index < emulator::kFindingKinds; ++index) {
    const auto kind = static_cast<FindingKind>(index);
    EXPECT_EQ(emulator::FindingNamed(NameOf(kind)), kind);
  }
  EXPECT_FALSE(emulator::FindingNamed("unheard-of").has_value());
}

}  // namespace
