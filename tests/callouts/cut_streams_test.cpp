#include "tests/callouts/decomposing.h"
#include "tests/callouts/watched_call.h"

// Streams that end too early: inside a tag, a header, a value, an item, a sequence.

namespace emulator {
namespace {

using dicom_bytes::DataSetBytes;
using dicom_bytes::Item;
using dicom_bytes::kExplicitLittleEndian;
using dicom_bytes::kImplicitLittleEndian;
using dicom_bytes::kItem;
using dicom_bytes::kUndefined;
using dicom_bytes::TagAndLength;
using dicom_bytes::UndefinedItem;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

constexpr const char16_t* kStepAlone = u" decomposing stream";

constexpr std::uint32_t kImages = 0x00081140;  // a sequence

// 10 bytes each
std::string First() { return kExplicit.Element(0x00081150, "UI", "1."); }
std::string Behind() { return kExplicit.Element(0x00100010, "PN", "ab"); }

class CutStream : public Decomposing {};

TEST_F(CutStream, WithAPartOfATagLeftAsksTheClientAboutStaleBytesAndFails) {
  const std::shared_ptr<StopAtTag> client = AskClient([](std::uint32_t) { return false; });
  for (const std::string rest : {"A", "AB", "ABC"}) {
    ExpectFailure(Decompose(rest), kStepAlone);
    ExpectFailure(Decompose(Behind() + rest), kStepAlone);
    EXPECT_EQ(Consumed(), 10 + static_cast<std::int64_t>(rest.size()));
  }
  // The look-ahead is all zeros at first. Behind an element it still holds the start of that element: 10 00 10 00.
  EXPECT_THAT(client->Asked(), ElementsAre(0x00410000, 0x00100010, 0x00410010,    //
                                           0x42410000, 0x00100010, 0x42410010,    //
                                           0x42410043, 0x00100010, 0x42410043));  //
}

TEST_F(CutStream, WithAPartOfATagLeftIsASuccessForAClientThatStopsThere) {
  AskClient([](std::uint32_t tag) { return tag == 0x42410010; });
  ExpectSuccess(Decompose(Behind() + "AB"));
  EXPECT_EQ(Events().back(), "EndContent");
  EXPECT_EQ(Consumed(), 10);
}

/// Cuts an element with a long header at every byte, behind `start`.
class CutElement : public CutStream, public testing::WithParamInterface<const DataSetBytes*> {
 protected:
  void ExpectFailuresBehind(const std::string& start) {
    const DataSetBytes& form = *GetParam();
    const std::size_t header = form.Header(0x00420011, "OB", 6).size();
    const std::string element = form.Element(0x00420011, "OB", "abcdef");
    ExpectSuccess(Decompose(""));
    for (std::size_t size = 1; size < element.size(); ++size) {
      SCOPED_TRACE(size);
      ExpectFailure(Decompose(start + element.substr(0, size), form.TransferSyntax()), kStepAlone);
      const bool is_started = size >= header;
      EXPECT_EQ(Events().empty() ? "" : Events().back(),
                is_started ? "StartElement 00420011 OB 6" : last_event_);
      EXPECT_THAT(Events(), Not(Contains("EndElement 00420011")));
    }
  }

