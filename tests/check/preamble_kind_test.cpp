#include "emulator/check/preamble_kind.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/check/checked.h"

using namespace std::string_literals;
using emulator::FindingKind;
using emulator::PreambleKind;

namespace {

PreambleKind KindOf(const std::string& start) {
  return Checked(FileOf(start, dicom_bytes::kExplicitLittleEndian, "")).preamble;
}

TEST(PreambleKind, IsWhatOtherProgramsTakeTheFileFor) {
  EXPECT_EQ(KindOf(""), PreambleKind::kZero);
  EXPECT_EQ(KindOf("II\x2A\0\x08"s), PreambleKind::kTiff);
  EXPECT_EQ(KindOf("MM\0\x2A"s), PreambleKind::kTiff);
  EXPECT_EQ(KindOf("MZ\x90"), PreambleKind::kPe);
  EXPECT_EQ(KindOf("\x7F"
                   "ELF\2\1\1"),
            PreambleKind::kElf);
  EXPECT_EQ(KindOf("\xCF\xFA\xED\xFE"), PreambleKind::kMachO);
  EXPECT_EQ(KindOf("\xCA\xFE\xBA\xBE"), PreambleKind::kMachO);
  EXPECT_EQ(KindOf("#!/bin/sh\n"), PreambleKind::kScript);
  EXPECT_EQ(KindOf("%PDF-1.7"), PreambleKind::kOther);
}

TEST(PreambleKind, IsNoneWithoutAPreamble) {
  EXPECT_EQ(CheckedExplicit(kExplicit.Element(0x00100010, "PN", "Doe^John")).preamble, PreambleKind::kNone);
}

TEST(PreambleKind, IsAFindingWhereItMakesAProgramOfTheFile) {
  const std::string name = kExplicit.Element(0x00100010, "PN", "Doe^John");
  const auto findings_of = [&](const char* start) {
    return Checked(FileOf(start, dicom_bytes::kExplicitLittleEndian, name)).findings;
  };
  EXPECT_EQ(findings_of("MZ").Of(FindingKind::kExecutablePreamble).count, 1U);
  EXPECT_EQ(findings_of("#!").Of(FindingKind::kExecutablePreamble).count, 1U);
  EXPECT_TRUE(findings_of("").IsEmpty());
  EXPECT_TRUE(findings_of("%PDF").IsEmpty());
}

}  // namespace
