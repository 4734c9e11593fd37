// The input's first bytes drive the host, the rest is the stream. Peeks are short, empty or too long, callbacks fail
// or lie, the client stops, and events fail, move or remove the stream, or call into the library again. Whatever
// comes of it: an answer in the prescribed form, and a next call that works.

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "emulator/client.h"
#include "emulator/host.h"
#include "emulator/host_error.h"
#include "emulator/tag_text.h"
#include "emulator/transfer_syntax.h"
#include "fuzz/bounded_stream.h"
#include "fuzz/decomposition.h"
#include "fuzz/library.h"
#include "fuzz/target.h"

namespace fuzz {
namespace {

using emulator::HostError;
using emulator::Value;

/// A stream that may not end inside of an item of defined length, where the library would peek for ever: as long as
/// such an item is open, the peek that finds nothing fails.
class HostileStream : public emulator::MemoryStream {
 public:
  explicit HostileStream(std::string bytes) : MemoryStream(std::move(bytes)) {}

  Value Call(std::string_view method, std::span<const Value> arguments) override {
    Value answer = MemoryStream::Call(method, arguments);
    if (method == "Peek" && answer == Value(std::string())) {
      if (open_items > 0) throw HostError{emulator::kReadError};
      has_shown_its_end = true;
    }
    return answer;
  }

  int open_items = 0;  ///< of defined length; a query's stream, of which no events are heard, begins with 1
  bool has_shown_its_end = false;
};

enum class Action { kNone, kTagInfo, kDecomposition, kMove, kRemove, kLongText, kFailure, kWideText };
constexpr std::size_t kActions = 8;

class HostileHandler : public emulator::Object {
 public:
  HostileHandler(emulator::Host& host, std::shared_ptr<HostileStream> stream, std::size_t acts_at,
                 Action action)
      : host_{host}, stream_{std::move(stream)}, acts_at_{acts_at}, action_{action} {}

  Value Call(std::string_view method, std::span<const Value> arguments) override {
    FollowItems(method, arguments);
    return ++events_ == acts_at_ ? Act() : Value(std::string());
  }

 private:
  void FollowItems(std::string_view method, std::span<const Value> arguments) {
    if (method != "StartItem" && method != "EndItem") return;
    const auto length = static_cast<std::uint32_t>(emulator::AsInteger(arguments[1]));
    const bool is_fragment = static_cast<std::uint32_t>(emulator::AsInteger(arguments[0])) == emulator::kItem;
    if (is_fragment || length == emulator::kUndefinedLength || length == 0) return;
    stream_->open_items += method == "StartItem" ? 1 : -1;
    if (method == "StartItem" && stream_->has_shown_its_end) throw HostError{emulator::kReadError};
  }

  Value Act() {
    switch (action_) {
      case Action::kNone:
        break;
      case Action::kTagInfo:
        Require(TheLibrary().CallList("zfTagInfo", emulator::ListBuilder().Integer(0x00100010)).Succeeded(),
                "a call inside of an event fails");
        break;
      case Action::kDecomposition:
        RequireTheNextCallWorks();
        break;
      case Action::kMove:
        stream_->MoveTo(stream_->Position() % 3 == 0 ? 1 : stream_->Position() + 7);
        break;
      case Action::kRemove:
        host_.Remove(1);
        break;
      case Action::kLongText:
        return std::string(40000, 'x');
      case Action::kFailure:
        throw HostError{5};
      case Action::kWideText:
        return std::u16string(100, u'\u4E2D');
    }
    return std::string();
  }

