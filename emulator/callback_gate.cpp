#include "emulator/callback_gate.h"

#include <chrono>
#include <new>

namespace emulator {
namespace {

/// What the exception at hand is answered with.
int CurrentStatus() noexcept {
  try {
    throw;
  } catch (const HostError& error) {
    return error.code == 0 ? kFailure : error.code;
  } catch (const std::bad_alloc&) {
    return kOutOfStore;
  } catch (...) {
    return kFailure;
  }
}

}  // namespace

int CallbackGate::Refuse(Host& host) noexcept {
  host.machine_->Stack().NoteFailure();
  return CurrentStatus();
}

int CallbackGate::PassWithCare(Host& host, Operation operation, CallableRef<Machine> work,
                               CallableRef<Callback> describe) noexcept {
  try {
    return IsWatched() ? Watched(host, operation, work, describe) : Answer(host, operation, work);
  } catch (const std::bad_alloc&) {
    return kOutOfStore;
  } catch (...) {  // of those who watch
    return kFailure;
  }
}

int CallbackGate::Watched(Host& host, Operation operation, CallableRef<Machine> work,
                          CallableRef<Callback> describe) {
  const std::size_t line = host.calls_.size();
  const bool recording = host.recording_;
  if (recording) host.calls_.emplace_back();  // its place, before those of callbacks made inside it
  Callback callback;
  callback.operation = operation;
  const auto start = std::chrono::steady_clock::now();
  callback.status = Answer(host, operation, work);
  callback.took = std::chrono::steady_clock::now() - start;
  describe(callback);
  if (recording && line < host.calls_.size()) host.calls_[line] = CallbackLine(callback);
  if (host.observer_) host.observer_(callback);
  return callback.status;
}

int CallbackGate::Answer(Host& host, Operation operation, CallableRef<Machine> work) noexcept {
  try {
    host.machine_->Scribble();
    const int planned =
        host.faults_.Empty() ? 0 : host.faults_.StatusFor(operation, host.machine_->MethodBegun());
    if (planned != 0) throw HostError{planned};
    work(*host.machine_);
    return 0;
  } catch (...) {
    return Refuse(host);
  }
}

}  // namespace emulator
