#pragma once

#include <chrono>
#include <new>

#include "emulator/host.h"
#include "emulator/machine.h"
#include "emulator/turn.h"

namespace emulator {

/// The way of every callback: counts it, lets the fault plan have its say, does its work, tells those who watch, and
/// lets no exception out.
class CallbackGate {
 public:
  /// `work(machine)` does it; `describe(callback)` sets its arguments and, after success, its result. The latter is
  /// called only when somebody watches.
  template <class Work, class Describe>
  static int Pass(Operation operation, const Work& work, const Describe& describe) noexcept {
    Host* const host = Host::Current();
    if (host == nullptr) return kNotConnected;
    const Turn turn(Turn::Of::kHost);
    ++host->callback_count_;
    try {
      if (!IsWatched()) return Answer(*host, operation, work);
      return Watched(*host, operation, work, describe);
    } catch (const std::bad_alloc&) {
      return kOutOfStore;
    } catch (...) {
      return kFailure;
    }
  }

  /// Whether anybody is told of the callback at hand.
  static bool IsWatched() noexcept {
    const Host* const host = Host::Current();
    return host != nullptr && (host->recording_ || host->observer_);
  }

  /// Whether the answer at hand is to be that lie.
  static bool Lies(Lie lie) {
    return !Host::Current()->faults_.Empty() && Host::Current()->faults_.Lies(lie);
  }

 private:
  template <class Work>
  static int Answer(Host& host, Operation operation, const Work& work) {
    host.machine_->Scribble();
    const int status = StatusOf(host, operation, work);
    if (status != 0) host.machine_->Stack().NoteFailure();
    return status;
  }

  template <class Work>
  static int StatusOf(Host& host, Operation operation, const Work& work) {
    try {
      if (const int planned = PlannedStatus(host, operation); planned != 0) return planned;
      work(*host.machine_);
      return 0;
    } catch (const HostError& error) {
      return error.code == 0 ? kFailure : error.code;
    } catch (const std::bad_alloc&) {
      return kOutOfStore;
    } catch (...) {
      return kFailure;
    }
  }

  static int PlannedStatus(Host& host, Operation operation) {
    if (host.faults_.Empty()) return 0;
    return host.faults_.StatusFor(operation, host.machine_->MethodBegun());
  }

  template <class Work, class Describe>
  static int Watched(Host& host, Operation operation, const Work& work, const Describe& describe) {
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
};

}  // namespace emulator