  std::string last_event_;  ///< behind `start`
};

TEST_P(CutElement, AtTheTopFailsWithoutATextAndStaysStarted) { ExpectFailuresBehind(""); }

TEST_P(CutElement, InAnItemOfUndefinedLengthFailsWithoutATextAndStaysStarted) {
  last_event_ = "StartItem 00081140 4294967295";
  ExpectFailuresBehind(GetParam()->Header(kImages, "SQ", kUndefined) + TagAndLength(kItem, kUndefined));
}

INSTANTIATE_TEST_SUITE_P(Vrs, CutElement, testing::Values(&kExplicit, &kImplicit));

TEST_F(CutStream, BehindTheItemsOfASequenceOfUndefinedLengthFails) {
  for (const std::string& item : {Item(First()), UndefinedItem(First())}) {
    ExpectFailure(Decompose(kExplicit.Header(kImages, "SQ", kUndefined) + item), kStepAlone);
    EXPECT_TRUE(Events().back().starts_with("EndItem 00081140 "));
  }
}

TEST_F(CutStream, InsideAnItemOfUndefinedLengthSendsItsEndAndFails) {
  ExpectFailure(
      Decompose(kExplicit.Header(kImages, "SQ", kUndefined) + TagAndLength(kItem, kUndefined) + First()),
      kStepAlone);
  EXPECT_EQ(Events().back(), "EndItem 00081140 4294967295");
}

// --- The streams that are never done: they end between two elements of an item of defined length.

constexpr std::uint32_t kWatchedHandler = 2;

/// Decomposes in a process of its own, with a client that never stops; stream 1, handler 2, client 3.
WatchedCall WatchDecomposing(const std::string& bytes) {
  return Watch([&bytes](Host& host) {
    ListBuilder arguments;
    arguments.Integer(host.Add(std::make_shared<MemoryStream>(bytes))).String(kExplicitLittleEndian);
    arguments.Integer(host.Add(std::make_shared<EventLog>()));
    arguments.Integer(host.Add(std::make_shared<StopAtTag>(0xFFFFFFFF)));
    TheLibrary().CallList("zfDecomposeStream", arguments);
  });
}

class EndlessStream : public CutStream, public testing::WithParamInterface<std::uint32_t> {};

TEST_P(EndlessStream, InsideAnItemOfDefinedLengthNeverReturnsAndAsksNobodyAnyMore) {
  const std::string item = TagAndLength(kItem, 20) + First();
  const WatchedCall call = WatchDecomposing(kExplicit.Header(kImages, "SQ", GetParam()) + item);
  EXPECT_FALSE(call.returned);
  EXPECT_THAT(call.Names(),
              ElementsAre("Position", "Peek", "StartContent",                                       //
                          "ShouldStopDecomposition", "StartElement", "StartSequence", "StartItem",  //
                          "ShouldStopDecomposition", "StartElement", "Skip", "Peek", "Data", "EndElement"));
  EXPECT_THAT(call.callbacks, Contains("PopString -> 0 bytes"));   // the host has told the end
  EXPECT_EQ(call.callbacks.back(), "ConvertResult 3 -> 0 bytes");  // of EndElement
}

INSTANTIATE_TEST_SUITE_P(SequenceLengths, EndlessStream, testing::Values(28U, kUndefined));

std::string WithAnItemOf(std::uint32_t length) {
  return kExplicit.Header(kImages, "SQ", 18) + TagAndLength(kItem, length) + First() + Behind();
}

TEST_F(CutStream, WithAnItemLengthOfOneFlippedBitReportsTheRestInsideTheItemAndNeverReturns) {
  const WatchedCall call = WatchDecomposing(WithAnItemOf(10 | 1U << 6U));
  EXPECT_FALSE(call.returned);
  const auto event = [](const char* name, std::uint32_t tag, const char* arguments = "") {
    return name + (' ' + std::to_string(tag)) + arguments;
  };
  EXPECT_THAT(call.MethodsOf(kWatchedHandler),
              ElementsAre("StartContent \"1.2.840.10008.1.2.1\"",               //
                          event("StartElement", kImages, " \"SQ\" 18"),         //
                          "StartSequence", event("StartItem", kImages, " 74"),  //
                          event("StartElement", 0x00081150, " \"UI\" 2"),       //
                          event("Data", 0x00081150, " 1 \"1.\""),               //
                          event("EndElement", 0x00081150),
                          // from behind the sequence
                          event("StartElement", 0x00100010, " \"PN\" 2"),  //
                          event("Data", 0x00100010, " 1 \"ab\""),          //
                          event("EndElement", 0x00100010)));
  EXPECT_THAT(call.callbacks, Contains("PopString -> 0 bytes"));   // the host has told the end
  EXPECT_EQ(call.callbacks.back(), "ConvertResult 3 -> 0 bytes");  // of EndElement
}

/// With implicit VR this is one element, a document of 30 bytes. Read with explicit VR it has a VR of the length's low
/// half and no bytes, and what it holds is the next element: a sequence whose item names 20 bytes and has 10.
std::string DocumentThatHoldsASequence() {
  return kImplicit.Element(0x00420011, "OB",
                           kExplicit.Header(kImages, "SQ", 28) + TagAndLength(kItem, 20) + First());
}

TEST_F(CutStream, OfImplicitVrReadAsExplicitMayNeverReturn) {
  const WatchedCall call = WatchDecomposing(DocumentThatHoldsASequence());
  EXPECT_FALSE(call.returned);
  EXPECT_THAT(call.Names(),
              ElementsAre("Position", "Peek", "StartContent",                                       //
                          "ShouldStopDecomposition", "StartElement", "Data", "EndElement",          //
                          "ShouldStopDecomposition", "StartElement", "StartSequence", "StartItem",  //
                          "ShouldStopDecomposition", "StartElement", "Skip", "Peek", "Data", "EndElement"));
  EXPECT_THAT(call.callbacks, Contains("PopString -> 0 bytes"));   // the host has told the end
  EXPECT_EQ(call.callbacks.back(), "ConvertResult 3 -> 0 bytes");  // of EndElement
}

TEST_F(CutStream, OfImplicitVrReadAsSuchReturns) {
  ExpectSuccess(Decompose(DocumentThatHoldsASequence(), kImplicitLittleEndian));
  EXPECT_EQ(Events().front(), "StartElement 00420011 OB 30");
}

TEST_F(CutStream, WithTheRightLengthsReturns) {
  ExpectSuccess(Decompose(WithAnItemOf(10)));
  ExpectSuccess(Decompose(kExplicit.Sequence(kImages, Item(First()))));
}

}  // namespace
}  // namespace emulator