  emulator::Host& host_;
  std::shared_ptr<HostileStream> stream_;
  std::size_t acts_at_;
  Action action_;
  std::size_t events_ = 0;
};

/// Callbacks that fail or lie, as the next three bytes say.
void PlanFaults(FuzzInput& input, emulator::FaultPlan& faults) {
  constexpr std::array kLies = {emulator::Lie::kNegativeLength, emulator::Lie::kNoBytes,
                                emulator::Lie::kCountAboveCapacity};
  const std::size_t n = input.Byte();
  const std::size_t status = input.Byte();
  const std::size_t flags = input.Byte();
  if (n == 0) return;
  if ((flags & 1U) != 0) {
    faults.LieNth(kLies[flags / 2 % kLies.size()], n);
  } else {
    faults.FailNth(n, status == 0 ? -1 : static_cast<int>(status), (flags & 2U) != 0);
  }
}

/// How the stream misbehaves, as the next two bytes say.
void PlanPeeks(FuzzInput& input, emulator::StreamObject& stream) {
  const std::size_t most = input.Byte();
  const std::size_t n = input.Byte();
  if (most > 0)
    stream.HandOutAtMost(static_cast<std::int64_t>(most + static_cast<std::size_t>(stream.ByteCount()) / 64));
  if (n % 4 == 1) stream.EmptyPeekAt(n / 4);
  if (n % 4 == 2) stream.EmptyReadAt(n / 4);
  if (n % 4 == 3) stream.PeekBeyond(static_cast<std::int64_t>(n) * 50);
}

std::uint32_t AddClient(FuzzInput& input, emulator::Host& host) {
  const std::uint32_t choice = input.Byte();
  if (choice == 0) return 0;
  const auto stops = [choice](std::uint32_t tag) { return (tag ^ tag >> 16U) % choice == 0; };
  const auto client = std::make_shared<emulator::StopAtTag>(stops);
  if (choice % 5 == 0) client->FailAt(choice / 5, 5);
  return host.Add(client);
}

/// The objects of one call, by their references.
struct Objects {
  std::uint32_t stream;
  std::uint32_t handler;
  std::uint32_t client;
  std::uint32_t output;
};

/// Composes a data set of Pixel Data alone, which are taken from the stream.
emulator::ListResult ComposePixels(emulator::Host& host, const char* syntax, const Objects& objects) {
  constexpr std::int64_t kNode = 1;
  const Value id = std::string("ID");
  const auto set = [&](std::vector<Value> subscripts, const Value& value) {
    subscripts.insert(subscripts.begin(), id);
    host.globals().Set("KevDICOM.Data", subscripts, value);
  };
  set({std::int64_t{0}, std::string("c"), std::int64_t{0}, std::int64_t{0x7FE00010}}, kNode);
  set({kNode, std::string("v")}, std::string("OW"));
  if (objects.client != 0) set({kNode, std::string("l")}, kNode);  // of undefined length
  return TheLibrary().CallList("zfComposeStream", emulator::ListBuilder()
                                                      .Integer(objects.output)
                                                      .String("ID")
                                                      .String(syntax)
                                                      .String(emulator::kExplicitBigEndian)
                                                      .Integer(objects.stream));
}

/// One of the call-outs that read a data set and answer with a list.
emulator::ListResult CallForList(std::size_t call, const char* syntax, std::size_t item,
                                 const Objects& objects) {
  emulator::ListBuilder arguments;
  arguments.Integer(objects.stream).String(syntax);
  const auto sequence = emulator::ListBuilder().Integer(0x0040A730).Integer(static_cast<std::int64_t>(item));
  switch (call) {
    case 0:
      return TheLibrary().CallList("zfDecomposeStream",
                                   arguments.Integer(objects.handler).Integer(objects.client));
    case 1:
      return TheLibrary().CallList("zfQueryStream",
                                   arguments.List(emulator::ListBuilder(sequence).Integer(0x00080100)));
    default:
      return TheLibrary().CallList("zfGetNextSubscript", arguments.List(sequence));
  }
}

void RequirePrescribedList(const emulator::ListResult& result) {
  Require(result.returned == 0 && (result.status == 0 || result.status == 1), "no prescribed answer");
  Require(result.status == 0 || result.values.size() == 1, "a failure without its one message");
}

void RequirePrescribedNumber(bool inflates, const Objects& objects) {
  const auto in = static_cast<std::int32_t>(objects.stream);
  const auto out = static_cast<std::int32_t>(objects.output);
  const std::int32_t returned = inflates ? TheLibrary().Call("zfInflateStream", in, out, 0)
                                         : TheLibrary().Call("zfDeflateStream", 6, in, out);
  Require(returned == 0 || returned == -1, "an answer other than 0 and -1");
}

constexpr std::size_t kReadingCalls = 3;
constexpr std::size_t kPackingCalls = 2;
constexpr std::size_t kCalls = kReadingCalls + kPackingCalls + 1;

/// One call with a host as the eight bytes of the plan say.
void RunCall(std::size_t call, const char* syntax, FuzzInput plan, std::string bytes) {
  emulator::Host host;
  const auto stream = std::make_shared<HostileStream>(std::move(bytes));
  Objects objects{};
  objects.stream = host.Add(stream);
  PlanFaults(plan, host.faults());
  PlanPeeks(plan, *stream);
  objects.client = AddClient(plan, host);
  const std::size_t acts_at = plan.Byte();
  const auto action = static_cast<Action>(plan.Choice(kActions));
  objects.handler = host.Add(std::make_shared<HostileHandler>(host, stream, acts_at, action));
  objects.output = host.Add(std::make_shared<BoundedStream>(100000));

  if (call < kReadingCalls) {
    stream->open_items = call == 0 ? 0 : 1;
    RequirePrescribedList(CallForList(call, syntax, acts_at % 3, objects));
  } else if (call < kReadingCalls + kPackingCalls) {
    RequirePrescribedNumber(call == kReadingCalls, objects);
  } else {
    RequirePrescribedList(ComposePixels(host, syntax, objects));
  }
}

}  // namespace

void RunInput(FuzzInput input) {
  const char* const syntax = SyntaxFor(input.Choice(kSupportedSyntaxes));
  const std::size_t call = input.Choice(kCalls);
  const FuzzInput plan = input;
  for (int i = 0; i < 8; ++i) input.Byte();
  RunCall(call, syntax, plan, input.Rest());
  RequireTheNextCallWorks();
}

}  // namespace fuzz
