#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/object.h"

namespace emulator {

/// A content handler object. It keeps one line an event, tags as 8 upper-case hexadecimal digits, other
/// numbers in decimal, data in upper-case hexadecimal:
///
///     StartContent 1.2.840.10008.1.2.1      StartSequence
///     StartElement 00100010 PN 8            StartItem 00081140 4294967295
///     Data 00100010 1 446F655E4A6F686E      EndItem 00081140 4294967295
///     EndElement 00100010                   EndSequence
///     EndContent
///
/// Data without bytes: "Data 00100010 1". Text goes into the line byte by byte, as it is.
class EventLog : public Object {
 public:
  Value Call(std::string_view method, std::span<const Value> arguments) override;

  const std::vector<std::string>& Lines() const { return lines_; }
  void Clear();

  /// Keeps no lines, only counts: for long runs. On at first.
  void KeepLines(bool on) { keep_lines_ = on; }
  /// Events so far.
  std::uint64_t Count() const { return count_; }

  /// What an event of that name returns from now on; an empty text otherwise.
  void Return(std::string_view event, Value value);

  /// The nth event from now on, counted from 1, fails with that status, after it was logged.
  void FailAt(std::uint64_t n, int status);

  /// Called at each event, after it was logged, with its name and arguments. It may call into the library.
  void OnEvent(std::function<void(std::string_view event, std::span<const Value> arguments)> action);

 private:
  std::vector<std::string> lines_;
  std::map<std::string, Value, std::less<>> results_;
  std::function<void(std::string_view, std::span<const Value>)> action_;
  std::uint64_t count_ = 0;
  std::uint64_t fail_at_ = 0;
  int fail_status_ = 0;
  bool keep_lines_ = true;
};

}  // namespace emulator
