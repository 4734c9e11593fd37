#pragma once

#include "emulator/callable_ref.h"
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
      if (host->is_watched_ || !host->faults_.Empty()) [[unlikely]] {
        return PassWithCare(*host, operation, CallableRef<Machine>(work), CallableRef<Callback>(describe));
      }
      host->machine_->Scribble();
      work(*host->machine_);
      return 0;
    } catch (...) {
      return Refuse(*host);
    }
  }

  /// Whether anybody is told of the callback at hand.
  static bool IsWatched() noexcept {
    const Host* const host = Host::Current();
    return host != nullptr && host->is_watched_;
  }

  /// Whether the answer at hand is to be that lie.
  static bool Lies(Lie lie) {
    return !Host::Current()->faults_.Empty() && Host::Current()->faults_.Lies(lie);
  }

 private:
  /// When somebody watches, or a fault is planned.
  static int PassWithCare(Host& host, Operation operation, CallableRef<Machine> work,
                          CallableRef<Callback> describe) noexcept;
  static int Watched(Host& host, Operation operation, CallableRef<Machine> work,
                     CallableRef<Callback> describe);
  static int Answer(Host& host, Operation operation, CallableRef<Machine> work) noexcept;
  static int Refuse(Host& host) noexcept;
};

}  // namespace emulator
