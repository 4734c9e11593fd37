// What is decomposed, stored, composed and decomposed again is the same data set.

#include <memory>

#include "emulator/content_events.h"
#include "emulator/host.h"
#include "emulator/store/data_set_comparison.h"
#include "emulator/store/data_sets.h"
#include "emulator/store/memory_store.h"
#include "emulator/store/storing_sink.h"
#include "emulator/tag_text.h"
#include "emulator/transfer_syntax.h"
#include "fuzz/content_events.h"
#include "fuzz/decomposition.h"
#include "fuzz/library.h"
#include "fuzz/target.h"

namespace fuzz {
namespace {

const std::string kId = "1.2.3";

/// Element (0028,0100) has to be one number of VR US, or nothing is composed.
bool HasSoundBitsAllocated(const std::deque<Event>& events) {
  for (const Event& event : events) {
    if (event.kind != EventKind::kStartElement || event.tag != emulator::kBitsAllocated) continue;
    if (event.text != "US" || event.number != 2) return false;
  }
  return true;
}

/// A VR that begins with a zero byte is none: the dictionary's is written in its place, if it has one.
bool HasVrs(const std::deque<Event>& events) {
  for (const Event& event : events) {
    if (event.kind == EventKind::kStartElement && event.text.empty()) return false;
  }
  return true;
}

/// Native pixel data that begin like fragments are written like fragments, whatever they are.
bool LooksFramed(emulator::StoreTransaction& transaction, const emulator::StoredFacts& facts) {
  if (facts.pixels.empty() || facts.has_framed_pixels) return false;
  const auto stream = transaction.OpenPixels(facts.pixels);
  const std::string start =
      emulator::AsBytes(stream->Call("Peek", std::array<emulator::Value, 1>{std::int64_t{4}}));
  return start == std::string("\xFE\xFF\x00\xE0", 4);
}

std::string Composed(emulator::StoreTransaction& transaction, const emulator::StoredFacts& facts,
                     const char* syntax) {
  emulator::Host host(transaction.Nodes());
  const auto output = std::make_shared<emulator::MemoryStream>();
  const std::uint32_t pixels = facts.pixels.empty() ? 0 : host.Add(transaction.OpenPixels(facts.pixels));
  const emulator::ListResult result =
      TheLibrary().CallList("zfComposeStream", emulator::ListBuilder()
                                                   .Integer(host.Add(output))
                                                   .String(kId)
                                                   .String(syntax)
                                                   .String(facts.transfer_syntax)
                                                   .Integer(pixels));
  if (!result.Succeeded()) static_cast<void>(std::fprintf(stderr, "%s\n", MessageOf(result).c_str()));
  Require(result.Succeeded(), "what was stored cannot be composed");
  Require(host.StackDepth() == 0, "composing left something on the host's stack");
  return output->Bytes();
}

/// From implicit VR to either form; an explicit one stays, for other VRs than the dictionary's would be lost.
const char* TargetOf(const char* source, bool same_form) {
  const bool goes_over = emulator::HasImplicitVr(source) && !same_form;
  return goes_over ? emulator::kExplicitLittleEndian : source;
}

}  // namespace

void RunInput(FuzzInput input) {
  const char* const syntax = SyntaxFor(input.Choice(kSupportedSyntaxes));
  const char* const target = TargetOf(syntax, input.Choice(2) == 0);
  const std::string bytes = input.Rest();

  EventRecord record;
  if (!Decompose(bytes, syntax, record).result.Succeeded()) return;
  if (!HasVrs(record.Events()) || !HasSoundBitsAllocated(record.Events())) return;

  emulator::MemoryStore store;
  const auto transaction = store.Begin(emulator::Access::kWrite);
  emulator::StoringSink sink(*transaction, kId);
  if (!Decompose(bytes, syntax, sink).result.Succeeded()) return;  // the store has no place for it
  const auto facts = emulator::FindDataSet(*transaction->Nodes(), kId);
  Require(facts.has_value(), "a data set that was stored is not there");
  if (facts->has_nested_frames || LooksFramed(*transaction, *facts)) return;

  emulator::DataSetOutline source;
  Decompose(bytes, syntax, source);
  emulator::DataSetOutline written;
  const Decomposition again = Decompose(Composed(*transaction, *facts, target), target, written);
  Require(again.result.Succeeded(), "what was composed cannot be decomposed");
  const auto difference = emulator::FirstDifference(source, written);
  if (difference) static_cast<void>(std::fprintf(stderr, "%s\n", difference->c_str()));
  Require(!difference, "what was composed is another data set");
}

}  // namespace fuzz
