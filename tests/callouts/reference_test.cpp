#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tests/callouts/loaded_library.h"

namespace emulator {
namespace {

using Entries = std::vector<std::int64_t>;

constexpr std::int64_t kPatientName = 0x00100010;
constexpr std::int64_t kBeamSequence = 0x300A00B0;
constexpr std::int64_t kControlPointSequence = 0x300A0111;
constexpr std::int64_t kControlPointIndex = 0x300A0112;

/// The entries of the property list that a call-out makes of a reference.
class Reference : public LoadedLibrary {
 protected:
  explicit Reference(std::string_view function) : function_{function} {}

  Entries Parsed(std::string_view reference) {
    const ListResult result = Call(function_, ListBuilder().String(reference));
    ExpectSuccess(result);
    if (result.values.size() != 1) return {};
    Entries entries;
    for (const ListValue& item : ReadList(AsBytes(result.values[0].value)))
      entries.push_back(AsInteger(item.value));
    return entries;
  }

  void ExpectRefused(std::string_view reference, std::u16string_view message) {
    const ListResult result = Call(function_, ListBuilder().String(reference));
    SCOPED_TRACE(reference);
    ExpectFailure(result, std::u16string(message) + u" -  parsing property reference");
    EXPECT_EQ(result.values.size(), 1U) << "nothing of the list comes back";
  }

 private:
  std::string_view function_;
};

class PropertyReference : public Reference {
 protected:
  PropertyReference() : Reference("zfParsePropertyReference") {}
};

TEST_F(PropertyReference, IsOneTagByKeywordOrByNumber) {
  for (const char* const reference : {"PatientName", "(0010,0010)"})
    EXPECT_EQ(Parsed(reference), (Entries{kPatientName})) << reference;
  EXPECT_EQ(Parsed("(7fe0,0010)"), (Entries{0x7FE00010}));
  EXPECT_EQ(Parsed("(8001,0010)"), (Entries{static_cast<std::int32_t>(0x80010010)}));
  EXPECT_EQ(Parsed("(0009,1001)"), (Entries{0x00091001}));
}

TEST_F(PropertyReference, LeadsThroughItemsThatCountFromOne) {
  EXPECT_EQ(Parsed("BeamSequence[2].ControlPointSequence[3].ControlPointIndex"),
            (Entries{kBeamSequence, 2, kControlPointSequence, 3, kControlPointIndex}));
  ExpectRefused("BeamSequence[0].BeamName", u"Subscript must not be zero at offset 15");
  ExpectRefused("BeamSequence[].BeamName", u"Expected integer at offset 14");
  ExpectRefused("BeamSequence[1]", u"Expected character '.' at offset 16");
}

TEST_F(PropertyReference, TestsOnlyTheFirstTagForBeingASequence) {
  EXPECT_EQ(Parsed("BeamSequence[1].PatientName[2].PatientID"),
            (Entries{kBeamSequence, 1, kPatientName, 2, 0x00100020}));
  ExpectRefused("PatientName[1].X", u"Element is not a sequence: 00100010 at offset 12");
  ExpectRefused("(0009,1001)[1].PatientID", u"Unrecognized tag: 00091001 at offset 12");
  ExpectRefused("(0008,0002)[1].PatientID", u"Unrecognized tag: 00080002 at offset 12");
}

TEST_F(PropertyReference, NamesTheFirstCharacterThatCannotStandThere) {
  ExpectRefused("", u"Expected tag name at offset 1");
  ExpectRefused("(0010,0010", u"Expected character ')' at offset 11");
  ExpectRefused("(0010,001G)", u"Expected hex digit at offset 10");
  ExpectRefused("PatientName ", u"Unrecognized text follows valid property reference at offset 12");
  ExpectRefused("NoSuchKeyword", u"Tag name not found in dictionary: NoSuchKeyword at offset 14");
  ExpectRefused("patientname", u"Tag name not found in dictionary: patientname at offset 12");
}

class PropertySubscriptReference : public Reference {
 protected:
  PropertySubscriptReference() : Reference("zfParsePropertySubscriptReference") {}
};

TEST_F(PropertySubscriptReference, EndsWithAnItemNumberOrAnEmptySubscript) {
  EXPECT_EQ(Parsed("BeamSequence[]"), (Entries{kBeamSequence, 0}));
  EXPECT_EQ(Parsed("BeamSequence[\"\"]"), (Entries{kBeamSequence, 0}));
  EXPECT_EQ(Parsed("BeamSequence[2]"), (Entries{kBeamSequence, 2}));
  EXPECT_EQ(Parsed("BeamSequence[2].ControlPointSequence[]"),
            (Entries{kBeamSequence, 2, kControlPointSequence, 0}));
}

TEST_F(PropertySubscriptReference, RefusesWhatCannotBeWalked) {
  ExpectRefused("BeamSequence[].ControlPointSequence[1]",
                u"Empty subscript must be at end of property subscript reference at offset 15");
  ExpectRefused("BeamSequence[1].", u"Expected tag name at offset 17");
  ExpectRefused("BeamSequence[0]", u"Subscript must not be zero at offset 15");
  ExpectRefused("BeamSequence", u"Expected character '[' at offset 13");
  ExpectRefused("BeamSequence[1].PatientName[1]", u"Element is not a sequence: 00100010 at offset 28");
  ExpectRefused("BeamSequence[1] ",
                u"Unrecognized text follows valid property subscript reference at offset 16");
}

}  // namespace
}  // namespace emulator
