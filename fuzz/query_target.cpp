// A query's answer is the value that a decomposition tells of, for a stream as for a file.

#include <filesystem>
#include <fstream>
#include <memory>
#include <utility>

#include "emulator/host.h"
#include "fuzz/asked_path.h"
#include "fuzz/asked_stream.h"
#include "fuzz/content_events.h"
#include "fuzz/decomposition.h"
#include "fuzz/library.h"
#include "fuzz/query_model.h"
#include "fuzz/target.h"

namespace fuzz {
namespace {

struct Question {
  Path path;
  bool sequence_answer;
  const char* syntax;
};

struct StreamAnswer {
  emulator::ListResult result;
  std::size_t consumed;  ///< bytes that the host's stream stands behind
};

StreamAnswer AskStream(const Question& question, const std::string& bytes, bool fails_at_end) {
  emulator::Host host;
  const auto stream = std::make_shared<AskedStream>(bytes, fails_at_end);
  emulator::ListBuilder arguments;
  arguments.Integer(host.Add(stream))
      .String(question.syntax)
      .List(PropertyList(question.path))
      .Integer(question.sequence_answer ? 1 : 0);
  emulator::ListResult result = TheLibrary().CallList("zfQueryStream", arguments);
  return {std::move(result), static_cast<std::size_t>(stream->Position() - 1)};
}

bool HasAnswer(const emulator::ListResult& result) { return result.Succeeded() && result.values.size() == 2; }

/// The stream stands behind the answer and no further: up to there it is there, and with a byte less it is not. Neither
/// end lies between two elements, where a peek could go on for ever: the last byte is one of a header or a value.
void RequirePositionBehindAnswer(const Question& question, const std::string& bytes, std::size_t consumed) {
  Require(HasAnswer(AskStream(question, bytes.substr(0, consumed), false).result),
          "the host's stream stands before the end of the answer");
  Require(!HasAnswer(AskStream(question, bytes.substr(0, consumed - 1), false).result),
          "the host's stream stands behind the answer");
}

emulator::ListResult AskFile(const Question& question, const std::string& bytes, bool with_header) {
  static const std::string name = (std::filesystem::temp_directory_path() / "fuzz_query.dcm").string();
  std::ofstream file(name, std::ios::binary | std::ios::trunc);
  if (with_header) file << std::string(128, '\0') << "DICM";
  file << bytes;
  file.close();
  emulator::Host host;
  emulator::ListBuilder arguments;
  arguments.Integer(with_header ? 1 : 0).String(name).String(question.syntax);
  arguments.List(PropertyList(question.path)).Integer(question.sequence_answer ? 1 : 0);
  return TheLibrary().CallList("zfQueryFileOrDataSet", arguments);
}

void RequireAnswer(const Answer& expected, const emulator::ListResult& result) {
  switch (expected.kind) {
    case Answer::Kind::kAbsent:
      Require(result.Succeeded() && result.values.empty(), "an answer although there is none");
      return;
    case Answer::Kind::kFound:
      Require(HasAnswer(result), "no answer although there is one");
      Require(result.values[0].data == expected.vr, "the answer has another VR");
      Require(result.values[1].data == expected.value, "the answer has another value");
      return;
    case Answer::Kind::kTooLong:
    case Answer::Kind::kOpen:
      Require(!result.Succeeded(), "a success although the answer cannot be known");
      return;
  }
}

}  // namespace

void RunInput(FuzzInput input) {
  Question question{};
  question.syntax = SyntaxFor(input.Choice(kSupportedSyntaxes));
  const std::size_t flags = input.Byte();
  question.sequence_answer = (flags & 1U) != 0;
  FuzzInput path_choice = input;
  input.Number16();
  const std::string bytes = input.Rest();

  EventRecord record;
  const Decomposition decomposition = Decompose(bytes, question.syntax, record);
  question.path = ChoosePath(path_choice, record.Events());
  const Answer expected = ExpectedAnswer(record.Events(), question.path, question.sequence_answer);

  const bool endless = decomposition.would_never_return;
  const auto [from_stream, consumed] = AskStream(question, bytes, endless);
  const bool is_known = !endless || expected.kind == Answer::Kind::kOpen || from_stream.Succeeded();
  if (is_known) RequireAnswer(expected, from_stream);
  if (HasAnswer(from_stream)) RequirePositionBehindAnswer(question, bytes, consumed);
  if (endless) return;  // a file gives the host no way to end the call
  RequireAnswer(expected, AskFile(question, bytes, (flags & 2U) != 0));
}

}  // namespace fuzz
