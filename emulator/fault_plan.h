#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/operation.h"

namespace emulator {

/// Answers with which a broken host would mislead the library, with status 0.
enum class Lie {
  kNegativeLength,      ///< PopString, PopWideString: length -1
  kNoBytes,             ///< PopString, PopWideString: a length above 0 and a null pointer
  kCountAboveCapacity,  ///< ConvertResult to a counted string: 65535 in its count
};

/// Which of the uses of something are meant, counted from 1: `first`, every `step`th behind it, none behind `last`.
struct Occasions {
  std::uint64_t first = 1;
  std::uint64_t last = std::numeric_limits<std::uint64_t>::max();
  std::uint64_t step = 1;

  bool Hold(std::uint64_t n) const { return n >= first && n <= last && (n - first) % step == 0; }
};

/// Which callbacks are to fail, and with what. Every rule counts from 1 and from when it was given.
class FaultPlan {
 public:
  /// These uses of one operation, or these InvokeMethods of a method of that name, answer `status`.
  void Fail(Operation operation, const Occasions& occasions, int status);
  void FailMethod(std::string_view method, const Occasions& occasions, int status);

  /// The nth callback of any kind answers `status`, and all behind it when `from_then_on`.
  void FailNth(std::uint64_t n, int status, bool from_then_on = false);

  /// The nth use of one operation. An operation that answers with an area answers null.
  void FailNth(Operation operation, std::uint64_t n, int status, bool from_then_on = false);

  /// The nth InvokeMethod of a method of that name.
  void FailNthMethod(std::string_view method, std::uint64_t n, int status, bool from_then_on = false);

  /// The nth answer that can hold that lie.
  void LieNth(Lie lie, std::uint64_t n);

  /// Forgets all rules.
  void Clear();

  /// Callbacks that the plan has failed or made lie.
  std::uint64_t Hits() const { return hits_; }

  // --- asked by the host, once a callback ---

  bool Empty() const { return is_empty_; }
  /// Status that the callback has to answer; 0: none. `method` is the method that InvokeMethod is about to
  /// call.
  int StatusFor(Operation operation, std::string_view method);
  bool Lies(Lie lie);

 private:
  struct Rule {
    std::optional<Operation> operation;
    std::optional<std::string> method;
    Occasions occasions;
    int status = 0;
    std::uint64_t seen = 0;
  };
  struct PlannedLie {
    Lie lie = Lie::kNegativeLength;
    std::uint64_t n = 1;
    std::uint64_t seen = 0;
  };

  void Add(const Rule& rule);

  bool is_empty_ = true;  // of rules and lies: asked once a callback
  std::vector<Rule> rules_;
  std::vector<PlannedLie> lies_;
  std::uint64_t hits_ = 0;
};

}  // namespace emulator
