#include "tests/callouts/watched_call.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string_view>

#include "emulator/platform/supervised_process.h"
#include "tests/callouts/loaded_library.h"

namespace emulator {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kSilence{1000};
constexpr std::chrono::seconds kLongest{60};

/// What the process that calls tells the one that watches it. All zeros at first.
struct Record {
  std::array<char, 256> test;  ///< in which the call was made
  std::uint32_t is_calling;    ///< 1 from the call on
  std::uint32_t has_returned;
  std::uint64_t filled;  ///< of the lines
  std::array<char, 1U << 16U> lines;

  void Add(std::string_view line) {
    const std::uint64_t at = filled;
    if (at + line.size() + 1 > lines.size()) std::abort();  // too long a call for such a record
    std::copy(line.begin(), line.end(), lines.begin() + static_cast<std::ptrdiff_t>(at));
    lines[at + line.size()] = '\n';
    std::atomic_ref(filled).store(at + line.size() + 1, std::memory_order_release);
  }
};

std::string CurrentTest() {
  const testing::TestInfo* const test = testing::UnitTest::GetInstance()->current_test_info();
  return std::string(test->test_suite_name()) + "." + test->name();
}

int Make(const std::function<void(Host&)>& call, Record& record) {
  const std::string test = CurrentTest();
  std::copy_n(test.begin(), std::min(test.size(), record.test.size() - 1), record.test.begin());
  Host host;
  host.Observe([&record](const Callback& callback) { record.Add(CallbackLine(callback)); });
  std::atomic_ref(record.is_calling).store(1, std::memory_order_release);
  call(host);
  record.has_returned = 1;
  return EXIT_SUCCESS;
}

/// Tells when the call has been silent, or the process there, for too long.
class Patience {
 public:
  explicit Patience(Record& record) : record_{record} {}

  bool IsOver() {
    const auto now = Clock::now();
    const std::uint64_t filled = std::atomic_ref(record_.filled).load(std::memory_order_acquire);
    const bool calling = std::atomic_ref(record_.is_calling).load(std::memory_order_acquire) != 0;
    if (filled != last_filled_ || !calling) {
      last_filled_ = filled;
      silent_since_ = now;
    }
    return now - silent_since_ > kSilence || now - start_ > kLongest;
  }

 private:
  Record& record_;
  std::uint64_t last_filled_ = 0;
  Clock::time_point start_ = Clock::now();
  Clock::time_point silent_since_ = start_;
};

std::vector<std::string> LinesOf(const Record& record) {
  std::istringstream in(std::string(record.lines.data(), record.filled));
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

/// The text between the first two quotation marks.
std::string Quoted(const std::string& line) {
  const std::size_t start = line.find('"') + 1;
  return line.substr(start, line.find('"', start) - start);
}

}  // namespace

std::vector<std::string> WatchedCall::Names() const {
  std::vector<std::string> names;
  for (const std::string& line : callbacks) {
    if (!line.starts_with("PushMethod ") && !line.starts_with("PushProperty ")) continue;
    names.push_back(Quoted(line));
  }
  return names;
}

std::vector<std::string> WatchedCall::MethodsOf(std::uint32_t oref) const {
  const std::string start = "PushMethod " + std::to_string(oref) + " ";
  std::vector<std::string> methods;
  bool is_of_that_object = false;
  for (const std::string& line : callbacks) {
    if (line.starts_with("PushMethod ")) {
      is_of_that_object = line.starts_with(start);
      if (is_of_that_object) methods.push_back(Quoted(line));
    } else if (is_of_that_object && line.starts_with("Push")) {
      methods.back() += line.substr(line.find(' '));
    }
  }
  return methods;
}

WatchedCall Watch(const std::function<void(Host&)>& call) {
  TheLibrary();
  StartAgainWith(CurrentTest());
  SupervisedProcess process(sizeof(Record));
  Record& record = *static_cast<Record*>(process.SharedBlock());
  Patience patience(record);
  const ProcessEnd end =
      process.Run([&] { return Make(call, record); }, [&patience] { return patience.IsOver(); });
  EXPECT_NE(end.kind, ProcessEnd::Kind::kCrashed) << end.crash_reason;
  EXPECT_EQ(record.is_calling, 1U);
  EXPECT_EQ(record.test.data(), CurrentTest());
  EXPECT_EQ(record.has_returned == 1, end.kind == ProcessEnd::Kind::kExited);
  return {record.has_returned == 1, LinesOf(record)};
}

}  // namespace emulator
