// What was deflated is inflated to the same bytes, by zlib and by the library.

#include <memory>

#include "emulator/host.h"
#include "emulator/stream_object.h"
#include "fuzz/library.h"
#include "fuzz/target.h"
#include "fuzz/zlib_oracle.h"

void fuzz::RunInput(FuzzInput input) {
  const std::int32_t level = static_cast<std::int32_t>(input.Choice(13)) - 2;  // zlib knows -1 to 9
  const std::size_t at_most = input.Byte();
  const std::string plain = input.Rest();

  emulator::Host host;
  const auto source = std::make_shared<emulator::MemoryStream>(plain);
  if (at_most > 0) source->HandOutAtMost(static_cast<std::int64_t>(at_most + plain.size() / 64));
  const auto packed = std::make_shared<emulator::MemoryStream>();
  const auto back = std::make_shared<emulator::MemoryStream>();
  const auto source_oref = static_cast<std::int32_t>(host.Add(source));
  const auto packed_oref = static_cast<std::int32_t>(host.Add(packed));
  const auto back_oref = static_cast<std::int32_t>(host.Add(back));

  const std::int32_t returned = TheLibrary().Call("zfDeflateStream", level, source_oref, packed_oref);
  Require(returned == (level < -1 || level > 9 ? -1 : 0), "a level that zlib does not know, or knows");
  if (returned != 0) return;
  Require(InflatedByZlib(packed->Bytes(), plain.size()) == plain, "zlib inflates something else");
  Require(TheLibrary().Call("zfInflateStream", packed_oref, back_oref, 0) == 0, "its own work is refused");
  Require(back->Bytes() == plain, "something else comes back");
  Require(host.StackDepth() == 0, "something is left on the host's stack");
}
