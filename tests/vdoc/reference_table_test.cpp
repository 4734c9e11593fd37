#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "tests/vdoc/reference_parsing.h"

// References of both kinds with what becomes of them. In a text that is refused a caret stands before the
// character that the message's offset counts.

namespace {

using namespace std::string_view_literals;

struct Accepted {
  std::string_view text;
  std::vector<std::uint32_t> entries;
};

struct Refused {
  std::string_view text;
  std::string_view message;
};

// PS3.6
constexpr std::uint32_t kBeams = 0x300A00B0;       // BeamSequence
constexpr std::uint32_t kPoints = 0x300A0111;      // ControlPointSequence
constexpr std::uint32_t kPositions = 0x300A011A;   // BeamLimitingDevicePositionSequence
constexpr std::uint32_t kStudies = 0x00081110;     // ReferencedStudySequence
constexpr std::uint32_t kUid = 0x00081155;         // ReferencedSOPInstanceUID
constexpr std::uint32_t kContent = 0x0040A730;     // ContentSequence
constexpr std::uint32_t kSignatures = 0xFFFAFFFA;  // DigitalSignaturesSequence

const Accepted kReferences[] = {
    {"PatientName", {0x00100010}},
    {"PatientID", {0x00100020}},
    {"StudyInstanceUID", {0x0020000D}},
    {"PixelData", {0x7FE00010}},
    {"dBdt", {0x00181318}},
    {"CommandGroupLength", {0}},
    {"FileMetaInformationGroupLength", {0x00020000}},
    {"ALinePixelSpacing", {0x00520014}},
    {"XRay3DFrameTypeSequence", {0x00189504}},
    {"Item", {0xFFFEE000}},
    {"ItemDelimitationItem", {0xFFFEE00D}},
    {"SequenceDelimitationItem", {0xFFFEE0DD}},
    {"DataSetTrailingPadding", {0xFFFCFFFC}},
    {"DigitalSignaturesSequence", {kSignatures}},
    {"BeamSequence", {kBeams}},
    {"(0010,0010)", {0x00100010}},
    {"(0000,0000)", {0}},
    {"(0000,0001)", {1}},
    {"(0000,00FF)", {0xFF}},
    {"(0000,0100)", {0x100}},
    {"(0000,FFFF)", {0xFFFF}},
    {"(0001,0000)", {0x10000}},
    {"(00FF,FFFF)", {0xFFFFFF}},
    {"(0100,0000)", {0x1000000}},
    {"(7FFF,FFFF)", {0x7FFFFFFF}},
    {"(8000,0000)", {0x80000000}},
    {"(fefF,FfFf)", {0xFEFFFFFF}},
    {"(FF00,0000)", {0xFF000000}},
    {"(FFFF,0000)", {0xFFFF0000}},
    {"(FFFF,FF00)", {0xFFFFFF00}},
    {"(FFFF,FFFF)", {0xFFFFFFFF}},
    {"(abcd,ef01)", {0xABCDEF01}},
    {"(ABCD,EF01)", {0xABCDEF01}},
    {"(0009,0010)", {0x00090010}},
    {"(6000,3000)", {0x60003000}},
    {"(2010,0060)", {0x20100060}},
    {"(300A,00B0)[1].(300A,00C2)", {kBeams, 1, 0x300A00C2}},
    {"BeamSequence[1].BeamName", {kBeams, 1, 0x300A00C2}},
    {"BeamSequence[01].BeamName", {kBeams, 1, 0x300A00C2}},
    {"BeamSequence[0000000000000000000000010].BeamName", {kBeams, 10, 0x300A00C2}},
    {"BeamSequence[255].BeamName", {kBeams, 255, 0x300A00C2}},
    {"BeamSequence[256].BeamName", {kBeams, 256, 0x300A00C2}},
    {"BeamSequence[65536].BeamName", {kBeams, 65536, 0x300A00C2}},
    {"BeamSequence[16777216].BeamName", {kBeams, 16777216, 0x300A00C2}},
    {"BeamSequence[2147483646].BeamName", {kBeams, 2147483646, 0x300A00C2}},
    {"BeamSequence[2147483647].BeamName", {kBeams, 2147483647, 0x300A00C2}},
    {"BeamSequence[2147483648].BeamName", {kBeams, 2147483647, 0x300A00C2}},
    {"BeamSequence[4294967295].BeamName", {kBeams, 2147483647, 0x300A00C2}},
    {"BeamSequence[4294967296].BeamName", {kBeams, 2147483647, 0x300A00C2}},
    {"BeamSequence[18446744073709551617].BeamName", {kBeams, 2147483647, 0x300A00C2}},
    {"BeamSequence[2].ControlPointSequence[3].NominalBeamEnergy", {kBeams, 2, kPoints, 3, 0x300A0114}},
    {"BeamSequence[1].ControlPointSequence[2].BeamLimitingDevicePositionSequence[3].LeafJawPositions",
     {kBeams, 1, kPoints, 2, kPositions, 3, 0x300A011C}},
    {"BeamSequence[1].(0009,1010)", {kBeams, 1, 0x00091010}},
    {"BeamSequence[1].(0009,1010)[1].(0009,1011)", {kBeams, 1, 0x00091010, 1, 0x00091011}},
    {"BeamSequence[1].PatientName[7].PatientName[8].PixelData",
     {kBeams, 1, 0x00100010, 7, 0x00100010, 8, 0x7FE00010}},
    {"(300a,00b0)[12].BeamNumber", {kBeams, 12, 0x300A00C0}},
    {"DigitalSignaturesSequence[1].(FFFA,FFFA)", {kSignatures, 1, kSignatures}},
    {"ReferencedStudySequence[1].ReferencedSOPInstanceUID", {kStudies, 1, kUid}},
    {"ContentSequence[1].ContentSequence[2].ContentSequence[3].TextValue",
     {kContent, 1, kContent, 2, kContent, 3, 0x0040A160}},
    {"(5000,2600)[1].BeamName",
     {0x50002600, 1, 0x300A00C2}},  // a member of a repeating group that is a sequence
    {"PatientName\0"sv, {0x00100010}},
    {"PatientName\0[1]"sv, {0x00100010}},
};

const Accepted kSubscripts[] = {
    {"BeamSequence[]", {kBeams, 0}},
    {"BeamSequence[\"\"]", {kBeams, 0}},
    {"BeamSequence[1]", {kBeams, 1}},
    {"BeamSequence[007]", {kBeams, 7}},
    {"BeamSequence[99999999999]", {kBeams, 2147483647}},
    {"(300A,00B0)[]", {kBeams, 0}},
    {"(300a,00b0)[3]", {kBeams, 3}},
    {"(5000,2600)[2]", {0x50002600, 2}},
    {"DigitalSignaturesSequence[]", {kSignatures, 0}},
    {"(FFFA,FFFA)[5]", {kSignatures, 5}},
    {"BeamSequence[2].ControlPointSequence[]", {kBeams, 2, kPoints, 0}},
    {"BeamSequence[2].ControlPointSequence[\"\"]", {kBeams, 2, kPoints, 0}},
    {"BeamSequence[2].ControlPointSequence[9]", {kBeams, 2, kPoints, 9}},
    {"BeamSequence[2].ControlPointSequence[9].BeamLimitingDevicePositionSequence[]",
     {kBeams, 2, kPoints, 9, kPositions, 0}},
    {"ContentSequence[1].ContentSequence[1].ContentSequence[1]", {kContent, 1, kContent, 1, kContent, 1}},
    {"BeamSequence[1]\0.X"sv, {kBeams, 1}},
};

const Refused kRefusedReferences[] = {
    {"^", "Expected tag name"},
    {"^ PatientName", "Expected tag name"},
    {"^[1]", "Expected tag name"},
    {"^]", "Expected tag name"},
    {"^.", "Expected tag name"},
    {"^{PatientName", "Expected tag name"},
    {"^,", "Expected tag name"},
    {"^)", "Expected tag name"},
    {"^\"\"", "Expected tag name"},
    {"^_PatientName", "Expected tag name"},
    {"^\xC3\xA4", "Expected tag name"},
    {"^\x80", "Expected tag name"},
    {"^\t", "Expected tag name"},
    {"patientname^", "Tag name not found in dictionary: patientname"},
    {"PATIENTNAME^", "Tag name not found in dictionary: PATIENTNAME"},
    {"Patient^ Name", "Tag name not found in dictionary: Patient"},
    {"PatientNam^", "Tag name not found in dictionary: PatientNam"},
    {"PatientNames^", "Tag name not found in dictionary: PatientNames"},
    {"X^[1].PatientName", "Tag name not found in dictionary: X"},
    {"00100010^", "Tag name not found in dictionary: 00100010"},
    {"0010^,0010", "Tag name not found in dictionary: 0010"},
    {"7^", "Tag name not found in dictionary: 7"},
    {"MagnificationType^", "Tag name not found in dictionary: MagnificationType"},
    {"BeamOrderIndex^", "Tag name not found in dictionary: BeamOrderIndex"},
    {"OverlayData^", "Tag name not found in dictionary: OverlayData"},
    {"Anonymous^", "Tag name not found in dictionary: Anonymous"},
    {"Invalid^", "Tag name not found in dictionary: Invalid"},
    {"Patient^\xC3\xA4Name", "Tag name not found in dictionary: Patient"},
    {"PatientName^\xFF", "Unrecognized text follows valid property reference"},
    {"PatientName^ ", "Unrecognized text follows valid property reference"},
    {"PatientName^.", "Unrecognized text follows valid property reference"},
    {"PatientName^]", "Unrecognized text follows valid property reference"},
    {"PatientName^\n", "Unrecognized text follows valid property reference"},
    {"PatientName^(0010,0020)", "Unrecognized text follows valid property reference"},
    {"(0010,0010)^PatientName", "Unrecognized text follows valid property reference"},
    {"(0010,0010)^0", "Unrecognized text follows valid property reference"},
    {"BeamSequence^.BeamName", "Unrecognized text follows valid property reference"},
    {"BeamSequence[1].BeamName^ ", "Unrecognized text follows valid property reference"},
    {"BeamSequence[1].BeamName^]", "Unrecognized text follows valid property reference"},
    {"BeamSequence[1].BeamName^.BeamName", "Unrecognized text follows valid property reference"},
    {"(^", "Expected hex digit"},
    {"(^)", "Expected hex digit"},
    {"(^,0010)", "Expected hex digit"},
    {"(001^,0010)", "Expected hex digit"},
    {"(^ 010,0010)", "Expected hex digit"},
    {"(^G010,0010)", "Expected hex digit"},
    {"(^g010,0010)", "Expected hex digit"},
    {"(^@010,0010)", "Expected hex digit"},
    {"(^`010,0010)", "Expected hex digit"},
    {"(^/010,0010)", "Expected hex digit"},
    {"(^:010,0010)", "Expected hex digit"},
    {"(^-010,0010)", "Expected hex digit"},
    {"(0^x10,0010)", "Expected hex digit"},
    {"(0010,^", "Expected hex digit"},
    {"(0010,001^", "Expected hex digit"},
    {"(0010,001^)", "Expected hex digit"},
    {"(0010,001^G)", "Expected hex digit"},
    {"(0010,^ 0010)", "Expected hex digit"},
    {"(0010,^,0010)", "Expected hex digit"},
    {"(0010^", "Expected character ','"},
    {"(0010^0010)", "Expected character ','"},
    {"(0010^ ,0010)", "Expected character ','"},
    {"(0010^;0010)", "Expected character ','"},
    {"(0010,0010^", "Expected character ')'"},
    {"(0010,0010^0)", "Expected character ')'"},
    {"(0010,0010^ )", "Expected character ')'"},
    {"(0010,0010^[1]", "Expected character ')'"},
    {"PatientName^[1].PatientID", "Element is not a sequence: 00100010"},
    {"PatientName^[", "Element is not a sequence: 00100010"},
    {"(7fe0,0010)^[1].X", "Element is not a sequence: 7FE00010"},
    {"(FFFE,E000)^[1].X", "Element is not a sequence: FFFEE000"},
    {"(6000,3000)^[1].X", "Element is not a sequence: 60003000"},
    {"CommandGroupLength^[1].X", "Element is not a sequence: 00000000"},
    {"(0008,9999)^[1].X", "Unrecognized tag: 00089999"},
    {"(0009,1010)^[1].X", "Unrecognized tag: 00091010"},
    {"(0009,0010)^[1].X", "Unrecognized tag: 00090010"},
    {"(50FF,2600)^[1].X", "Unrecognized tag: 50FF2600"},
    {"(abcd,ef01)^[1].X", "Unrecognized tag: ABCDEF01"},
    {"(8000,0000)^[1].X", "Unrecognized tag: 80000000"},
    {"BeamSequence[^", "Expected integer"},
    {"BeamSequence[^]", "Expected integer"},
    {"BeamSequence[^].BeamName", "Expected integer"},
    {"BeamSequence[^\"\"].BeamName", "Expected integer"},
    {"BeamSequence[^ 1].BeamName", "Expected integer"},
    {"BeamSequence[^-1].BeamName", "Expected integer"},
    {"BeamSequence[^+1].BeamName", "Expected integer"},
    {"BeamSequence[^x].BeamName", "Expected integer"},
    {"BeamSequence[0^].BeamName", "Subscript must not be zero"},
    {"BeamSequence[000^].BeamName", "Subscript must not be zero"},
    {"BeamSequence[0^", "Subscript must not be zero"},
    {"BeamSequence[0^x].BeamName", "Subscript must not be zero"},
    {"BeamSequence[1^", "Expected character ']'"},
    {"BeamSequence[1^.BeamName", "Expected character ']'"},
    {"BeamSequence[1^ ].BeamName", "Expected character ']'"},
    {"BeamSequence[1^,2].BeamName", "Expected character ']'"},
    {"BeamSequence[1^.5].BeamName", "Expected character ']'"},
    {"BeamSequence[1^e3].BeamName", "Expected character ']'"},
    {"BeamSequence[1]^", "Expected character '.'"},
    {"BeamSequence[1]^ .BeamName", "Expected character '.'"},
    {"BeamSequence[1]^[2].BeamName", "Expected character '.'"},
    {"BeamSequence[1]^BeamName", "Expected character '.'"},
    {"BeamSequence[1].^", "Expected tag name"},
    {"BeamSequence[1].^.BeamName", "Expected tag name"},
    {"BeamSequence[1].^ BeamName", "Expected tag name"},
    {"BeamSequence[1].X^", "Tag name not found in dictionary: X"},
    {"BeamSequence[1].BeamName[2]^", "Expected character '.'"},
    {"BeamSequence[1].BeamName[0^].BeamName", "Subscript must not be zero"},
    {"BeamSequence[1].(^", "Expected hex digit"},
    {"BeamSequence[1].(300A,00C2^", "Expected character ')'"},
    {"BeamSequence[1].ControlPointSequence[2].^", "Expected tag name"},
};

const Refused kRefusedSubscripts[] = {
    {"^", "Expected tag name"},
    {"^[]", "Expected tag name"},
    {"X^[]", "Tag name not found in dictionary: X"},
    {"PatientName^", "Element is not a sequence: 00100010"},
    {"PatientName^[]", "Element is not a sequence: 00100010"},
    {"PatientName^ ", "Element is not a sequence: 00100010"},
    {"(0009,1010)^", "Unrecognized tag: 00091010"},
    {"(0008,9999)^[1]", "Unrecognized tag: 00089999"},
    {"BeamSequence^", "Expected character '['"},
    {"BeamSequence^ []", "Expected character '['"},
    {"BeamSequence^.ControlPointSequence[]", "Expected character '['"},
    {"BeamSequence^(1)", "Expected character '['"},
    {"BeamSequence[^", "Expected integer"},
    {"BeamSequence[^ ]", "Expected integer"},
    {"BeamSequence[^-1]", "Expected integer"},
    {"BeamSequence[^'']", "Expected integer"},
    {"BeamSequence[0^]", "Subscript must not be zero"},
    {"BeamSequence[00^]", "Subscript must not be zero"},
    {"BeamSequence[\"^", "Expected character '\"'"},
    {"BeamSequence[\"^]", "Expected character '\"'"},
    {"BeamSequence[\"^1\"]", "Expected character '\"'"},
    {"BeamSequence[\"\"^", "Expected character ']'"},
    {R"(BeamSequence[""^"])", "Expected character ']'"},
    {"BeamSequence[1^", "Expected character ']'"},
    {"BeamSequence[1^\"\"]", "Expected character ']'"},
    {"BeamSequence[]^ ", "Unrecognized text follows valid property subscript reference"},
    {"BeamSequence[]^[]", "Unrecognized text follows valid property subscript reference"},
    {"BeamSequence[1]^[2]", "Unrecognized text follows valid property subscript reference"},
    {"BeamSequence[1]^x", "Unrecognized text follows valid property subscript reference"},
    {"BeamSequence[]^.", "Empty subscript must be at end of property subscript reference"},
    {"BeamSequence[\"\"]^.ControlPointSequence[1]",
     "Empty subscript must be at end of property subscript reference"},
    {"BeamSequence[1].^", "Expected tag name"},
    {"BeamSequence[1].^[1]", "Expected tag name"},
    {"BeamSequence[1].BeamName^[1]", "Element is not a sequence: 300A00C2"},
    {"BeamSequence[1].BeamName^", "Element is not a sequence: 300A00C2"},
    {"BeamSequence[1].(0009,1010)^[1]", "Unrecognized tag: 00091010"},
    {"BeamSequence[1].ControlPointSequence^", "Expected character '['"},
    {"BeamSequence[1].ControlPointSequence[]^.",
     "Empty subscript must be at end of property subscript reference"},
};

