#include "tests/decompose/decomposition.h"

// The callbacks of whole decompositions, in their order.

namespace {

using dicom_bytes::Item;
using dicom_bytes::kJpegBaseline;

// Object references: 1 the handler, 2 the stream, or 2 the client and 3 the stream.
class Callbacks : public Decomposition {
 protected:
  Lines CallsOfDecomposing(const std::string& bytes,
                           const std::string& syntax = dicom_bytes::kExplicitLittleEndian) {
    return CallsOf([&] { EXPECT_EQ(Decompose(bytes, syntax), kNoFailure); });
  }
};

// One line an event in place of its five or more callbacks: "StartElement 1048592 "PN" 8".
Lines EventsOf(const Lines& calls) {
  Lines events;
  for (std::size_t i = 0; i < calls.size(); ++i) {
    if (!calls[i].starts_with("PushMethod 1 ")) {
      events.push_back(calls[i]);
      continue;
    }
    std::string event = calls[i].substr(14, calls[i].rfind('"') - 14);
    std::size_t arguments = 0;
    for (++i; i < calls.size() && calls[i].starts_with("Push"); ++i, ++arguments) {
      event += calls[i].substr(calls[i].find(' '));
    }
    EXPECT_EQ(calls[i], "InvokeMethod " + std::to_string(arguments));
    EXPECT_EQ(calls[++i], "ConvertResult 3 -> 0 bytes");
    events.push_back(event);
  }
  return events;
}

TEST_F(Callbacks, OfOneElement) {
  EXPECT_EQ(CallsOfDecomposing(kExplicit.Element(0x00100010, "PN", "Doe^John")), Script(R"(
    PushProperty 2 "Position"
    GetProperty
    ConvertResult 1 -> 1
    PushMethod 2 "Peek" 1
    PushInteger 8000
    InvokeMethod 1
    PopString -> 16 bytes
    PushMethod 1 "StartContent" 1
    PushString "1.2.840.10008.1.2.1"
    InvokeMethod 1
    ConvertResult 3 -> 0 bytes
    PushMethod 1 "StartElement" 1
    PushUnsigned 1048592
    PushString "PN"
    PushUnsigned 8
    InvokeMethod 3
    ConvertResult 3 -> 0 bytes
    PushMethod 2 "Skip" 0
    PushInteger 16
    InvokeMethod 1
    PushMethod 2 "Peek" 1
    PushInteger 8000
    InvokeMethod 1
    PopString -> 0 bytes
    PushMethod 1 "Data" 1
    PushUnsigned 1048592
    PushUnsigned 1
    PushString "Doe^John"
    InvokeMethod 3
    ConvertResult 3 -> 0 bytes
    PushMethod 1 "EndElement" 1
    PushUnsigned 1048592
    InvokeMethod 1
    ConvertResult 3 -> 0 bytes
    PushMethod 1 "EndContent" 1
    InvokeMethod 0
    ConvertResult 3 -> 0 bytes)"));
}

TEST_F(Callbacks, OfASequenceWithTwoItems) {
  const std::string item = Item(kExplicit.Element(0x00081150, "UI", "1."));
  EXPECT_EQ(EventsOf(CallsOfDecomposing(kExplicit.Sequence(0x00081140, item + item))), Script(R"(
    PushProperty 2 "Position"
    GetProperty
    ConvertResult 1 -> 1
    PushMethod 2 "Peek" 1
    PushInteger 8000
    InvokeMethod 1
    PopString -> 48 bytes
    StartContent "1.2.840.10008.1.2.1"
    StartElement 528704 "SQ" 36
    StartSequence
    StartItem 528704 10
    StartElement 528720 "UI" 2
    Data 528720 1 "1."
    EndElement 528720
    EndItem 528704 10
    StartItem 528704 10
    StartElement 528720 "UI" 2
    PushMethod 2 "Skip" 0
    PushInteger 48
    InvokeMethod 1
    PushMethod 2 "Peek" 1
    PushInteger 8000
    InvokeMethod 1
    PopString -> 0 bytes
    Data 528720 1 "1."
    EndElement 528720
    EndItem 528704 10
    EndSequence
    EndElement 528704
    EndContent)"));
}

TEST_F(Callbacks, OfEncapsulatedPixelData) {
  EXPECT_EQ(EventsOf(CallsOfDecomposing(kExplicit.Fragments("OB", Item("") + Item("abcd")), kJpegBaseline)),
            Script(R"(
    PushProperty 2 "Position"
    GetProperty
    ConvertResult 1 -> 1
    PushMethod 2 "Peek" 1
    PushInteger 8000
    InvokeMethod 1
    PopString -> 40 bytes
    StartContent "1.2.840.10008.1.2.4.50"
    StartElement 2145386512 "OB" 4294967295
    StartItem 4294893568 0
    Data 2145386512 1 ""
    EndItem 4294893568 0
    StartItem 4294893568 4
    Data 2145386512 1 "abcd"
    EndItem 4294893568 4
    PushMethod 2 "Skip" 0
    PushInteger 40
    InvokeMethod 1
    PushMethod 2 "Peek" 1
    PushInteger 8000
    InvokeMethod 1
    PopString -> 0 bytes
    StartItem 4294893789 0
    Data 4294893789 1 ""
    EndItem 4294893789 0
    EndElement 2145386512
    EndContent)"));
}

TEST_F(Callbacks, OfAStreamOf8000Bytes) {
  EXPECT_EQ(EventsOf(CallsOfDecomposing(kExplicit.Element(0x00100010, "UT", SomeBytes(7988)))), Script(R"(
    PushProperty 2 "Position"
    GetProperty
    ConvertResult 1 -> 1
    PushMethod 2 "Peek" 1
    PushInteger 8000
    InvokeMethod 1
    PopString -> 8000 bytes
    StartContent "1.2.840.10008.1.2.1"
    StartElement 1048592 "UT" 7988
    PushMethod 2 "Skip" 0
    PushInteger 8000
    InvokeMethod 1
    PushMethod 2 "Peek" 1
    PushInteger 8000
    InvokeMethod 1
    PopString -> 0 bytes
    Data 1048592 1 7988 bytes
    EndElement 1048592
    EndContent)"));
}

// An odd number of bytes: the last is the first of a tag that is not there any more.
TEST_F(Callbacks, OfAStreamOf8001Bytes) {
  const auto decompose = [&] {
    EXPECT_EQ(Decompose(kExplicit.Element(0x00100010, "UT", SomeBytes(7988)) + "x"), kEndedTooEarly);
  };
  EXPECT_EQ(EventsOf(CallsOf(decompose)), Script(R"(
    PushProperty 2 "Position"
    GetProperty
    ConvertResult 1 -> 1
    PushMethod 2 "Peek" 1
    PushInteger 8000
    InvokeMethod 1
    PopString -> 8000 bytes
    StartContent "1.2.840.10008.1.2.1"
    StartElement 1048592 "UT" 7988
    PushMethod 2 "Skip" 0
    PushInteger 8000
    InvokeMethod 1
    PushMethod 2 "Peek" 1
    PushInteger 8000
    InvokeMethod 1
    PopString -> 1 bytes
    Data 1048592 1 7988 bytes
    EndElement 1048592
    PushMethod 2 "Peek" 1
    PushInteger 8000
    InvokeMethod 1
    PopString -> 1 bytes
    PushMethod 2 "Skip" 0
    PushInteger 1
    InvokeMethod 1
    PushMethod 2 "Peek" 1
    PushInteger 8000
    InvokeMethod 1
    PopString -> 0 bytes)"));
}

TEST_F(Callbacks, OfAClientThatStops) {
  AskClient([](std::uint32_t tag) { return tag == 0x00100020; });
  const std::string bytes =
      kExplicit.Element(0x00100010, "PN", "ab") + kExplicit.Element(0x00100020, "LO", "cd");
  EXPECT_EQ(EventsOf(CallsOfDecomposing(bytes)), Script(R"(
    PushProperty 3 "Position"
    GetProperty
    ConvertResult 1 -> 1
    PushMethod 3 "Peek" 1
    PushInteger 8000
    InvokeMethod 1
    PopString -> 20 bytes
    StartContent "1.2.840.10008.1.2.1"
    PushMethod 2 "ShouldStopDecomposition" 1
    PushUnsigned 1048592
    InvokeMethod 1
    ConvertResult 1 -> 0
    StartElement 1048592 "PN" 2
    Data 1048592 1 "ab"
    EndElement 1048592
    PushMethod 2 "ShouldStopDecomposition" 1
    PushUnsigned 1048608
    InvokeMethod 1
    ConvertResult 1 -> 1
    EndContent
    PushMethod 3 "Skip" 0
    PushInteger 10
    InvokeMethod 1)"));
}

}  // namespace
