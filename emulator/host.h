#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "emulator/callback.h"
#include "emulator/fault_plan.h"
#include "emulator/globals.h"
#include "emulator/object.h"
#include "host/binary_interface.h"

namespace emulator {

class Machine;

/// A host for the library to call back into. The callbacks are plain functions, so one host at a time is the
/// current one: the newest. Hosts end in the reverse order of their making, all on one thread.
///
/// It is strict. It keeps a stack of what was pushed, of calls begun and of results, and refuses whatever
/// does not follow from that: see the codes in host_error.h. On a refusal, and on a failure by plan, nothing
/// is pushed and nothing popped; reading a node without a value is no refusal, and uses up its reference.
/// Wanted results stay on the stack until they are popped or converted.
class Host {
 public:
  /// With globals in memory.
  Host();
  explicit Host(std::shared_ptr<Globals> globals);
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  /// The current host; null when there is none. Every callback then answers -7, "not connected".
  static Host* Current() { return current_; }

  /// The callback table: the same for every host.
  static const vessa::HostServices* Table();

  // --- Objects ---

  /// The reference by which the library calls the object; from 1, never used again.
  std::uint32_t Add(std::shared_ptr<Object> object);
  void Remove(std::uint32_t oref);
  /// Null when there is none.
  Object* Find(std::uint32_t oref) const;
  std::shared_ptr<Object> Share(std::uint32_t oref) const;

  Globals& globals() { return *globals_; }  // NOLINT(readability-identifier-naming)  Globals names the type

  // --- What the library leaves behind ---

  /// Values pushed or left to be fetched, and calls begun, that nobody has consumed yet.
  std::size_t StackDepth() const;
  /// Areas of long strings that were handed out and not pushed yet.
  std::size_t OpenLongStrings() const;
  /// Forgets both, as a host does when a call-out has returned.
  void ResetStack();

  // --- Misbehaviour ---

  FaultPlan& faults() { return faults_; }  // NOLINT(readability-identifier-naming)  goes with globals

  /// On at first: text handed out by PopString and PopWideString is overwritten at the next callback, and its
  /// memory is another's, so that a library that keeps it reads what it must not.
  void ScribbleHandedOutBytes(bool on);

  // --- Observation; all of it off at first, and then free of cost ---

  /// One line a callback, see CallbackLine, in the order in which they began.
  void Record(bool on);
  const std::vector<std::string>& Calls() const { return calls_; }
  void ClearCalls() { calls_.clear(); }

  /// Told of every callback when it has been answered; a callback made inside a method comes before its
  /// InvokeMethod.
  void Observe(std::function<void(const Callback&)> observer);

  /// Callbacks since the host was made, failed ones included.
  std::uint64_t CallbackCount() const { return callback_count_; }

 private:
  friend class CallbackGate;

  static inline Host* current_ = nullptr;  // NOLINT(readability-identifier-naming)  members end so

  std::shared_ptr<Globals> globals_;
  std::unique_ptr<Machine> machine_;
  std::vector<std::shared_ptr<Object>> objects_;
  FaultPlan faults_;
  std::vector<std::string> calls_;
  std::function<void(const Callback&)> observer_;
  std::uint64_t callback_count_ = 0;
  bool recording_ = false;
  bool is_watched_ = false;  // recorded or observed: asked once a callback
  Host* previous_;
};

}  // namespace emulator
