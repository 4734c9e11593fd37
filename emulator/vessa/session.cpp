#include "emulator/vessa/session.h"

#include <fmt/format.h>

#include "emulator/vessa/printable_text.h"

namespace emulator::tool {
namespace {

/// Tells the watching process that the library is at work. Calls may nest: an event of one may make another.
class CallScope {
 public:
  CallScope(CallProgress& progress, std::string_view name)
      : progress_(progress), outer_(progress.call_name.data()) {
    progress_.NameCall(name);
    progress_.EnterLibrary();
  }
  ~CallScope() {
    progress_.LeaveLibrary();
    progress_.NameCall(outer_);
  }
  CallScope(const CallScope&) = delete;
  CallScope& operator=(const CallScope&) = delete;

 private:
  CallProgress& progress_;
  std::string outer_;
};

void ThrowUnlessZero(std::string_view name, std::int32_t returned) {
  if (returned != 0) throw LibraryFailure(fmt::format("{} returned {}", name, returned));
}

/// Messages can hold bytes of the input.
std::string MessageText(const ListResult& result) { return PrintableUtf8(ToUtf8(result.message)); }

}  // namespace

Session::Session(const Settings& settings, CallProgress& progress, OutputTurn turn)
    : settings_(settings), progress_(progress), output_(progress, turn) {}

void Session::LoadLibrary() {
  try {
    library_.emplace(Library::Load(settings_.library_path));
  } catch (const std::runtime_error& error) {
    throw ToolError(kInputUnreadable, error.what());
  }
}

void Session::Watch(CallWatcher& watcher) {
  watcher_ = &watcher;
  library_->Watch(&watcher);
  Equip(host_);
}

void Session::Equip(Host& host) {
  if (&host != &host_) host.faults() = host_.faults();
  if (watcher_ == nullptr) return;
  host.Observe([watcher = watcher_](const Callback& callback) { watcher->OnCallback(callback); });
}

ListResult Session::CallList(std::string_view name, const ListBuilder& arguments) {
  ListResult result;
  try {
    const CallScope scope(progress_, name);
    result = library_->CallList(name, arguments);
  } catch (const std::invalid_argument& error) {
    throw LibraryFailure(fmt::format("{} left no result list: {}", name, error.what()));
  }
  host_.ResetStack();
  ThrowUnlessZero(name, result.returned);
  if (result.status != 0) throw LibraryFailure(MessageText(result));
  return result;
}

void Session::Call(std::string_view name, vessa::HostString& buffer) {
  const CallScope scope(progress_, name);
  ThrowUnlessZero(name, library_->Call(name, buffer));
}

void Session::Call(std::string_view name, vessa::HostString& buffer, std::int32_t value) {
  const CallScope scope(progress_, name);
  ThrowUnlessZero(name, library_->Call(name, buffer, value));
}

void Session::Call(std::string_view name, std::int32_t first, std::uint32_t second, std::uint32_t third) {
  const CallScope scope(progress_, name);
  const std::int32_t returned =
      library_->Call(name, first, static_cast<std::int32_t>(second), static_cast<std::int32_t>(third));
  host_.ResetStack();
  ThrowUnlessZero(name, returned);
}

}  // namespace emulator::tool
