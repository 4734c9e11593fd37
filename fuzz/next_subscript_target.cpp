// The next item of a sequence is the one that a decomposition tells of.

#include <memory>

#include "emulator/host.h"
#include "fuzz/asked_path.h"
#include "fuzz/asked_stream.h"
#include "fuzz/content_events.h"
#include "fuzz/decomposition.h"
#include "fuzz/library.h"
#include "fuzz/query_model.h"
#include "fuzz/target.h"

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

  emulator::Host host;
  emulator::ListBuilder arguments;
  arguments.Integer(host.Add(std::make_shared<AskedStream>(bytes, endless)));
  arguments.String(syntax).List(PropertyList(path));
  const emulator::ListResult result = TheLibrary().CallList("zfGetNextSubscript", arguments);

  if (expected.kind == Answer::Kind::kOpen) {
    Require(!result.Succeeded(), "a success although the answer cannot be known");
    return;
  }
  if (endless && !result.Succeeded()) return;  // the answer stood at the end, where the stream fails
  Require(result.Succeeded() && result.values.size() == 1, "no answer although there is one");
  const std::string number = expected.kind == Answer::Kind::kFound ? expected.value : "0";
  Require(emulator::AsBytes(result.values[0].value) == number, "another item than the next one");
}
