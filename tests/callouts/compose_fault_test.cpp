#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "emulator/stream_object.h"
#include "tests/callouts/composing.h"
#include "tests/callouts/fault_run.h"

namespace emulator {
namespace {

using dicom_bytes::Hex;
using dicom_bytes::kExplicitLittleEndian;
using dicom_bytes::kImplicitLittleEndian;
using dicom_bytes::kJpegBaseline;
using fault_run::Access;
using fault_run::Attempt;
using fault_run::CleanRun;
using fault_run::kFaultStatus;
using fault_run::kFaultWords;
using fault_run::kSwallowed;
using fault_run::Scenario;

/// The failure text of each access of a composition.
class TextOfAccesses {
 public:
  std::string Next(const Access& access) {
    if (access.Name() == "KevDICOM.Debug") return " setting up content source";
    const std::string text = TextOf(access);
    return text.empty() ? " composing stream" : text + " -  composing stream";
  }

 private:
  std::string TextOf(const Access& access) {
    if (access.Begins("PushMethod") || access.Begins("PushProperty")) return StreamText(access.Name());
    const std::string operation = OperationOf(access);
    return operation.empty() ? "" : operation + ": Vessa' callin error: " + kFaultWords;
  }

  static std::string StreamText(const std::string& name) {
    const std::string number = std::to_string(kFaultStatus);
    if (name == "Peek") return "Callin error peeking bytes: " + number;
    if (name == "Skip") return "Callin error skipping bytes: " + number;
    if (name == "Position") return "Callin error getting underlying stream position: " + number;
    if (name == "Size") return "Callin error getting stream size: " + number;
    return "Callin error writing bytes: " + number;
  }

  /// The operation of the content source; none for those whose failures have no text.
  std::string OperationOf(const Access& access) {
    if (access.Pushes("v")) return last_walk_;
    if (access.Pushes("l") || access.Does("GlobalOrder 4 1 0")) return "";
    if (access.Pushes("d")) {
      // A value is read twice: for its length, and for its chunks.
      if (access.Does("GlobalGet")) counts_length_ = !counts_length_;
      return counts_length_ ? "GetDataLength" : "GetNextDataChunk";
    }
    last_walk_ = access.lines[2] == "PushInteger 0" ? "NextTagKey" : "NextSequenceTagKey";
    return last_walk_;
  }

  std::string last_walk_;
  bool counts_length_ = false;
};

/// What a fault at each callback must lead to; kSwallowed where the call goes on.
std::vector<std::string> ExpectedMessages(const CleanRun& run) {
  std::vector<std::string> messages;
  TextOfAccesses texts;
  std::size_t last_write = 0;
  for (const Access& access : run.accesses) {
    if (access.Begins("PushMethod") && access.Name() == "Write") last_write = messages.size();
    messages.insert(messages.end(), access.lines.size(), texts.Next(access));
  }
  std::fill(messages.begin() + static_cast<std::ptrdiff_t>(last_write), messages.end(), kSwallowed);
  return messages;
}

// --- Scenarios ---

struct Composition {
  std::string syntax = kExplicitLittleEndian;
  std::string original = kExplicitLittleEndian;
  std::string pixels;  ///< no stream where there are none
};

Scenario Compose(std::string name, Composition how, std::function<void(StoredDataSet&)> fill) {
  return {"zfComposeStream " + name, [how = std::move(how), fill = std::move(fill)](Host& host) {
            StoredDataSet data(host);
            fill(data);
            const auto output = std::make_shared<MemoryStream>();
            const std::uint32_t output_oref = host.Add(output);
            const std::uint32_t pixels =
                how.pixels.empty() ? std::uint32_t{0} : host.Add(std::make_shared<MemoryStream>(how.pixels));
            const ListResult result = TheLibrary().CallList("zfComposeStream", ListBuilder()
                                                                                   .Integer(output_oref)
                                                                                   .String(StoredDataSet::kId)
                                                                                   .String(how.syntax)
                                                                                   .String(how.original)
                                                                                   .Integer(pixels));
            EXPECT_EQ(result.returned, 0);
            return Attempt{result.status == 0, std::string(result.message.begin(), result.message.end()),
                           output->Bytes()};
          }};
}

void FillSequences(StoredDataSet& data) {
  data.TopSequence(0x00081140, 1);
  data.InItem(1, 1, 0x00081150, 2, "UI", "1.");
  data.SequenceInItem(1, 1, 0x00081199, 3);
  data.InItem(3, 1, 0x00081155, 4, "UI", "2.");
  data.EmptyItem(1, 2);
}

std::vector<Scenario> Compositions() {
  const std::string frames = Hex("FEFF00E0 00000000 FEFF00E0 04000000 01020304") + dicom_bytes::SequenceEnd();
  const auto pixels = [](const char* vr) {
    return [vr](StoredDataSet& data) { data.Top(0x7FE00010, 1, vr, ""); };
  };
  const auto element = [](StoredDataSet& data) { data.Top(0x00100010, 1, "PN", "Doe^John"); };
  return {
      Compose("one element", {}, element),
      Compose("implicit", {kImplicitLittleEndian, kExplicitLittleEndian, ""}, element),
      Compose("no VR", {}, [](StoredDataSet& data) { data.Top(0x00100010, 1, "", "Doe^John"); }),
      Compose("sequences", {}, FillSequences),
      Compose("swapped", {kImplicitLittleEndian, kExplicitBigEndian, ""},
              [](StoredDataSet& data) { data.Top(0x00280010, 1, "US", "abcd"); }),
      Compose("chunks", {},
              [](StoredDataSet& data) {
                data.Top(0x00100010, 1, "PN", std::string(9000, 'x'));
                data.Chunk(1, 1, std::string(8000, 'y'));
                data.Chunk(1, 2, "z");
              }),
      Compose("native pixels", {kExplicitLittleEndian, kExplicitLittleEndian, std::string(40000, 'p')},
              pixels("OW")),
      Compose("swapped pixels", {kImplicitLittleEndian, kExplicitBigEndian, std::string(9001, 'p')},
              pixels("OW")),
      Compose("framed pixels", {kJpegBaseline, kJpegBaseline, frames}, pixels("OB")),
      Compose("marked pixels", {kJpegBaseline, kJpegBaseline, "abcd"},
              [](StoredDataSet& data) {
                data.Top(0x7FE00010, 1, "OB", "");
                data.MarkUndefined(1);
              }),
      Compose("everything", {kImplicitLittleEndian, kExplicitBigEndian, std::string(40000, 'p')},
              [](StoredDataSet& data) {
                FillSequences(data);
                data.Top(0x00100010, 5, "", std::string(9000, 'x'));
                data.Chunk(5, 1, "yz");
                data.Top(0x00280100, 6, "US", Hex("0010"));
                data.Top(0x7FE00010, 7, "OW", "");
              }),
  };
}

TEST(ComposeFaults, NameTheOperationLeaveTheStartOfTheOutputAndTheNextCallWorks) {
  int faults = 0;
  for (const Scenario& scenario : Compositions()) {
    const CleanRun clean = RunWithoutFaults(scenario);
    faults += TryAllFaults(scenario, clean, ExpectedMessages(clean));
  }
  std::printf("%d faults tried\n", faults);
  EXPECT_GT(faults, 1500);
}

}  // namespace
}  // namespace emulator
