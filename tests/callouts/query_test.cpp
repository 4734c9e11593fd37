#include <gmock/gmock.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "emulator/stream_object.h"
#include "tests/callouts/loaded_library.h"
#include "tests/support/dicom_bytes.h"

namespace emulator {
namespace {

using dicom_bytes::DataSetBytes;
using dicom_bytes::Item;
using dicom_bytes::kExplicitLittleEndian;
using dicom_bytes::kImplicitLittleEndian;
using dicom_bytes::VrForm;

const DataSetBytes kExplicit(VrForm::kExplicit);
const DataSetBytes kImplicit(VrForm::kImplicit);

constexpr std::uint32_t kPatientName = 0x00100010;
constexpr std::uint32_t kBeamSequence = 0x300A00B0;
constexpr std::uint32_t kBeamName = 0x300A00C2;
constexpr std::uint32_t kControlPointSequence = 0x300A0111;

/// A property list as the library itself makes it from a reference.
std::string PropertyList(std::string_view reference, std::string_view parser = "zfParsePropertyReference") {
  const ListResult result = TheLibrary().CallList(parser, ListBuilder().String(reference));
  EXPECT_EQ(result.status, 0) << reference;
  return result.values.empty() ? "" : AsBytes(result.values[0].value);
}

std::string BeamItem(const DataSetBytes& form, std::string_view name, int control_points) {
  std::string points;
  for (int i = 0; i < control_points; ++i)
    points += Item(form.Element(0x300A0112, "IS", std::to_string(i) + " "));
  return Item(form.Element(kBeamName, "LO", name) + form.Sequence(kControlPointSequence, points));
}

std::string Plan(const DataSetBytes& form) {
  return form.Element(kPatientName, "PN", "Doe^John") +
         form.UndefinedSequence(kBeamSequence, BeamItem(form, "left", 1) + BeamItem(form, "rightt", 3) +
                                                   BeamItem(form, "back", 2)) +
         form.Element(0x300C0022, "SQ", "");
}

class Query : public LoadedLibrary {
 protected:
  struct Answer {
    std::string vr;
    std::string value;
    bool found = false;
    bool operator==(const Answer&) const = default;
  };
  static constexpr const char* kNothing = "";

  ListResult Ask(const std::string& data_set, const std::string& property_list,
                 std::string_view syntax = kExplicitLittleEndian) {
    auto [stream, oref] = Make<MemoryStream>(data_set);
    stream_ = stream;
    return Call("zfQueryStream", ListBuilder().Integer(oref).String(syntax).String(property_list));
  }

  static Answer AnswerOf(const ListResult& result) {
    ExpectSuccess(result);
    if (result.values.empty()) return {};
    EXPECT_EQ(result.values.size(), 2U);
    return {AsBytes(result.values[0].value), AsBytes(result.values[1].value), true};
  }

