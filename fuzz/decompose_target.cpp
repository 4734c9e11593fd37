// A data set in each syntax: the events stand for the bytes, and the same ones come however few bytes a peek gives.

#include "fuzz/content_events.h"
#include "fuzz/decomposition.h"
#include "fuzz/library.h"
#include "fuzz/target.h"

void fuzz::RunInput(FuzzInput input) {
  const char* const syntax = SyntaxFor(input.Choice(kSyntaxes));
  const std::size_t few = 4 + input.Byte();  // tags are looked at four bytes at once
  const std::string bytes = input.Rest();

  EventRecord at_once;
  const Decomposition first = Decompose(bytes, syntax, at_once);
  EventRecord by_and_by;
  const Decomposition second =
      Decompose(bytes, syntax, by_and_by, static_cast<std::int64_t>(few + bytes.size() / 64));
  Require(at_once.Events() == by_and_by.Events(), "events depend on what a peek gives");
  Require(first.result.message == second.result.message, "the failure depends on what a peek gives");
  if (!first.result.Succeeded()) RequireTheNextCallWorks();
}
