// A recording's answers, given again to whoever calls back as it was recorded.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "emulator/event_log.h"
#include "emulator/recording_writer.h"
#include "emulator/replay_host.h"
#include "emulator/stream_object.h"
#include "tests/emulator/host_calls.h"
#include "tests/support/dicom_bytes.h"
#include "tests/support/paths.h"

namespace emulator {
namespace {

using testing::HasSubstr;

/// Records what is done while it lives.
class Recorder {
 public:
  explicit Recorder(Host& host) {
    host.Observe([this](const Callback& callback) { writer_.OnCallback(callback); });
  }
  RecordingWriter& Writer() { return writer_; }
  std::string Text() {
    writer_.Finish();
    return text_;
  }

 private:
  std::string text_;
  RecordingWriter writer_{[this](std::string_view text) { text_ += text; }};
};

struct Popped {
  int status = 0;
  int length = 0;
  bool has_text = false;
  std::string text;
};

Popped PopFrom(const vessa::HostServices& table) {
  Popped popped;
  unsigned char* text = nullptr;
  popped.status = table.pop_string(&popped.length, &text);
  popped.has_text = text != nullptr;
  if (popped.status == 0 && popped.has_text && popped.length > 0)
    popped.text.assign(text, text + popped.length);
  return popped;
}

/// Every kind of answer: what each callback said, one text.
std::string EveryAnswer(const vessa::HostServices& table, std::uint32_t oref) {
  std::ostringstream said;
  const auto push_method = [&] { said << table.push_method(oref, 3, Units("Get"), 1) << ' '; };
  push_method();
  said << table.push_double(0.1) << ' ' << table.invoke_method(1) << ' ' << PopFrom(table).text << ' ';
  push_method();
  said << table.invoke_method(0) << ' ';
  int length = 0;
  std::uint16_t* units = nullptr;
  said << table.pop_wide_string(&length, &units) << ' ' << length << ' ' << units[0] << ' ';
  push_method();
  table.invoke_method(0);
  vessa::HostString receiver{};
  receiver.count = vessa::HostString::kCapacity;
  said << table.convert_result(vessa::kConvertToCountedString, &receiver) << ' ' << Contents(receiver) << ' ';
  std::int32_t number = 7;
  said << table.convert_result(vessa::kConvertToInteger, &number) << ' ' << number << ' ';
  const std::uint16_t wide[] = {'a', 0x4E00};
  said << table.push_wide_string(2, wide) << ' ' << table.push_unsigned(4294967295U) << ' ';
  vessa::LongStringDescriptor descriptor{};
  void* const area = table.new_long_string(&descriptor, 70000);
  std::fill_n(static_cast<char*>(area), 70000, 'y');
  said << descriptor.length << ' ' << table.push_long_string(&descriptor) << ' ';
  vessa::LongStringDescriptor refused{};
  said << (table.new_long_wide_string(&refused, -1) == nullptr) << ' ';
  said << table.push_global(1, Units("A")) << ' ' << table.global_get(0, 0) << ' ';
  return said.str();
}

TEST(Replay, AnswersEachCallbackAsItWasRecorded) {
  Host host;
  const std::uint32_t oref = host.Add(std::make_shared<Answer>(Value(std::string("1\0\"\\\xFF", 5))));
  Recorder recorder(host);
  const std::string said = EveryAnswer(*Host::Table(), oref);
  std::istringstream text(recorder.Text());
  ReplayHost replay(text);
  EXPECT_EQ(EveryAnswer(*ReplayHost::Table(), oref), said);
  EXPECT_EQ(replay.Callbacks(), host.CallbackCount());
}

TEST(Replay, MisleadsAsTheHostDid) {
  Host host;
  LeaveResult(host, std::string("one"));
  LeaveResult(host, std::string("two"));
  host.faults().LieNth(Lie::kNegativeLength, 1);
  host.faults().LieNth(Lie::kNoBytes, 2);
  Recorder recorder(host);
  PopFrom(*Host::Table());
  PopFrom(*Host::Table());
  std::istringstream text(recorder.Text());
  ReplayHost replay(text);
  EXPECT_EQ(PopFrom(*ReplayHost::Table()).length, -1);
  const Popped none = PopFrom(*ReplayHost::Table());
  EXPECT_EQ(none.length, 3);
  EXPECT_FALSE(none.has_text);
}

TEST(Replay, FailsEveryCallbackFromTheFirstDifferenceOn) {
  std::istringstream text("vessa-recording 1\nPushInteger 1\nPushInteger 22\nPushInteger 3\n");
  ReplayHost replay(text);
  EXPECT_EQ(ReplayHost::Table()->push_integer(1), 0);
  EXPECT_EQ(ReplayHost::Table()->push_integer(2), kFailure) << "22 begins with 2, but is another number";
  EXPECT_EQ(ReplayHost::Table()->push_integer(3), kFailure);
}

// --- With the library ----------------------------------------------------------------------------------------------

const dicom_bytes::DataSetBytes kExplicit(dicom_bytes::VrForm::kExplicit);

/// Asks the library about a tag at each event, as handlers may.
std::string RecordDecomposition(FaultPlan faults = {}) {
  Library library = Library::Load(kLibraryPath);
  Host host;
  host.faults() = std::move(faults);
  Recorder recorder(host);
  library.Watch(&recorder.Writer());
  const auto log = std::make_shared<EventLog>();
  log->OnEvent([&](std::string_view, std::span<const Value>) {
    library.CallList("zfTagInfo", ListBuilder().Integer(0x00100010));
  });
  const std::uint32_t stream =
      host.Add(std::make_shared<MemoryStream>(kExplicit.Element(0x00100010, "PN", "Doe^John")));
  library.CallList(
      "zfDecomposeStream",
      ListBuilder().Integer(stream).String("1.2.840.10008.1.2.1").Integer(host.Add(log)).Integer(0));
  return recorder.Text();
}

std::optional<ReplayDifference> Play(const std::string& recording, std::uint64_t* calls = nullptr) {
  std::istringstream text(recording);
  ReplayHost replay(text);
  const Library library = Library::Load(kLibraryPath, ReplayHost::Table());
  std::optional<ReplayDifference> difference = replay.Play(library);
  if (calls != nullptr) *calls = replay.Calls();
  return difference;
}

std::string Replaced(std::string text, const std::string& old, const std::string& by) {
  const std::size_t place = text.find(old);
  EXPECT_NE(place, std::string::npos) << old;
  return place == std::string::npos ? text : text.replace(place, old.size(), by);
}

TEST(Replay, FindsNoDifferenceInTheLibraryThatWasRecorded) {
  std::uint64_t calls = 0;
  EXPECT_FALSE(Play(RecordDecomposition(), &calls));
  EXPECT_EQ(calls, 6U) << "one, and one inside each of its five events";
}

TEST(Replay, TakesLineEndsOfWindowsAndComments) {
  std::string text = RecordDecomposition();
  for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', end + 2)) {
    text.insert(end, "\r");
  }
  EXPECT_FALSE(Play(Replaced(text, "call", "# a comment\r\n\r\ncall")));
}

TEST(Replay, RepeatsFailuresOfTheHost) {
  FaultPlan faults;
  faults.FailNthMethod("Data", 1, 5);
  const std::string recording = RecordDecomposition(std::move(faults));
  EXPECT_THAT(recording, HasSubstr("InvokeMethod 3 = 5"));
  EXPECT_FALSE(Play(recording));
}

TEST(Replay, NamesTheFirstDifference) {
  const auto difference = Play(Replaced(RecordDecomposition(), "PushString \"PN\"", "PushString \"LO\""));
  ASSERT_TRUE(difference);
  EXPECT_EQ(difference->call, "zfDecomposeStream");
  EXPECT_EQ(difference->recorded, "PushString \"LO\"");
  EXPECT_EQ(difference->made, "PushString \"PN\"");
}

TEST(Replay, ShowsWhatOtherAnswersChange) {
  const auto difference = Play(Replaced(RecordDecomposition(), "Doe^", "Roe^"));
  ASSERT_TRUE(difference);
  EXPECT_EQ(difference->recorded, "PushString \"Doe^John\"");
  EXPECT_EQ(difference->made, "PushString \"Roe^John\"");
}

TEST(Replay, NamesOtherResults) {
  const auto difference = Play(Replaced(RecordDecomposition(), "return 0 \"\\x02\\x04\"", "return 0 \"\""));
  ASSERT_TRUE(difference);
  EXPECT_EQ(difference->made, "return 0 \"\\x02\\x04\"");
}

TEST(Replay, NamesACallOutThatTheLibraryLacks) {
  const auto difference = Play("vessa-recording 1\ncall zfNothing \"\"\nreturn 0 \"\"\nend\n");
  ASSERT_TRUE(difference);
  EXPECT_EQ(difference->made, "(the library has no such call-out)");
}

TEST(Replay, SaysWhereARecordingIsCut) {
  const std::string recording = RecordDecomposition();
  const auto difference = Play(recording.substr(0, recording.find("PushString \"PN\"")));
  ASSERT_TRUE(difference);
  EXPECT_EQ(difference->recorded, "(the recording ends here)");
}

TEST(Replay, RefusesWhatIsNoRecording) {
  for (const char* const text :
       {"", "DICM", "vessa-recording 2\n", "vessa-recording 1\nPushInteger 1\n", "vessa-recording 1\ncall\n",
        "vessa-recording 1\ncall zfTagInfo \"\n", "vessa-recording 1\ncall zfTagInfo \"\\xZ1\"\n",
        "vessa-recording 1\ncall zfTagInfo 99999999999\n", "vessa-recording 1\ncall zfTagInfo \"\" x\n"}) {
    EXPECT_THROW(Play(text), RecordingError) << text;
  }
}

}  // namespace
}  // namespace emulator
