#include "fuzz/decomposition.h"

#include <array>
#include <memory>

#include "emulator/content_events.h"
#include "emulator/host.h"
#include "emulator/host_error.h"
#include "emulator/stream_object.h"
#include "emulator/transfer_syntax.h"
#include "fuzz/library.h"
#include "fuzz/stream_account.h"
#include "fuzz/target.h"

namespace fuzz {
namespace {

constexpr int kAbandoned = 77;
constexpr std::size_t kLongestHeader = 12;  // of an element (PS3.5 section 7.1.2)

/// A content handler. At the end of a stream that leaves the library peeking it fails, which is the host's one way to
/// be rid of such a call: behind this event no callback would come any more.
class Handler : public emulator::Object {
 public:
  Handler(StreamAccount& account, emulator::ContentSink& sink) : account_{account}, sink_{sink} {}

  emulator::Value Call(std::string_view method, std::span<const emulator::Value> arguments) override {
    emulator::DispatchEvent(method, arguments, account_);
    emulator::DispatchEvent(method, arguments, sink_);
    if (account_.PeeksForEver()) {
      abandoned_at_ = method;
      throw emulator::HostError{kAbandoned};
    }
    return std::string();
  }

  /// The event with which the call was abandoned; empty when it was not.
  const std::string& AbandonedAt() const { return abandoned_at_; }

 private:
  StreamAccount& account_;
  emulator::ContentSink& sink_;
  std::string abandoned_at_;
};

void RequireSoundOutcome(const emulator::ListResult& result, const std::string& abandoned_at) {
  Require(result.returned == 0, "a call returned other than 0");
  if (result.Succeeded()) {
    Require(abandoned_at.empty(), "a call succeeded although an event failed");
    return;
  }
  const std::string message = MessageOf(result);
  Require(message.ends_with(" decomposing stream"), "a failure without its stage");
  if (abandoned_at.empty()) return;
  Require(message == "Callin error calling method '" + abandoned_at + "': 77 -  decomposing stream",
          "the failure of an event is not the call's");
}

}  // namespace

const char* SyntaxFor(std::size_t choice) {
  static constexpr std::array<const char*, kSyntaxes> kChoices = {
      emulator::kExplicitLittleEndian, emulator::kImplicitLittleEndian, "1.2.840.10008.1.2.4.50",
      emulator::kExplicitBigEndian};
  return kChoices[choice % kSyntaxes];
}

Decomposition Decompose(const std::string& bytes, const char* transfer_syntax, emulator::ContentSink& sink,
                        std::int64_t hand_out_at_most) {
  emulator::Host host;
  StreamAccount account(bytes);
  const auto stream = std::make_shared<emulator::MemoryStream>(bytes);
  stream->HandOutAtMost(hand_out_at_most);
  const auto handler = std::make_shared<Handler>(account, sink);
  Decomposition outcome;
  outcome.result = TheLibrary().CallList("zfDecomposeStream", emulator::ListBuilder()
                                                                  .Integer(host.Add(stream))
                                                                  .String(transfer_syntax)
                                                                  .Integer(host.Add(handler))
                                                                  .Integer(0));
  RequireSoundOutcome(outcome.result, handler->AbandonedAt());
  outcome.would_never_return = !handler->AbandonedAt().empty();
  const auto consumed = static_cast<std::size_t>(stream->Position() - 1);
  Require(consumed >= account.Position(), "the host's stream stands before what the events told of");
  // Behind that come a header at most, or all the bytes of what the end of the stream has cut.
  Require(consumed == bytes.size() || consumed - account.Position() <= kLongestHeader,
          "the host's stream stands behind what was read");
  if (outcome.result.Succeeded()) {
    Require(account.IsClosed(), "a success with something still open");
    Require(account.Position() == bytes.size(), "a success that did not tell of every byte");
    Require(consumed == bytes.size(), "a success that left the host's stream before its end");
    Require(host.StackDepth() == 0, "a success that left something on the host's stack");
  }
  return outcome;
}

}  // namespace fuzz
