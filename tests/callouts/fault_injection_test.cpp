#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "emulator/client.h"
#include "emulator/event_log.h"
#include "emulator/stream_object.h"
#include "tests/callouts/loaded_library.h"
#include "tests/support/dicom_bytes.h"

// Each callback of a call fails in turn, once alone and once with all behind it: the call answers with the failure
// that is meant for that place, and the next call works as if nothing had been.

namespace emulator {
namespace {

using dicom_bytes::DataSetBytes;
using dicom_bytes::Item;
using dicom_bytes::kExplicitLittleEndian;
using dicom_bytes::kImplicitLittleEndian;
using dicom_bytes::VrForm;

constexpr int kStatus = 5;

/// One call-out over objects of its own.
struct Scenario {
  std::string name;
  std::function<ListResult(Host&)> call;
};

std::string SmallDataSet(VrForm form) {
  const DataSetBytes bytes(form);
  return bytes.Element(0x00100010, "PN", "Doe^John") +
         bytes.UndefinedSequence(0x300A00B0,
                                 Item(bytes.Element(0x300A00C2, "LO", "left")) +
                                     dicom_bytes::UndefinedItem(bytes.Element(0x300A00C2, "LO", "back")));
}

std::string LongDataSet() {
  const DataSetBytes bytes(VrForm::kExplicit);
  return bytes.Element(0x00100010, "PN", "Doe^John") +
         bytes.Element(0x7FE00010, "OW", std::string(70000, 'x'));
}

std::string Fragments() {
  return DataSetBytes(VrForm::kExplicit)
      .Fragments("OB", Item("") + Item("abcd") + Item(std::string(9000, 'x')));
}

std::string PropertyList(std::string_view parser, std::string_view reference) {
  return AsBytes(TheLibrary().CallList(parser, ListBuilder().String(reference)).values.at(0).value);
}

Scenario Decompose(std::string name, std::string bytes, std::string syntax, bool with_client) {
  return {"zfDecomposeStream " + name, [=](Host& host) {
            const std::uint32_t stream = host.Add(std::make_shared<MemoryStream>(bytes));
            const std::uint32_t log = host.Add(std::make_shared<EventLog>());
            const std::uint32_t client =
                with_client ? host.Add(std::make_shared<StopAtTag>(0x00000001)) : std::uint32_t{0};
            return TheLibrary().CallList(
                "zfDecomposeStream",
                ListBuilder().Integer(stream).String(syntax).Integer(log).Integer(client));
          }};
}

Scenario AskStream(std::string function, std::string parser, std::string reference) {
  return {function + " " + reference, [=](Host& host) {
            const std::string list = PropertyList(parser, reference);
            const std::uint32_t stream = host.Add(std::make_shared<MemoryStream>(LongDataSet()));
            return TheLibrary().CallList(
                function, ListBuilder().Integer(stream).String(kExplicitLittleEndian).String(list));
          }};
}

std::vector<Scenario> Scenarios() {
  return {
      Decompose("explicit", SmallDataSet(VrForm::kExplicit), kExplicitLittleEndian, false),
      Decompose("implicit", SmallDataSet(VrForm::kImplicit), kImplicitLittleEndian, false),
      Decompose("with client", SmallDataSet(VrForm::kExplicit), kExplicitLittleEndian, true),
      Decompose("long value", LongDataSet(), kExplicitLittleEndian, false),
      Decompose("fragments", Fragments(), dicom_bytes::kJpegBaseline, false),
      Decompose("nothing", "", kExplicitLittleEndian, true),
      AskStream("zfQueryStream", "zfParsePropertyReference", "PatientName"),
      AskStream("zfQueryStream", "zfParsePropertyReference", "DataSetTrailingPadding"),
      AskStream("zfGetNextSubscript", "zfParsePropertySubscriptReference", "BeamSequence[]"),
  };
}

/// What the callback that failed was about, read off the recorded calls: the method or property that it belongs to.
struct Place {
  std::string owner;  // "Peek", "Position", "StartElement", ...; "" for a global
  bool opening;       // still wrapping the stream
  bool closing;       // moving the host's stream when the call is over
};

std::string Quoted(const std::string& line) {
  const std::size_t first = line.find('"');
  return line.substr(first + 1, line.find('"', first + 1) - first - 1);
}

Place PlaceOfFirstFailure(const std::vector<std::string>& calls) {
  const std::string failed = " = " + std::to_string(kStatus);
  Place place{"", true, false};
  for (const std::string& call : calls) {
    if (call.starts_with("PushMethod") || call.starts_with("PushProperty")) place.owner = Quoted(call);
    if (call.starts_with("PushGlobal")) place = {"", false, false};
    if (call.ends_with(failed)) return place;
  }
  return place;
}

std::u16string ExpectedMessage(const Place& place) {
  const std::string step = place.opening ? " wrapping input stream" : " decomposing stream";
  std::string text;
  if (place.owner == "Peek") text = "Callin error peeking bytes: 5 - ";
  if (place.owner == "Skip") text = "Callin error skipping bytes: 5 - ";
  if (place.owner == "Position") text = "Callin error getting underlying stream position: 5 - ";
  if (text.empty() && !place.owner.empty() && place.owner != "ShouldStopDecomposition") {
    text = "Callin error calling method '" + place.owner + "': 5 - ";
  }
  const std::string message = text + step;
  return {message.begin(), message.end()};
}

/// True when the failing callback belongs to the Skip that ends the stream's life, whose failure nobody hears of.
bool IsSwallowed(const std::vector<std::string>& calls, const Place& place) {
  if (place.owner != "Skip") return false;
  std::size_t last_skip = 0;
  for (std::size_t i = 0; i < calls.size(); ++i) {
    if (calls[i].find("\"Skip\"") != std::string::npos) last_skip = i;
  }
  for (std::size_t i = last_skip; i < calls.size(); ++i) {
    if (calls[i].find("\"Peek\"") != std::string::npos) return false;
  }
  return true;
}

/// Fails the nth callback of the scenario. @return  false when the scenario makes fewer
bool TryFault(const Scenario& scenario, std::uint64_t n, bool from_then_on) {
  Host host;
  host.Record(true);
  host.faults().FailNth(n, kStatus, from_then_on);
  const ListResult result = scenario.call(host);
  EXPECT_EQ(result.returned, 0);
  if (host.faults().Hits() == 0) {
    EXPECT_EQ(result.status, 0);
    return false;
  }
  const Place place = PlaceOfFirstFailure(host.Calls());
  if (result.status == 0) {
    EXPECT_TRUE(IsSwallowed(host.Calls(), place)) << "succeeded although callback " << n << " failed";
  } else {
    EXPECT_EQ(result.message, ExpectedMessage(place)) << "callback " << n;
  }
  return true;
}

TEST(FaultInjection, NamesThePlaceOfEveryFailureAndTheNextCallWorks) {
  int faults = 0;
  for (const Scenario& scenario : Scenarios()) {
    SCOPED_TRACE(scenario.name);
    for (const bool from_then_on : {false, true}) {
      for (std::uint64_t n = 1; TryFault(scenario, n, from_then_on); ++n) {
        ++faults;
        Host host;
        ASSERT_EQ(scenario.call(host).status, 0) << "after callback " << n << " had failed";
        ASSERT_EQ(host.StackDepth(), 0U);
      }
    }
  }
  RecordProperty("faults", faults);
  std::printf("%d faults tried\n", faults);
  EXPECT_GT(faults, 500);
}

}  // namespace
}  // namespace emulator
