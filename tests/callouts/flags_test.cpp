#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "tests/callouts/decomposing.h"

// Flags are numbers, of which every one but 0 means yes.

namespace emulator {
namespace {

using dicom_bytes::Hex;
using dicom_bytes::Item;
using dicom_bytes::kExplicitLittleEndian;

constexpr std::uint32_t kPatientName = 0x00100010;
constexpr std::uint32_t kPatientID = 0x00100020;
constexpr std::uint32_t kBeamSequence = 0x300A00B0;
constexpr std::uint32_t kPixelData = 0x7FE00010;

constexpr std::int64_t kYes[] = {1, 2, -1, 0x7FFFFFFF};
constexpr std::int64_t kNo = 0;

std::string ListOf(std::uint32_t tag) {
  return ListBuilder().Integer(static_cast<std::int32_t>(tag)).Bytes();
}

/// What a query has answered: VR and value; "" for nothing.
std::string AnswerIn(const ListResult& result) {
  ExpectSuccess(result);
  std::string answer;
  for (const ListValue& value : result.values) answer += "[" + value.data + "]";
  return answer;
}

class Flags : public Decomposing {
 protected:
  ~Flags() override { std::filesystem::remove(path_); }

  ListResult QueryStream(const std::string& bytes, std::uint32_t tag, std::int64_t sequence_answer,
                         std::string_view syntax = kExplicitLittleEndian) {
    return Call("zfQueryStream", ListBuilder()
                                     .Integer(Make<MemoryStream>(bytes).second)
                                     .String(syntax)
                                     .String(ListOf(tag))
                                     .Integer(sequence_answer));
  }

  ListResult QueryFile(const std::string& content, std::int64_t has_header, std::uint32_t tag,
                       std::int64_t sequence_answer, std::string_view syntax = kExplicitLittleEndian) {
    std::ofstream(path_, std::ios::binary) << content;
    return Call("zfQueryFileOrDataSet", ListBuilder()
                                            .Integer(has_header)
                                            .String(path_)
                                            .String(syntax)
                                            .String(ListOf(tag))
                                            .Integer(sequence_answer));
  }

  void SetSimplePixelDataFrames() {
    host_.globals().Set("KevDICOM.Debug", {std::string("simplepixeldataframes")}, std::string("0"));
  }

  const std::string sequence_ =
      kExplicit.Sequence(kBeamSequence, Item(kExplicit.Element(kPatientName, "PN", "ab")));
  const std::string header_ = std::string(128, '\0') + "DICM";
  std::string path_ =
      (std::filesystem::temp_directory_path() /
       (std::string("vessa_flags_") + testing::UnitTest::GetInstance()->current_test_info()->name()))
          .string();
};

TEST_F(Flags, ASequenceAnswersAStreamsQueryWhenItMay) {
  EXPECT_EQ(AnswerIn(QueryStream(sequence_, kBeamSequence, kNo)), "");
  for (const std::int64_t yes : kYes)
    EXPECT_EQ(AnswerIn(QueryStream(sequence_, kBeamSequence, yes)), "[SQ][]") << yes;
}

TEST_F(Flags, ASequenceAnswersAFilesQueryWhenItMayBehindAHeaderOrNot) {
  for (const std::int64_t header : {0, 1}) {
    const std::string content = (header != 0 ? header_ : "") + sequence_;
    EXPECT_EQ(AnswerIn(QueryFile(content, header, kBeamSequence, kNo)), "") << header;
    for (const std::int64_t yes : kYes)
      EXPECT_EQ(AnswerIn(QueryFile(content, header, kBeamSequence, yes)), "[SQ][]") << header << ' ' << yes;
  }
}

TEST_F(Flags, AFileHasAHeaderWhenItIsSaidTo) {
  const std::string name = kExplicit.Element(kPatientName, "PN", "ab");
  EXPECT_EQ(AnswerIn(QueryFile(name, kNo, kPatientName, kNo)), "[PN][ab]");
  for (const std::int64_t yes : kYes) {
    EXPECT_EQ(AnswerIn(QueryFile(header_ + name, yes, kPatientName, kNo)), "[PN][ab]") << yes;
    ExpectFailure(QueryFile(name, yes, kPatientName, kNo), u" checking DICM file header");
  }
}

TEST_F(Flags, AClientStopsADecompositionByAnyNumberButZero) {
  class Client : public Object {
   public:
    explicit Client(std::int64_t at_patient_id) : at_patient_id_{at_patient_id} {}
    Value Call(std::string_view, std::span<const Value> arguments) override {
      return AsInteger(arguments[0]) == kPatientID ? at_patient_id_ : kNo;
    }

   private:
    std::int64_t at_patient_id_;
  };
  const std::string bytes =
      kExplicit.Element(kPatientName, "PN", "ab") + kExplicit.Element(kPatientID, "LO", "cd");
  for (const std::int64_t yes : kYes) {
    client_oref_ = Make<Client>(yes).second;
    ExpectSuccess(Decompose(bytes));
    EXPECT_EQ(Events(), Script(R"(
      StartElement 00100010 PN 2
        Data 00100010 1 6162
      EndElement 00100010
      EndContent)"))
        << yes;
  }
  client_oref_ = Make<Client>(kNo).second;
  ExpectSuccess(Decompose(bytes));
  EXPECT_EQ(Events().size(), 7U);
}

TEST_F(Flags, PixelDataWithoutFragmentsAnswerAQueryByTheirEndUnlessFramesAreSimple) {
  const char* const jpeg_baseline = "1.2.840.10008.1.2.4.50";
  const std::string pixels = Hex("E0 7F 10 00  4F 42 00 00  FF FF FF FF  FE FF DD E0  00 00 00 00");
  EXPECT_EQ(AnswerIn(QueryStream(pixels, kPixelData, kNo, jpeg_baseline)), "[OB][]");
  EXPECT_EQ(AnswerIn(QueryFile(pixels, 0, kPixelData, kNo, jpeg_baseline)), "[OB][]");
  SetSimplePixelDataFrames();
  EXPECT_EQ(AnswerIn(QueryStream(pixels, kPixelData, kNo, jpeg_baseline)), "");
  EXPECT_EQ(AnswerIn(QueryFile(pixels, 0, kPixelData, kNo, jpeg_baseline)), "");
}

}  // namespace
}  // namespace emulator
