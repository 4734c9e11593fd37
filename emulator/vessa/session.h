#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "emulator/call_watcher.h"
#include "emulator/host.h"
#include "emulator/library.h"
#include "emulator/vessa/call_progress.h"
#include "emulator/vessa/exit_code.h"
#include "emulator/vessa/output.h"

namespace emulator::tool {

/// What every command is told on the command line.
struct Settings {
  static constexpr double kTimeoutSeconds = 10;
  std::string library_path;                  ///< in UTF-8
  double timeout_seconds = kTimeoutSeconds;  ///< 0 for no limit
  std::optional<bool> colour;
};

/// The library answered a call with a failure. The text is its message.
class LibraryFailure : public ToolError {
 public:
  explicit LibraryFailure(const std::string& message) : ToolError(kLibraryFailed, message) {}
};

/// A library in use by a host, in the process that runs a command. Each call is announced to the watching process.
class Session {
 public:
  Session(const Settings& settings, CallProgress& progress, OutputTurn turn = {});

  /// To be called before the first call. Throws ToolError (kInputUnreadable) when the library cannot be loaded.
  void LoadLibrary();

  const Settings& TheSettings() const { return settings_; }
  const Library& TheLibrary() const { return *library_; }
  CallProgress& Progress() { return progress_; }
  Output& Out() { return output_; }
  Host& TheHost() { return host_; }
  /// Has another host, which stands in for the session's, make the same faults and tell the same watcher.
  void Equip(Host& host);

  /// From now on `watcher` is told of every call and callback. It outlives the session's calls.
  void Watch(CallWatcher& watcher);

  /// A "Bz" call. Throws LibraryFailure when its result list says so.
  ListResult CallList(std::string_view name, const ListBuilder& arguments);
  /// A "B" call. Throws LibraryFailure when it returns anything but 0.
  void Call(std::string_view name, vessa::HostString& buffer);
  /// A "Bi" call; as above.
  void Call(std::string_view name, vessa::HostString& buffer, std::int32_t value);
  /// An "ioo" call; as above.
  void Call(std::string_view name, std::int32_t first, std::uint32_t second, std::uint32_t third);

 private:
  const Settings& settings_;
  CallProgress& progress_;
  Output output_;
  Host host_;
  std::optional<Library> library_;
  CallWatcher* watcher_ = nullptr;
};

}  // namespace emulator::tool
