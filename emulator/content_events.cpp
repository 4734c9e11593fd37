#include "emulator/content_events.h"

#include <array>

namespace emulator {
namespace {

using Arguments = std::span<const Value>;

/// One event: its method, how many arguments it takes, and what it does.
struct Event {
  std::string_view method;
  std::size_t arguments;
  void (*handle)(ContentSink& sink, Arguments arguments);
};

std::uint32_t Unsigned(const Value& value) { return static_cast<std::uint32_t>(AsInteger(value)); }

/// The bytes without a copy where they are bytes already, as chunks of values are.
std::string_view BytesOf(const Value& value, std::string& storage) {
  if (const auto* const bytes = std::get_if<std::string>(&value)) return *bytes;
  storage = AsBytes(value);
  return storage;
}

void StartContent(ContentSink& sink, Arguments arguments) { sink.StartContent(AsBytes(arguments[0])); }

void EndContent(ContentSink& sink, Arguments) { sink.EndContent(); }

void StartElement(ContentSink& sink, Arguments arguments) {
  std::string storage;
  sink.StartElement(Unsigned(arguments[0]), BytesOf(arguments[1], storage), Unsigned(arguments[2]));
}

void EndElement(ContentSink& sink, Arguments arguments) { sink.EndElement(Unsigned(arguments[0])); }

void Data(ContentSink& sink, Arguments arguments) {
  std::string storage;
  sink.Data(Unsigned(arguments[0]), Unsigned(arguments[1]), BytesOf(arguments[2], storage));
}

void StartSequence(ContentSink& sink, Arguments) { sink.StartSequence(); }

void EndSequence(ContentSink& sink, Arguments) { sink.EndSequence(); }

void StartItem(ContentSink& sink, Arguments arguments) {
  sink.StartItem(Unsigned(arguments[0]), Unsigned(arguments[1]));
}

void EndItem(ContentSink& sink, Arguments arguments) {
  sink.EndItem(Unsigned(arguments[0]), Unsigned(arguments[1]));
}

constexpr std::array kEvents = {
    Event{"StartElement", 3, StartElement}, Event{"Data", 3, Data},
    Event{"EndElement", 1, EndElement},     Event{"StartItem", 2, StartItem},
    Event{"EndItem", 2, EndItem},           Event{"StartSequence", 0, StartSequence},
    Event{"EndSequence", 0, EndSequence},   Event{"StartContent", 1, StartContent},
    Event{"EndContent", 0, EndContent},
};

}  // namespace

void DispatchEvent(std::string_view method, Arguments arguments, ContentSink& sink) {
  for (const Event& event : kEvents) {
    if (event.method != method) continue;
    if (event.arguments != arguments.size()) throw HostError{kWrongParameters};
    event.handle(sink, arguments);
    return;
  }
  throw HostError{kMethodMissing};
}

}  // namespace emulator
