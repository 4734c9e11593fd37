#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <istream>
#include <optional>
#include <string>
#include <vector>

#include "emulator/callback.h"
#include "emulator/handed_out_text.h"
#include "emulator/library.h"
#include "emulator/long_strings.h"
#include "emulator/recording_reader.h"
#include "host/binary_interface.h"

namespace emulator {

/// Where a library did something else than the recording says.
struct ReplayDifference {
  std::uint64_t line = 0;  ///< of the recording
  std::string call;        ///< the call-out that was at work
  std::string recorded;    ///< the line
  std::string made;        ///< what it would have to be
};

/// A host that has no values, objects or globals: it makes the calls of a recording and answers each callback as the
/// recording does, as long as the library calls back as it did then. From the first difference on every callback
/// fails, so that the call ends.
///
/// One at a time; a library it plays to is loaded with its table.
class ReplayHost {
 public:
  /// @param recording  see RecordingWriter; is read as far as the calls have come
  /// @throws RecordingError
  explicit ReplayHost(std::istream& recording);
  ~ReplayHost();
  ReplayHost(const ReplayHost&) = delete;
  ReplayHost& operator=(const ReplayHost&) = delete;

  static const vessa::HostServices* Table();

  /// Told at each callback.
  void OnCallback(std::function<void()> passage) { passage_ = std::move(passage); }

  /// Makes the recorded calls up to the first difference.
  /// @throws RecordingError  a line that is none of a recording
  std::optional<ReplayDifference> Play(const Library& library);

  std::uint64_t Calls() const { return calls_; }
  std::uint64_t Callbacks() const { return callbacks_; }

 private:
  friend class ReplayGate;

  void MakeCall();
  void Make(const RecordedCall& call);
  const RecordedAnswer& AnswerTo(const Callback& question);
  void MakeCallsInside(Operation operation);
  void CompareLine(const std::string& made);
  void Differ(std::string made);
  [[noreturn]] void ThrowUnreadable() const;

  RecordingReader reader_;
  const Library* library_ = nullptr;
  std::function<void()> passage_;
  std::string call_name_;
  int nesting_ = 0;
  std::uint64_t calls_ = 0;
  std::uint64_t callbacks_ = 0;
  std::optional<ReplayDifference> difference_;
  std::exception_ptr error_;
  RecordedAnswer answer_;
  HandedOutText<std::string> bytes_;
  HandedOutText<std::vector<std::uint16_t>> units_;
  LongStrings areas_;
};

}  // namespace emulator
