#include "emulator/replay_host.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <utility>

#include "emulator/host_error.h"
#include "emulator/recording_writer.h"
#include "emulator/replay_gate.h"

namespace emulator {
namespace {

constexpr int kDeepestNesting = 64;
constexpr const char* kEnd = "end";
constexpr const char* kPastTheEnd = "(the recording ends here)";

ReplayHost*& CurrentReplay() {
  static ReplayHost* current = nullptr;
  return current;
}

const RecordedAnswer& Failure() {
  static const RecordedAnswer failure{kFailure, true, {}, {}, false};
  return failure;
}

/// Whether the host can be at work, and make calls of its own, while it answers.
bool RunsHostCode(Operation operation) {
  return operation == Operation::kInvokeMethod || operation == Operation::kGetProperty;
}

/// The arguments of a call-out as a row of the table names them, without the difference between "Bz" and "B".
std::string_view Shape(std::string_view argument_types) {
  return argument_types == "B" ? "Bz" : argument_types;
}

std::string_view Shape(const RecordedCall& call) {
  if (call.content) return call.numbers.empty() ? "Bz" : "Bi";
  return call.numbers.empty() ? "coi" : "ioo";
}

std::int32_t MakeWith(const Library& library, const RecordedCall& call, vessa::HostString& buffer) {
  const std::vector<std::int32_t>& numbers = call.numbers;
  if (call.content) {
    return numbers.empty() ? library.Call(call.name, buffer)
                           : library.Call(call.name, buffer, numbers.front());
  }
  return numbers.empty() ? library.Call(call.name)
                         : library.Call(call.name, numbers.at(0), numbers.at(1), numbers.at(2));
}

void AssignBytes(const RecordedAnswer& answer, std::string& bytes) {
  bytes.resize(answer.units.size());
  std::transform(answer.units.begin(), answer.units.end(), bytes.begin(),
                 [](std::uint16_t unit) { return static_cast<char>(unit & 0xFFU); });
}

}  // namespace

ReplayHost::ReplayHost(std::istream& recording) : reader_(recording) { CurrentReplay() = this; }

ReplayHost::~ReplayHost() { CurrentReplay() = nullptr; }

std::optional<ReplayDifference> ReplayHost::Play(const Library& library) {
  library_ = &library;
  while (!difference_ && reader_.HasLine() && reader_.Line() != kEnd) {
    if (!reader_.Line().starts_with("call ")) ThrowUnreadable();
    MakeCall();
    areas_.Clear();
    if (error_) std::rethrow_exception(error_);
  }
  return difference_;
}

void ReplayHost::MakeCall() {
  const std::optional<RecordedCall> call = ReadCall(reader_.Line());
  if (!call || nesting_ == kDeepestNesting) ThrowUnreadable();
  const std::string outer = std::exchange(call_name_, call->name);
  ++nesting_;
  ++calls_;
  Make(*call);
  --nesting_;
  call_name_ = outer;
}

void ReplayHost::Make(const RecordedCall& call) {
  const vessa::CallOutRow* const row = library_->Find(call.name);
  if (row == nullptr || Shape(row->argument_types) != Shape(call)) {
    return Differ(row == nullptr ? "(the library has no such call-out)"
                                 : "(the call-out takes other arguments)");
  }
  reader_.Advance();
  const auto buffer = std::make_unique<vessa::HostString>();
  if (call.content) Fill(*buffer, *call.content);
  const std::int32_t returned = MakeWith(*library_, call, *buffer);
  CompareLine("return " + std::to_string(returned) + BufferText(call.content ? buffer.get() : nullptr));
}

const RecordedAnswer& ReplayHost::AnswerTo(const Callback& question) {
  if (passage_) passage_();
  if (difference_ || error_) return Failure();
  MakeCallsInside(question.operation);
  if (difference_) return Failure();
  const std::string made = CallbackQuestion(question, TextForm::kWhole);
  std::optional<RecordedAnswer> answer;
  const std::string_view line = reader_.Line();
  if (reader_.HasLine() && line.starts_with(made)) answer = ReadAnswer(line.substr(made.size()));
  if (!answer) {
    Differ(made);
    return Failure();
  }
  reader_.Advance();
  ++callbacks_;
  answer_ = *std::move(answer);
  return answer_;
}

// NOLINTNEXTLINE(misc-no-recursion): kDeepestNesting ends it
void ReplayHost::MakeCallsInside(Operation operation) {
  while (RunsHostCode(operation) && !difference_ && reader_.HasLine() &&
         reader_.Line().starts_with("call ")) {
    MakeCall();
  }
}

void ReplayHost::CompareLine(const std::string& made) {
  if (difference_ || error_) return;
  if (!reader_.HasLine() || reader_.Line() != made) return Differ(made);
  reader_.Advance();
}

void ReplayHost::Differ(std::string made) {
  const std::string recorded = reader_.HasLine() ? reader_.Line() : kPastTheEnd;
  difference_ = ReplayDifference{reader_.LineNumber(), call_name_, recorded, std::move(made)};
}

void ReplayHost::ThrowUnreadable() const {
  throw RecordingError("line " + std::to_string(reader_.LineNumber()) + ": no line of a recording");
}

// --- The way of a callback ---------------------------------------------------------------------------------------

const RecordedAnswer& ReplayGate::Ask(Operation operation, const Arguments& arguments) noexcept {
  ReplayHost* const host = CurrentReplay();
  if (host == nullptr) return Failure();
  host->bytes_.Scribble();
  host->units_.Scribble();
  Callback question;
  question.operation = operation;
  question.arguments = arguments;
  try {
    return host->AnswerTo(question);
  } catch (...) {
    host->error_ = std::current_exception();  // the library is at work, and must not meet it
    return Failure();
  }
}

std::string& ReplayGate::HandOutBytes(const RecordedAnswer& answer) {
  std::string& bytes = CurrentReplay()->bytes_.Place();
  AssignBytes(answer, bytes);
  return bytes;
}

std::vector<std::uint16_t>& ReplayGate::HandOutUnits(const RecordedAnswer& answer) {
  std::vector<std::uint16_t>& units = CurrentReplay()->units_.Place();
  units = answer.units;
  return units;
}

LongStrings& ReplayGate::Areas() { return CurrentReplay()->areas_; }

}  // namespace emulator