  std::shared_ptr<MemoryStream> stream_;
};

TEST_F(Query, FindsAnElementAtTheTop) {
  EXPECT_EQ(AnswerOf(Ask(Plan(kExplicit), PropertyList("PatientName"))), (Answer{"PN", "Doe^John", true}));
  EXPECT_EQ(AnswerOf(Ask(Plan(kImplicit), PropertyList("(0010,0010)"), kImplicitLittleEndian)),
            (Answer{"PN", "Doe^John", true}));
}

TEST_F(Query, CountsItemsFromOne) {
  EXPECT_EQ(AnswerOf(Ask(Plan(kExplicit), PropertyList("BeamSequence[2].BeamName"))),
            (Answer{"LO", "rightt", true}));
  EXPECT_EQ(AnswerOf(Ask(Plan(kExplicit),
                         PropertyList("BeamSequence[2].ControlPointSequence[3].ControlPointIndex"))),
            (Answer{"IS", "2 ", true}));
}

TEST_F(Query, AnswersNothingForWhatIsNotThere) {
  for (const char* const reference :
       {"PatientID", "BeamSequence[4].BeamName", "BeamSequence[1].PatientName", "(0009,0010)", "PixelData",
        "BeamSequence[1].ControlPointSequence[2].ControlPointIndex"}) {
    EXPECT_EQ(AnswerOf(Ask(Plan(kExplicit), PropertyList(reference))), Answer{}) << reference;
  }
}

TEST_F(Query, ReadsNoFurtherThanTheAnswer) {
  const std::string head = kExplicit.Element(kPatientName, "PN", "Doe^John");
  EXPECT_TRUE(AnswerOf(Ask(head + "damaged", PropertyList("PatientName"))).found);
  EXPECT_EQ(stream_->Position(), static_cast<std::int64_t>(head.size()) + 1);
}

TEST_F(Query, FindsASequenceOnlyWhenSequencesMayAnswer) {
  const std::string list = PropertyList("BeamSequence");
  EXPECT_EQ(AnswerOf(Ask(Plan(kExplicit), list)), Answer{});
  for (const char* const reference : {"BeamSequence", "(300C,0022)"}) {
    auto [stream, oref] = Make<MemoryStream>(Plan(kExplicit));
    EXPECT_EQ(AnswerOf(Call("zfQueryStream", ListBuilder()
                                                 .Integer(oref)
                                                 .String(kExplicitLittleEndian)
                                                 .String(PropertyList(reference))
                                                 .Integer(1))),
              (Answer{"SQ", "", true}))
        << reference;
  }
}

TEST_F(Query, RefusesAPropertyListOfEvenLength) {
  ExpectFailure(Ask(Plan(kExplicit), PropertyList("BeamSequence[1]", "zfParsePropertySubscriptReference")),
                u"Property list has an even length -  decomposing stream");
  ExpectFailure(Ask(Plan(kExplicit), ""), u"Property list has an even length -  decomposing stream");
}

TEST_F(Query, RefusesWhatIsNoPropertyList) {
  auto [stream, oref] = Make<MemoryStream>(Plan(kExplicit));
  ExpectFailure(
      Call("zfQueryStream", ListBuilder().Integer(oref).String(kExplicitLittleEndian).String("\x09zz")),
      u"List Format Error -  decomposing stream");
  ExpectFailure(Call("zfQueryStream", ListBuilder().Integer(oref).String(kExplicitLittleEndian).Absent()),
                u"Property list has an even length -  decomposing stream");
}

TEST_F(Query, RefusesAValueThatIsTooLong) {
  const std::string list = PropertyList("PixelData");
  EXPECT_EQ(AnswerOf(Ask(kExplicit.Element(0x7FE00010, "OW", std::string(32648, 'x')), list)).value.size(),
            32648U);
  ExpectFailure(
      Ask(kExplicit.Element(0x7FE00010, "OW", std::string(32650, 'x')), list),
      u"Data is too long to be returned from a query when no result stream is passed -  decomposing "
      u"stream");
}

TEST_F(Query, MakesAsManyCallbacksForANameWhateverFollows) {
  const std::string head = kExplicit.Element(kPatientName, "PN", "Doe^John") + std::string(16384, '\0');
  const std::string list = PropertyList("PatientName");
  std::uint64_t callbacks[2];
  for (const std::uint32_t pixel_bytes : {0U, 256U << 20}) {
    std::string bytes = head + kExplicit.Header(0x7FE00010, "OW", pixel_bytes);
    bytes.resize(bytes.size() + pixel_bytes, 'x');
    auto [stream, oref] = Make<MemoryStream>(std::move(bytes));
    const std::uint64_t before = host_.CallbackCount();
    EXPECT_TRUE(AnswerOf(Call("zfQueryStream",
                              ListBuilder().Integer(oref).String(kExplicitLittleEndian).String(list)))
                    .found);
    callbacks[pixel_bytes > 0 ? 1 : 0] = host_.CallbackCount() - before;
    EXPECT_LT(stream->BytesHandedOut(), 16384U);
  }
  EXPECT_EQ(callbacks[0], callbacks[1]);
}

class NextSubscript : public Query {
 protected:
  std::int64_t Next(const std::string& reference) {
    auto [stream, oref] = Make<MemoryStream>(Plan(kExplicit));
    const ListResult result =
        Call("zfGetNextSubscript", ListBuilder()
                                       .Integer(oref)
                                       .String(kExplicitLittleEndian)
                                       .String(PropertyList(reference, "zfParsePropertySubscriptReference")));
    ExpectSuccess(result);
    EXPECT_EQ(result.values.size(), 1U);
    return AsInteger(result.values.at(0).value);
  }
};

TEST_F(NextSubscript, EnumeratesTheItemsOfASequence) {
  EXPECT_EQ(Next("BeamSequence[]"), 1);
  EXPECT_EQ(Next("BeamSequence[\"\"]"), 1);
  EXPECT_EQ(Next("BeamSequence[1]"), 2);
  EXPECT_EQ(Next("BeamSequence[2]"), 3);
  EXPECT_EQ(Next("BeamSequence[3]"), 0);
}

TEST_F(NextSubscript, CountsOnlyInsideTheItemThatIsNamed) {
  EXPECT_EQ(Next("BeamSequence[2].ControlPointSequence[2]"), 3);
  EXPECT_EQ(Next("BeamSequence[1].ControlPointSequence[1]"), 0);
  EXPECT_EQ(Next("BeamSequence[3].ControlPointSequence[1]"), 2);
}

TEST_F(NextSubscript, FindsNothingInAnEmptyOrAbsentSequence) {
  EXPECT_EQ(Next("ReferencedStructureSetSequence[]"), 0);
  EXPECT_EQ(Next("DoseReferenceSequence[]"), 0);
}

TEST_F(NextSubscript, RefusesAListOfOddLengthWithTheWordsForEven) {
  auto [stream, oref] = Make<MemoryStream>(Plan(kExplicit));
  const auto ask = [&, o = oref](const std::string& list) {
    return Call("zfGetNextSubscript", ListBuilder().Integer(o).String(kExplicitLittleEndian).String(list));
  };
  ExpectFailure(ask(PropertyList("PatientName")), u"Property list has an even length -  decomposing stream");
  ExpectFailure(ask(""), u"Property list is empty -  decomposing stream");
}

TEST_F(NextSubscript, WrapsAtTheGreatestNumberAndSoStopsAtTheFirstItem) {
  // Behind it stands an element of odd length, at which a search for any item but the first fails.
  const std::string start = kExplicit.Header(kBeamSequence, "SQ", dicom_bytes::kUndefined) +
                            dicom_bytes::TagAndLength(dicom_bytes::kItem, dicom_bytes::kUndefined);
  auto [stream, oref] = Make<MemoryStream>(start + kExplicit.Element(kBeamName, "LO", "odd"));
  const auto ask = [o = oref](std::int64_t subscript) {
    return Call("zfGetNextSubscript",
                ListBuilder()
                    .Integer(o)
                    .String(kExplicitLittleEndian)
                    .String(ListBuilder().Integer(kBeamSequence).Integer(subscript).Bytes()));
  };
  const ListResult result = ask(0xFFFFFFFF);
  ExpectSuccess(result);
  EXPECT_EQ(AsInteger(result.values.at(0).value), 0);
  EXPECT_EQ(stream->Position(), static_cast<std::int64_t>(start.size()) + 1);
  stream->MoveTo(1);
  ExpectFailure(
      ask(0xFFFFFFFE),
      u"DecomposeElement reading VR and data length: Datalength is an odd number -  decomposing stream");
}

class QueryFile : public Query {
 protected:
  ~QueryFile() override { std::filesystem::remove(path_); }

