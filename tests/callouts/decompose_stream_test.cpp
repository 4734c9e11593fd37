#include <cstdint>
#include <string>
#include <vector>

#include "tests/callouts/decomposing.h"

namespace emulator {
namespace {

using dicom_bytes::kExplicitLittleEndian;
using testing::ElementsAre;

class DecomposeStream : public Decomposing {};

TEST_F(DecomposeStream, ReportsAnEmptyStreamAsContentWithoutElements) {
  const ListResult result = Decompose("");
  ExpectSuccess(result);
  EXPECT_TRUE(result.values.empty());
  EXPECT_THAT(log_->Lines(), ElementsAre("StartContent 1.2.840.10008.1.2.1", "EndContent"));
}

TEST_F(DecomposeStream, LeavesTheHostsStreamBehindTheLastByte) {
  const std::string bytes = kExplicit.Element(0x00100010, "PN", "Doe^John");
  ExpectSuccess(Decompose(bytes));
  EXPECT_EQ(stream_->Position(), static_cast<std::int64_t>(bytes.size()) + 1);
  EXPECT_EQ(host_.StackDepth(), 0U);
}

TEST_F(DecomposeStream, StartsWhereTheHostsStreamStands) {
  const std::string bytes = kExplicit.Element(0x00100010, "PN", "Doe^John");
  auto [stream, stream_oref] = Make<MemoryStream>("12345" + bytes);
  auto [log, log_oref] = Make<EventLog>();
  stream->MoveTo(6);
  ExpectSuccess(
      Call("zfDecomposeStream",
           ListBuilder().Integer(stream_oref).String(kExplicitLittleEndian).Integer(log_oref).Integer(0)));
  EXPECT_THAT(log->Lines(),
              ElementsAre("StartContent 1.2.840.10008.1.2.1", "StartElement 00100010 PN 8",
                          "Data 00100010 1 446F655E4A6F686E", "EndElement 00100010", "EndContent"));
}

TEST_F(DecomposeStream, MakesTheseCallbacksForOneElement) {
  host_.Record(true);
  ExpectSuccess(Decompose(kExplicit.Element(0x00100010, "PN", "Doe^John")));
  EXPECT_THAT(host_.Calls(),
              ElementsAre(
                  // wrapping the input stream
                  R"(PushProperty 1 "Position")", "GetProperty", "ConvertResult 1 -> 1",
                  R"(PushMethod 1 "Peek" 1)", "PushInteger 8000", "InvokeMethod 1", "PopString -> 16 bytes",
                  // the switch for simple pixel data frames
                  R"(PushGlobalInNamespace "KevDICOM.Debug" "")", R"(PushString "simplepixeldataframes")",
                  "GlobalDefined 1 0", "PopInteger -> 0",
                  // StartContent
                  R"(PushMethod 2 "StartContent" 1)", R"(PushString "1.2.840.10008.1.2.1")", "InvokeMethod 1",
                  "ConvertResult 3 -> 0 bytes",
                  // StartElement
                  R"(PushMethod 2 "StartElement" 1)", "PushUnsigned 1048592", R"(PushString "PN")",
                  "PushUnsigned 8", "InvokeMethod 3", "ConvertResult 3 -> 0 bytes",
                  // the last byte is taken: the end of the stream is looked for at once
                  R"(PushMethod 1 "Skip" 0)", "PushInteger 16", "InvokeMethod 1", R"(PushMethod 1 "Peek" 1)",
                  "PushInteger 8000", "InvokeMethod 1", "PopString -> 0 bytes",
                  // Data
                  R"(PushMethod 2 "Data" 1)", "PushUnsigned 1048592", "PushUnsigned 1",
                  R"(PushString "Doe^John")", "InvokeMethod 3", "ConvertResult 3 -> 0 bytes",
                  // EndElement
                  R"(PushMethod 2 "EndElement" 1)", "PushUnsigned 1048592", "InvokeMethod 1",
                  "ConvertResult 3 -> 0 bytes",
                  // EndContent
                  R"(PushMethod 2 "EndContent" 1)", "InvokeMethod 0", "ConvertResult 3 -> 0 bytes"));
}

TEST_F(DecomposeStream, TakesTheLongestAnswerOfAnEventThatFits) {
  auto [stream, stream_oref] = Make<MemoryStream>(kExplicit.Element(0x00100010, "PN", "Doe^John"));
  auto [log, log_oref] = Make<EventLog>();
  log->Return("StartElement", std::string(32767, 'x'));
  ExpectSuccess(
      Call("zfDecomposeStream",
           ListBuilder().Integer(stream_oref).String(kExplicitLittleEndian).Integer(log_oref).Integer(0)));
}

TEST_F(DecomposeStream, SendsNothingOfAnElementWithAnOddLength) {
  ExpectFailure(
      Decompose(kExplicit.Element(0x00100010, "PN", "odd")),
      u"DecomposeElement reading VR and data length: Datalength is an odd number -  decomposing stream");
  EXPECT_THAT(log_->Lines(), ElementsAre("StartContent 1.2.840.10008.1.2.1"));
}

TEST_F(DecomposeStream, CutsValuesIntoChunks) {
  for (const std::size_t length : {std::size_t{65296}, std::size_t{32650}}) {
    ExpectSuccess(Decompose(kExplicit.Element(0x7FE00010, "OW", std::string(length, 'x'))));
    ASSERT_EQ(log_->Lines().size(), 6U);
    const std::size_t second_chunk = length - 32648;
    EXPECT_EQ(log_->Lines()[2].size(), std::string("Data 7FE00010 1 ").size() + 2 * 32648);
    EXPECT_EQ(log_->Lines()[3].size(), std::string("Data 7FE00010 2 ").size() + 2 * second_chunk);
  }
}

TEST_F(DecomposeStream, ReadsTheLaterVrsWithAShortLength) {
  // The two reserved bytes are taken as the length. The real length and the value then stand where the next element
  // should: tag 0008,0000, VR "12", length "34", which is odd.
  ExpectFailure(
      Decompose(kExplicit.Element(0x00100010, "OD", "12345678")),
      u"DecomposeElement reading VR and data length: Datalength is an odd number -  decomposing stream");
  EXPECT_THAT(log_->Lines(), ElementsAre("StartContent 1.2.840.10008.1.2.1", "StartElement 00100010 OD 0",
                                         "Data 00100010 1", "EndElement 00100010"));
}

TEST_F(DecomposeStream, NamesAnUnsupportedSyntaxBeforeAnyEvent) {
  for (const char* const syntax : {"1.2.840.10008.1.2.2", "1.2.840.10008.1.2 ", "", "1.2.3"}) {
    const std::string message = std::string("DecomposeStream: Expected a supported transfer syntax, got: ") +
                                syntax + " -  decomposing stream";
    for (const std::string& bytes : {std::string(), kExplicit.Element(0x00100010, "PN", "Doe^John")}) {
      ExpectFailure(Decompose(bytes, syntax), std::u16string(message.begin(), message.end()));
      EXPECT_TRUE(log_->Lines().empty());
      EXPECT_EQ(Consumed(), 0);
    }
  }
}

TEST_F(DecomposeStream, StopsWhereTheClientSays) {
  auto [client, client_oref] = Make<StopAtTag>(0x00100020);
  client_oref_ = client_oref;
  const std::string first = kExplicit.Element(0x00100010, "PN", "Doe^John");
  ExpectSuccess(Decompose(first + kExplicit.Element(0x00100020, "LO", "4711")));
  EXPECT_THAT(client->Asked(), ElementsAre(0x00100010U, 0x00100020U));
  EXPECT_EQ(log_->Lines().back(), "EndContent");
  EXPECT_EQ(stream_->Position(), static_cast<std::int64_t>(first.size()) + 1);
}

TEST_F(DecomposeStream, FailsWithTheStepAloneWhenTheClientFails) {
  auto [client, client_oref] = Make<StopAtTag>(0x00100020);
  client->FailAt(1, 5);
  client_oref_ = client_oref;
  ExpectFailure(Decompose(kExplicit.Element(0x00100010, "PN", "Doe^John")), u" decomposing stream");
}

TEST_F(DecomposeStream, NamesTheMethodOfTheHandlerThatFailed) {
  auto [stream, stream_oref] = Make<MemoryStream>(kExplicit.Element(0x00100010, "PN", "Doe^John"));
  auto [log, log_oref] = Make<EventLog>();
  log->FailAt(3, 5);
  const auto arguments = [&, s = stream_oref, l = log_oref](std::int64_t handler_offset) {
    return ListBuilder().Integer(s).String(kExplicitLittleEndian).Integer(l + handler_offset).Integer(0);
  };
  ExpectFailure(Call("zfDecomposeStream", arguments(0)),
                u"Callin error calling method 'Data': 5 -  decomposing stream");
  ExpectFailure(Call("zfDecomposeStream", arguments(100)),
                u"Callin error calling method 'StartContent': 119 -  decomposing stream");
}

TEST_F(DecomposeStream, FailsWhenAnEventReturnsMoreThanTheReceiverHolds) {
  auto [stream, stream_oref] = Make<MemoryStream>("");
  auto [log, log_oref] = Make<EventLog>();
  log->Return("EndContent", std::string(32768, 'x'));
  ExpectFailure(
      Call("zfDecomposeStream",
           ListBuilder().Integer(stream_oref).String(kExplicitLittleEndian).Integer(log_oref).Integer(0)),
      u"Callin error calling method 'EndContent': -10 -  decomposing stream");
}

TEST_F(DecomposeStream, LeavesOutTheEndMarkOfFramesWhenTheHostSaysSo) {
  const std::string bytes = kExplicit.Fragments("OB", dicom_bytes::Item("") + dicom_bytes::Item("\x01\x02"));
  ExpectSuccess(Decompose(bytes, dicom_bytes::kJpegBaseline));
  const std::vector<std::string> whole = log_->Lines();
  EXPECT_THAT(whole, testing::Contains("StartItem FFFEE0DD 0"));
  host_.globals().Set("KevDICOM.Debug", {std::string("simplepixeldataframes")}, std::string("0"));
  ExpectSuccess(Decompose(bytes, dicom_bytes::kJpegBaseline));
  EXPECT_EQ(log_->Lines().size(), whole.size() - 3);
  EXPECT_THAT(log_->Lines(), testing::Not(testing::Contains("StartItem FFFEE0DD 0")));
}

TEST_F(DecomposeStream, GoesOnUnharmedWhenAnEventCallsTheLibrary) {
  auto [stream, stream_oref] = Make<MemoryStream>(kExplicit.Element(0x00100010, "PN", "Doe^John") +
                                                  kExplicit.Element(0x00100020, "LO", "4711"));
  auto [log, log_oref] = Make<EventLog>();
  int nested_calls = 0;
  log->OnEvent([&](std::string_view, std::span<const Value>) {
    ExpectSuccess(Call("zfTagInfo", ListBuilder().Integer(0x00100010)));
    ++nested_calls;
  });
  ExpectSuccess(
      Call("zfDecomposeStream",
           ListBuilder().Integer(stream_oref).String(kExplicitLittleEndian).Integer(log_oref).Integer(0)));
  EXPECT_EQ(nested_calls, 8);
  EXPECT_THAT(log->Lines(), ElementsAre("StartContent 1.2.840.10008.1.2.1", "StartElement 00100010 PN 8",
                                        "Data 00100010 1 446F655E4A6F686E", "EndElement 00100010",
                                        "StartElement 00100020 LO 4", "Data 00100020 1 34373131",
                                        "EndElement 00100020", "EndContent"));
}

}  // namespace
}  // namespace emulator
