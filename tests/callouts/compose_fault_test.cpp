#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

#include "tests/callouts/fault_run.h"
#include "tests/callouts/scenarios.h"

namespace emulator {
namespace {

using fault_run::Access;
using fault_run::CleanRun;
using fault_run::kFaultStatus;
using fault_run::kFaultWords;
using fault_run::kSwallowed;
using fault_run::RunWithoutFaults;

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