  ListResult AskFile(const std::string& content, bool has_header, const std::string& list,
                     std::uint32_t output_oref = 0, std::string_view syntax = kExplicitLittleEndian) {
    std::ofstream(path_, std::ios::binary) << content;
    ListBuilder arguments;
    arguments.Integer(has_header ? 1 : 0).String(path_).String(syntax).String(list);
    if (output_oref != 0) arguments.Integer(0).Integer(output_oref);
    return Call("zfQueryFileOrDataSet", arguments);
  }

  static std::string WithHeader(const std::string& data_set) {
    return std::string(128, '\0') + "DICM" + data_set;
  }

  std::string path_ =
      (std::filesystem::temp_directory_path() /
       (std::string("vessa_query_") + testing::UnitTest::GetInstance()->current_test_info()->name()))
          .string();
};

TEST_F(QueryFile, FindsElementsWithAndWithoutAHeader) {
  const std::string list = PropertyList("BeamSequence[3].BeamName");
  EXPECT_EQ(AnswerOf(AskFile(Plan(kExplicit), false, list)), (Answer{"LO", "back", true}));
  EXPECT_EQ(AnswerOf(AskFile(WithHeader(Plan(kExplicit)), true, list)), (Answer{"LO", "back", true}));
}

TEST_F(QueryFile, NamesTheStepThatFoundNoHeader) {
  const std::string list = PropertyList("PatientName");
  ExpectFailure(AskFile(std::string(128, '\0') + "DICX" + Plan(kExplicit), true, list),
                u" checking DICM file header");
  ExpectFailure(AskFile("short", true, list), u" checking DICM file header");
}

TEST_F(QueryFile, NamesTheStepThatFoundNoFile) {
  const std::string list = PropertyList("PatientName");
  for (const std::string& name : {path_ + ".missing", std::filesystem::temp_directory_path().string()}) {
    ExpectFailure(Call("zfQueryFileOrDataSet",
                       ListBuilder().Integer(0).String(name).String(kExplicitLittleEndian).String(list)),
                  u" wrapping input file");
  }
}

TEST_F(QueryFile, WritesALongValueWholeToTheResultStreamAndKeepsItsFirstChunk) {
  std::string value;
  for (int i = 0; i < 100000; ++i) value += static_cast<char>(i * 7);
  auto [output, output_oref] = Make<MemoryStream>();
  const Answer answer = AnswerOf(
      AskFile(kExplicit.Element(0x7FE00010, "OW", value), false, PropertyList("PixelData"), output_oref));
  EXPECT_EQ(answer, (Answer{"OW", value.substr(0, 32648), true}));
  EXPECT_EQ(output->Bytes(), value);
}

TEST_F(QueryFile, LeavesTheResultStreamAloneForAValueOfOneChunk) {
  auto [output, output_oref] = Make<MemoryStream>();
  const Answer answer = AnswerOf(AskFile(Plan(kExplicit), false, PropertyList("PatientName"), output_oref));
  EXPECT_EQ(answer, (Answer{"PN", "Doe^John", true}));
  EXPECT_EQ(output->Writes(), 0U);
}

TEST_F(QueryFile, PassesOverValuesThatCannotBeTheAnswer) {
  const std::string pixels = kExplicit.Element(0x7FE00010, "OW", std::string(100000, 'x'));
  const std::string padding = kExplicit.Element(0xFFFCFFFC, "OB", "1234");
  EXPECT_EQ(AnswerOf(AskFile(pixels + padding, false, PropertyList("DataSetTrailingPadding"))),
            (Answer{"OB", "1234", true}));
}

TEST_F(QueryFile, FailsWhereTheFileEndsInsideAValueThatWasPassedOver) {
  const std::string pixels = kExplicit.Element(0x7FE00010, "OW", std::string(100000, 'x'));
  ExpectFailure(AskFile(pixels.substr(0, pixels.size() - 1), false, PropertyList("DataSetTrailingPadding")),
                u" decomposing stream");
}

TEST_F(QueryFile, FindsNothingAboutAnImplicitSyntaxBehindAFileHeader) {
  // Group 0002 is always explicit (PS3.10): its VR and length are taken as one 4-byte length.
  const std::string meta = kExplicit.Element(0x00020010, "UI", kImplicitLittleEndian);
  ExpectFailure(
      AskFile(WithHeader(meta + Plan(kImplicit)), true, PropertyList("PatientName"), 0,
              kImplicitLittleEndian),
      u"DecomposeElement reading VR and data length: Datalength is an odd number -  decomposing stream");
}

}  // namespace
}  // namespace emulator
