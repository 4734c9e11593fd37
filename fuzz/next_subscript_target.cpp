// The next item of a sequence is the one that a decomposition tells of.

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

struct NextItem {
  emulator::ListResult result;
  std::size_t consumed;  ///< bytes that the host's stream stands behind
};

NextItem Ask(const std::string& bytes, const char* syntax, const Path& path, bool fails_at_end) {
  emulator::Host host;
  const auto stream = std::make_shared<AskedStream>(bytes, fails_at_end);
  emulator::ListBuilder arguments;
  arguments.Integer(host.Add(stream)).String(syntax).List(PropertyList(path));
  emulator::ListResult result = TheLibrary().CallList("zfGetNextSubscript", arguments);
  return {std::move(result), static_cast<std::size_t>(stream->Position() - 1)};
}

bool Answers(const emulator::ListResult& result, const std::string& number) {
  return result.Succeeded() && result.values.size() == 1 &&
         emulator::AsBytes(result.values[0].value) == number;
}

}  // namespace
}  // namespace fuzz

void fuzz::RunInput(FuzzInput input) {
  const char* const syntax = SyntaxFor(input.Choice(kSupportedSyntaxes));
  FuzzInput path_choice = input;
  input.Number32();
  const std::string bytes = input.Rest();

  EventRecord record;
  const bool endless = Decompose(bytes, syntax, record).would_never_return;
  Path path = ChoosePath(path_choice, record.Events());
  const std::uint32_t item = path_choice.Number16() & 0xFFU;
  if (path.size() % 2 == 0) path.pop_back();
  if (path.size() > 1 && item > 7)
    path.pop_back();  // the item that holds the value; else one of the value's own
  if (path.size() % 2 == 1) path.push_back(item);
  const Answer expected = ExpectedNextItem(record.Events(), path);

  const auto [result, consumed] = Ask(bytes, syntax, path, endless);

  if (expected.kind == Answer::Kind::kOpen) {
    Require(!result.Succeeded(), "a success although the answer cannot be known");
    return;
  }
  if (endless && !result.Succeeded()) return;  // the answer stood at the end, where the stream fails
  const bool is_found = expected.kind == Answer::Kind::kFound;
  const std::string number = is_found ? expected.value : "0";
  Require(Answers(result, number), "another item than the next one");
  if (!is_found) return;
  // Up to there the item is there, and with a byte less it is not.
  Require(Answers(Ask(bytes.substr(0, consumed), syntax, path, false).result, number),
          "the host's stream stands before the item");
  Require(!Answers(Ask(bytes.substr(0, consumed - 1), syntax, path, false).result, number),
          "the host's stream stands behind the item's start");
}
