#include "fuzz/library.h"

#include <memory>
#include <vector>

#include "emulator/event_log.h"
#include "emulator/host.h"
#include "emulator/stream_object.h"
#include "emulator/transfer_syntax.h"
#include "fuzz/target.h"

namespace fuzz {

const emulator::Library& TheLibrary() {
  static const emulator::Library library = emulator::Library::Load(VESSA_LIBRARY_PATH);
  return library;
}

std::string MessageOf(const emulator::ListResult& result) {
  return {result.message.begin(), result.message.end()};
}

void RequireTheNextCallWorks() {
  static const std::vector<std::string> expected = {
      std::string("StartContent ") + emulator::kExplicitLittleEndian, "StartElement 00100010 PN 2",
      "Data 00100010 1 4142", "EndElement 00100010", "EndContent"};
  emulator::Host host;
  const auto log = std::make_shared<emulator::EventLog>();
  const auto stream =
      std::make_shared<emulator::MemoryStream>(std::string("\x10\x00\x10\x00PN\x02\x00"
                                                           "AB",
                                                           10));
  const emulator::ListResult result =
      TheLibrary().CallList("zfDecomposeStream", emulator::ListBuilder()
                                                     .Integer(host.Add(stream))
                                                     .String(emulator::kExplicitLittleEndian)
                                                     .Integer(host.Add(log))
                                                     .Integer(0));
  Require(result.Succeeded(), "the next call fails");
  Require(log->Lines() == expected, "the next call tells other events");
  Require(host.StackDepth() == 0, "the next call leaves something on the host's stack");
}

}  // namespace fuzz