std::string WithoutCaret(std::string_view text) {
  std::string plain(text);
  return plain.erase(plain.find('^'), 1);
}

std::string WithOffset(const Refused& refused) {
  return std::string(refused.message) + " at offset " + std::to_string(refused.text.find('^') + 1);
}

TEST(ReferenceTable, ReferencesGiveTheirLists) {
  for (const Accepted& accepted : kReferences) {
    EXPECT_EQ(ParseReference(accepted.text), ListOf(accepted.entries)) << accepted.text;
  }
}

TEST(ReferenceTable, SubscriptReferencesGiveTheirLists) {
  for (const Accepted& accepted : kSubscripts) {
    EXPECT_EQ(ParseSubscript(accepted.text), ListOf(accepted.entries)) << accepted.text;
  }
}

TEST(ReferenceTable, OtherTextsAreRefusedAsReferences) {
  for (const Refused& refused : kRefusedReferences) {
    EXPECT_EQ(ParseReference(WithoutCaret(refused.text)), Message(WithOffset(refused))) << refused.text;
  }
}

TEST(ReferenceTable, OtherTextsAreRefusedAsSubscriptReferences) {
  for (const Refused& refused : kRefusedSubscripts) {
    EXPECT_EQ(ParseSubscript(WithoutCaret(refused.text)), Message(WithOffset(refused))) << refused.text;
  }
}

TEST(ReferenceTable, NoReferenceIsASubscriptReference) {
  for (const Accepted& accepted : kReferences) {
    EXPECT_NE(ParseSubscript(accepted.text).message, "") << accepted.text;
  }
  for (const Accepted& accepted : kSubscripts) {
    EXPECT_NE(ParseReference(accepted.text).message, "") << accepted.text;
  }
}

// Every shorter beginning of a text is read to its own end and never beyond.
TEST(ReferenceTable, EveryBeginningIsParsedOrRefusedWithinItself) {
  const auto offset_of = [](const std::string& message) {
    return std::stoul(message.substr(message.rfind(' ')));
  };
  for (const Accepted& accepted : kReferences) {
    for (std::size_t length = 0; length < accepted.text.size(); ++length) {
      const std::string beginning(accepted.text.substr(0, length));
      for (const Parsed& parsed : {ParseReference(beginning), ParseSubscript(beginning)}) {
        if (parsed.message.empty()) continue;
        EXPECT_LE(offset_of(parsed.message), length + 1) << beginning;
      }
    }
  }
}

}  // namespace
