#pragma once

// A second process for work that may crash or never end. It shares one block of memory with the first, which
// so learns how far the work came, and which can end it at any time.

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace emulator {

/// How a supervised process ended.
struct ProcessEnd {
  enum class Kind { kExited, kCrashed, kStopped };
  Kind kind = Kind::kExited;
  int exit_code = 0;         ///< of kExited
  std::string crash_reason;  ///< of kCrashed: the signal's name, or that of the system's exception
};

class SupervisedProcess {
 public:
  /// Makes the shared block, all zeros. Throws std::system_error when the system has none left.
  explicit SupervisedProcess(std::size_t shared_bytes);
  ~SupervisedProcess();
  SupervisedProcess(const SupervisedProcess&) = delete;
  SupervisedProcess& operator=(const SupervisedProcess&) = delete;

  /// The block, at the same place for its whole life. Valid after the process has ended, too.
  void* SharedBlock() const;

  /// Runs `body` in the second process, whose exit code is what it returns; asks `should_stop` in this
  /// process about every 20 milliseconds and ends the other when it says so. The second process dies with
  /// this one.
  ///
  /// Where a process cannot be split in two, the program is started again with kSupervisedFlag among its
  /// arguments. It is expected to come to this very call again, which there runs `body` and does not return.
  ProcessEnd Run(const std::function<int()>& body, const std::function<bool()>& should_stop);

  /// Comes first among the arguments of a program that was started again, with a value; a program that uses
  /// this class must accept the option and may ignore it.
  static constexpr const char* kSupervisedFlag = "--supervised";

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace emulator
