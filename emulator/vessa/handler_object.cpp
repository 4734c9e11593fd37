#include "emulator/vessa/handler_object.h"

#include <array>

#include "emulator/vessa/host_time.h"

namespace emulator::tool {
namespace {

using Arguments = std::span<const Value>;

/// One event: its method, how many arguments it takes, and what it does.
struct Event {
  std::string_view method;
  std::size_t arguments;
  void (*handle)(ContentSink& sink, ElementPath& path, Arguments arguments);
};

std::uint32_t Unsigned(const Value& value) { return static_cast<std::uint32_t>(AsInteger(value)); }

/// The bytes without a copy where they are bytes already, as chunks of values are.
std::string_view BytesOf(const Value& value, std::string& storage) {
  if (const auto* const bytes = std::get_if<std::string>(&value)) return *bytes;
  storage = AsBytes(value);
  return storage;
}

void StartContent(ContentSink& sink, ElementPath& path, Arguments arguments) {
  path.Clear();
  sink.StartContent(AsBytes(arguments[0]));
}

void EndContent(ContentSink& sink, ElementPath&, Arguments) { sink.EndContent(); }

void StartElement(ContentSink& sink, ElementPath& path, Arguments arguments) {
  path.StartElement(Unsigned(arguments[0]));
  sink.StartElement(Unsigned(arguments[0]), AsBytes(arguments[1]), Unsigned(arguments[2]));
}

void EndElement(ContentSink& sink, ElementPath& path, Arguments arguments) {
  sink.EndElement(Unsigned(arguments[0]));
  path.EndElement();
}

void Data(ContentSink& sink, ElementPath&, Arguments arguments) {
  std::string storage;
  sink.Data(Unsigned(arguments[0]), Unsigned(arguments[1]), BytesOf(arguments[2], storage));
}

void StartSequence(ContentSink& sink, ElementPath&, Arguments) { sink.StartSequence(); }

void EndSequence(ContentSink& sink, ElementPath&, Arguments) { sink.EndSequence(); }

void StartItem(ContentSink& sink, ElementPath& path, Arguments arguments) {
  path.StartItem(Unsigned(arguments[1]));
  sink.StartItem(Unsigned(arguments[0]), Unsigned(arguments[1]));
}

void EndItem(ContentSink& sink, ElementPath& path, Arguments arguments) {
  sink.EndItem(Unsigned(arguments[0]), Unsigned(arguments[1]));
  path.EndItem();
}

constexpr std::array kEvents = {
    Event{"StartElement", 3, StartElement}, Event{"Data", 3, Data},
    Event{"EndElement", 1, EndElement},     Event{"StartItem", 2, StartItem},
    Event{"EndItem", 2, EndItem},           Event{"StartSequence", 0, StartSequence},
    Event{"EndSequence", 0, EndSequence},   Event{"StartContent", 1, StartContent},
    Event{"EndContent", 0, EndContent},
};

}  // namespace

Value HandlerObject::Call(std::string_view method, Arguments arguments) {
  const HostTime host_time(progress_);
  try {
    Dispatch(method, arguments);
  } catch (const HostError&) {
    throw;
  } catch (...) {
    error_ = std::current_exception();
    throw HostError{kWriteError};
  }
  return std::string();
}

void HandlerObject::Dispatch(std::string_view method, Arguments arguments) {
  for (const Event& event : kEvents) {
    if (event.method != method) continue;
    if (event.arguments != arguments.size()) throw HostError{kWrongParameters};
    event.handle(sink_, path_, arguments);
    return;
  }
  throw HostError{kMethodMissing};
}

void HandlerObject::RethrowError() const {
  if (error_) std::rethrow_exception(error_);
}

}  // namespace emulator::tool
