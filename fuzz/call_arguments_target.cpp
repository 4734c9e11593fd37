// Any bytes as the arguments of any call-out: it answers with a list of its own, or as its kind does.

#include <memory>

#include "emulator/client.h"
#include "emulator/event_log.h"
#include "emulator/host.h"
#include "emulator/stream_object.h"
#include "fuzz/bounded_stream.h"
#include "fuzz/library.h"
#include "fuzz/target.h"

namespace fuzz {
namespace {

/// References 1 to 4: a stream, a handler, a client and an output. The bytes of the stream are one sound element.
void AddObjects(emulator::Host& host) {
  host.Add(
      std::make_shared<emulator::MemoryStream>(std::string("\x10\x00\x10\x00PN\x02\x00"
                                                           "AB",
                                                           10)));
  host.Add(std::make_shared<emulator::EventLog>());
  host.Add(std::make_shared<emulator::StopAtTag>(0x00200000));
  host.Add(std::make_shared<BoundedStream>(100000));
}

void CallWithText(const vessa::CallOutRow& row, const std::string& bytes) {
  vessa::HostString buffer;
  emulator::Fill(buffer, bytes);
  const std::int32_t returned = row.entry.buffer(&buffer);
  Require(returned == 0 || returned == 1, "an answer other than 0 and 1");
  Require(buffer.count <= vessa::HostString::kCapacity, "a count above the capacity");
}

void CallWithInteger(const vessa::CallOutRow& row, std::int32_t number, const std::string& bytes) {
  vessa::HostString buffer;
  emulator::Fill(buffer, bytes);
  const std::int32_t returned = row.entry.buffer_and_integer(&buffer, number);
  Require(returned == 0 || returned == 1, "an answer other than 0 and 1");
  Require(buffer.count == bytes.size(), "another count than before");
}

void CallWithList(const vessa::CallOutRow& row, const std::string& bytes) {
  const emulator::ListResult result = TheLibrary().CallList(row.name, emulator::ListBuilder().Raw(bytes));
  Require(result.returned == 0, "a call returned other than 0");
  Require(result.status == 0 || result.status == 1, "a status other than 0 and 1");
  Require(result.status == 0 || result.values.size() == 1, "a failure without its one message");
}

}  // namespace

void RunInput(FuzzInput input) {
  constexpr std::size_t kRows = 15;
  const vessa::CallOutRow& row = TheLibrary().Table()[input.Choice(kRows)];
  const std::string types = row.argument_types;
  const auto number = static_cast<std::int32_t>(types == "Bi" ? input.Number32() : 0);
  const std::string bytes = input.Rest().substr(0, vessa::HostString::kCapacity);

  emulator::Host host;
  AddObjects(host);
  // The placeholder leaves its buffer as it is: no list to be read.
  const bool has_list = types == "Bz" && std::string_view(row.name) != "zfPLACEHOLDER";
  if (types == "B") CallWithText(row, bytes);
  if (types == "Bi") CallWithInteger(row, number, bytes);
  if (has_list) CallWithList(row, bytes);
}

}  // namespace fuzz
