// Inflating gives what zlib gives, and fails where zlib does.

#include <memory>

#include "emulator/host.h"
#include "fuzz/bounded_stream.h"
#include "fuzz/library.h"
#include "fuzz/target.h"
#include "fuzz/zlib_oracle.h"

namespace {

constexpr std::int64_t kMostBytes = 300000;

}  // namespace

void fuzz::RunInput(FuzzInput input) {
  const std::size_t at_most = input.Byte();
  const std::string packed = input.Rest();
  const auto expected = InflatedByZlib(packed, kMostBytes);

  emulator::Host host;
  const auto source = std::make_shared<emulator::MemoryStream>(packed);
  if (at_most > 0) source->HandOutAtMost(static_cast<std::int64_t>(at_most + packed.size() / 64));
  const auto output = std::make_shared<BoundedStream>(kMostBytes);
  const auto in = static_cast<std::int32_t>(host.Add(source));
  const auto out = static_cast<std::int32_t>(host.Add(output));
  const std::int32_t returned = TheLibrary().Call("zfInflateStream", in, out, 0);

  Require(returned == 0 || returned == -1, "an answer other than 0 and -1");
  Require(returned == -1 || host.StackDepth() == 0, "something is left on the host's stack");
  if (output->IsFull()) return;
  Require((returned == 0) == expected.has_value(), "zlib is of another opinion");
  if (expected) Require(output->Bytes() == *expected, "zlib makes something else of it");
}
