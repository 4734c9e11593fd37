#include "decompose/content_handler.h"

#include "tests/decompose/decomposition.h"

// The host content handler by itself, and a host that fails in it.

namespace {

using testing::ElementsAre;
using vessa::kSuccess;
using vessa::kUndefinedLength;
using vessa::Tag;
using vessa::Vr;

class ContentHandler : public EmulatedHost {
 protected:
  ContentHandler() : log_{std::make_shared<emulator::EventLog>()}, handler_(Add(log_)) {}

  std::shared_ptr<emulator::EventLog> log_;
  vessa::CContentHandler handler_;
};

TEST_F(ContentHandler, CallsTheMethodOfEachEvent) {
  const std::string bytes("a\0b", 3);
  EXPECT_EQ(handler_.StartContent("1.2.840.10008.1.2"), kSuccess);
  EXPECT_EQ(handler_.StartElement(Tag{0x00081140}, Vr("SQ"), kUndefinedLength), kSuccess);
  EXPECT_EQ(handler_.StartSequence(Tag{0x00081140}), kSuccess);
  EXPECT_EQ(handler_.StartItem(Tag{0x00081140}, kUndefinedLength), kSuccess);
  EXPECT_EQ(handler_.Data(Tag{0xFFFEE0DD}, 7, BytesOf(bytes)), kSuccess);
  EXPECT_EQ(handler_.Data(Tag{0xFFFEE0DD}, 0xFFFFFFFF, {}), kSuccess);
  EXPECT_EQ(handler_.EndItem(Tag{0x00081140}, 10), kSuccess);
  EXPECT_EQ(handler_.EndSequence(), kSuccess);
  EXPECT_EQ(handler_.EndElement(Tag{0x00081140}), kSuccess);
  EXPECT_EQ(handler_.EndContent(), kSuccess);
  EXPECT_EQ(log_->Lines(), Script(R"(
    StartContent 1.2.840.10008.1.2
    StartElement 00081140 SQ 4294967295
    StartSequence
    StartItem 00081140 4294967295
    Data FFFEE0DD 7 610062
    Data FFFEE0DD 4294967295
    EndItem 00081140 10
    EndSequence
    EndElement 00081140
    EndContent)"));
  ExpectCleanStack();
}

TEST_F(ContentHandler, KeepsTheDefaultsOfTheRest) {
  EXPECT_THAT(CallsOf([&] { handler_.Reset(); }), testing::IsEmpty());
  EXPECT_FALSE(handler_.WantsEmptySequences());
  EXPECT_TRUE(handler_.WantsValue(Tag{0x00100010}));
}

TEST_F(ContentHandler, PushesTheArgumentsOfEachEventInOrder) {
  const std::string bytes("a\0b", 3);
  EXPECT_THAT(CallsOf([&] { handler_.Data(Tag{0x7FE00010}, 1, BytesOf(bytes)); }),
              ElementsAre("PushMethod 1 \"Data\" 1", "PushUnsigned 2145386512", "PushUnsigned 1",
                          "PushString \"a\\x00b\"", "InvokeMethod 3", "ConvertResult 3 -> 0 bytes"));
  EXPECT_THAT(
      CallsOf([&] { handler_.StartSequence(Tag{0x00081140}); }),
      ElementsAre("PushMethod 1 \"StartSequence\" 1", "InvokeMethod 0", "ConvertResult 3 -> 0 bytes"));
}

TEST_F(ContentHandler, DropsWhateverTheMethodReturns) {
  for (const emulator::Value& value :
       {emulator::Value(), emulator::Value(std::int64_t{-5}), emulator::Value(2.5),
        emulator::Value(std::string(32767, 'x')), emulator::Value(std::u16string(u"text"))}) {
    log_->Return("EndSequence", value);
    EXPECT_EQ(handler_.EndSequence(), kSuccess);
  }
  ExpectCleanStack();
}

TEST_F(ContentHandler, AReturnValueThatIsTooLongIsAFailure) {
  log_->Return("EndElement", std::string(32768, 'x'));
  EXPECT_EQ(FailureOf([&] { handler_.EndElement(Tag{0x00100010}); }),
            "Callin error calling method 'EndElement': -10");
}

TEST_F(ContentHandler, AReturnValueWithACountThatCannotBeIsAFailure) {
  host_.faults().LieNth(emulator::Lie::kCountAboveCapacity, 1);
  EXPECT_EQ(FailureOf([&] { handler_.EndElement(Tag{0x00100010}); }),
            "Callin error calling method 'EndElement': -1");
}

TEST_F(ContentHandler, NamesTheMethodThatFailed) {
  const std::vector<std::pair<std::string, std::function<void()>>> events = {
      {"StartContent", [&] { handler_.StartContent("1.2"); }},
      {"EndContent", [&] { handler_.EndContent(); }},
      {"StartItem", [&] { handler_.StartItem(Tag{1U}, 2); }},
      {"EndItem", [&] { handler_.EndItem(Tag{1U}, 2); }},
      {"StartElement", [&] { handler_.StartElement(Tag{1U}, Vr("PN"), 2); }},
      {"EndElement", [&] { handler_.EndElement(Tag{1U}); }},
      {"Data", [&] { handler_.Data(Tag{1U}, 1, {}); }},
      {"StartSequence", [&] { handler_.StartSequence(Tag{1U}); }},
      {"EndSequence", [&] { handler_.EndSequence(); }},
  };
  for (const auto& [name, event] : events) {
    const std::size_t callbacks = CallsOf(event).size();
    for (std::size_t nth = 1; nth <= callbacks; ++nth) {
      host_.faults().FailNth(nth, 5);
      EXPECT_EQ(FailureOf(event), "Callin error calling method '" + name + "': 5") << nth;
      host_.faults().Clear();
      host_.ResetStack();
    }
    EXPECT_EQ(FailureOf(event), kNoFailure);
  }
}

// --- In a decomposition

using FailingHandler = Decomposition;

const std::string kBytes =
    kExplicit.Sequence(0x00081140, dicom_bytes::Item(kExplicit.Element(0x00081150, "UI", "1.")));

TEST_F(FailingHandler, EndsTheDecompositionAtOnceAndTakesNothingBack) {
  const Lines methods = {"StartContent", "StartElement", "StartSequence", "StartItem",
                         "StartElement", "Data",         "EndElement",    "EndItem",
                         "EndSequence",  "EndElement",   "EndContent"};
  for (std::size_t nth = 1; nth <= methods.size(); ++nth) {
    log_->FailAt(nth, 5);
    EXPECT_EQ(Decompose(kBytes), "Callin error calling method '" + methods[nth - 1] + "': 5");
    EXPECT_EQ(log_->Count(), nth);
    host_.ResetStack();
  }
  EXPECT_EQ(Decompose(kBytes), kNoFailure);
}

TEST_F(FailingHandler, AnUnknownObjectFailsAtTheFirstEvent) {
  log_oref_ = 77;
  EXPECT_EQ(Decompose(kBytes), "Callin error calling method 'StartContent': 119");
}

TEST_F(FailingHandler, AnObjectWithoutTheMethodsFailsAtTheFirstEvent) {
  log_oref_ = Add(std::make_shared<emulator::MemoryStream>());
  EXPECT_EQ(Decompose(kBytes), "Callin error calling method 'StartContent': 120");
}

// Each callback of a decomposition in turn. The next decomposition is as if nothing had been.
TEST_F(FailingHandler, EveryFailedCallbackHasAText) {
  const std::string bytes = kBytes + kExplicit.Element(0x00100010, "UT", SomeBytes(40000));
  const auto client = AskClient([](std::uint32_t) { return false; });
  const std::uint64_t before = host_.CallbackCount();
  ASSERT_EQ(Decompose(bytes), kNoFailure);
  const std::uint64_t callbacks = host_.CallbackCount() - before;
  EXPECT_GT(callbacks, 100U);
  for (std::uint64_t nth = 1; nth < callbacks; ++nth) {
    host_.faults().FailNth(nth, 5);
    const std::string failure = Decompose(bytes);
    const bool known = failure == StatusText(5) || failure.starts_with("Callin error calling method '") ||
                       failure == "Callin error peeking bytes: 5" ||
                       failure == "Callin error skipping bytes: 5" ||
                       failure == "Callin error getting underlying stream position: 5";
    EXPECT_TRUE(known) << nth << ": " << failure;
    host_.faults().Clear();
    host_.ResetStack();
  }
}

// --- Handlers of the library itself

class PickyHandler : public vessa::CContentHandlerInterface {
 public:
  vessa::Status StartContent(std::string_view) override { return Next("StartContent"); }
  vessa::Status EndContent() override { return Next("EndContent"); }
  vessa::Status StartItem(Tag, std::uint32_t) override { return Next("StartItem"); }
  vessa::Status EndItem(Tag, std::uint32_t) override { return Next("EndItem"); }
  vessa::Status StartElement(Tag, Vr, std::uint32_t) override { return Next("StartElement"); }
  vessa::Status EndElement(Tag) override { return Next("EndElement"); }
  vessa::Status Data(Tag, std::uint32_t, std::span<const std::uint8_t>) override { return Next("Data"); }
  vessa::Status StartSequence(Tag) override { return Next("StartSequence"); }
  vessa::Status EndSequence() override { return Next("EndSequence"); }
  void Reset() override { events.push_back("Reset"); }
  bool WantsEmptySequences() override { return wants_empty_sequences; }

  Lines events;
  std::size_t fail_at = 0;
  vessa::Status status = vessa::E_FAIL;
  bool wants_empty_sequences = true;

 private:
  vessa::Status Next(const std::string& event) {
    events.push_back(event);
    return events.size() == fail_at ? status : kSuccess;
  }
};

class OwnHandler : public EmulatedHost {
 protected:
  std::string Decompose(const std::string& bytes, const char* syntax) {
    handler_.events.clear();
    vessa::CVessaBinaryInputStream stream(Add(std::make_shared<emulator::MemoryStream>(bytes)));
    stream.Open();
    const std::uint32_t no_client = 0;
    return FailureOf(
        [&] { vessa::StreamDecomposer(stream, handler_, no_client, false).DecomposeStream(syntax); });
  }

  PickyHandler handler_;
};

TEST_F(OwnHandler, IsResetBeforeTheContentStarts) {
  EXPECT_EQ(Decompose("", dicom_bytes::kExplicitLittleEndian), kNoFailure);
  EXPECT_THAT(handler_.events, ElementsAre("Reset", "StartContent", "EndContent"));
}

TEST_F(OwnHandler, ThatWantsEmptySequencesIsToldOfThem) {
  EXPECT_EQ(Decompose(kExplicit.Sequence(0x00081140, ""), dicom_bytes::kExplicitLittleEndian), kNoFailure);
  EXPECT_THAT(handler_.events, ElementsAre("Reset", "StartContent", "StartElement", "StartSequence",
                                           "EndSequence", "EndElement", "EndContent"));
}

TEST_F(OwnHandler, EndsTheDecompositionByANegativeStatusOfAnyEvent) {
  const std::string bytes =
      kBytes + kExplicit.Fragments("OB", dicom_bytes::Item("ab")) + kExplicit.Element(0x00100010, "PN", "");
  ASSERT_EQ(Decompose(bytes, dicom_bytes::kJpegBaseline), kNoFailure);
  const std::size_t events = handler_.events.size();
  EXPECT_EQ(events, 1 + 11 + 8 + 3U);
  for (handler_.fail_at = 2; handler_.fail_at <= events; ++handler_.fail_at) {
    EXPECT_EQ(Decompose(bytes, dicom_bytes::kJpegBaseline), StatusText(vessa::E_FAIL));
    EXPECT_EQ(handler_.events.size(), handler_.fail_at);
  }
}

TEST_F(OwnHandler, MayReturnAPositiveStatus) {
  handler_.fail_at = 3;
  handler_.status = 1;
  EXPECT_EQ(Decompose(kBytes, dicom_bytes::kExplicitLittleEndian), kNoFailure);
}

// --- Events that call back into the library

TEST_F(FailingHandler, AnEventMayDecomposeAnotherStream) {
  const std::string outer = kBytes + kExplicit.Element(0x00100010, "UT", SomeBytes(70000));
  ASSERT_EQ(Decompose(outer), kNoFailure);
  const Lines expected = log_->Lines();

  auto inner_log = std::make_shared<emulator::EventLog>();
  const std::uint32_t inner_log_oref = Add(inner_log);
  const std::uint32_t no_client = 0;
  log_->OnEvent([&](std::string_view, std::span<const emulator::Value>) {
    vessa::CVessaBinaryInputStream stream(Add(std::make_shared<emulator::MemoryStream>(
        kExplicit.Element(0x00100010, "UT", std::string(50000, 'x')))));
    stream.Open();
    vessa::CContentHandler handler(inner_log_oref);
    vessa::StreamDecomposer(stream, handler, no_client, false)
        .DecomposeStream(dicom_bytes::kExplicitLittleEndian);
  });
  EXPECT_EQ(Decompose(outer), kNoFailure);
  EXPECT_EQ(log_->Lines(), expected);
  EXPECT_EQ(inner_log->Lines().size(), 6 * expected.size());
}

}  // namespace
