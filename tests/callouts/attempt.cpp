#include "tests/callouts/attempt.h"

#include <algorithm>
#include <array>
#include <functional>
#include <sstream>

#include "emulator/event_log.h"
#include "emulator/stream_object.h"
#include "tests/support/dicom_bytes.h"

namespace emulator {
namespace {

template <class SomeObject>
std::vector<const SomeObject*> ObjectsOf(const Host& host) {
  std::vector<const SomeObject*> objects;
  for (std::uint32_t oref = 1; host.Find(oref) != nullptr; ++oref) {
    if (const auto* object = dynamic_cast<const SomeObject*>(host.Find(oref))) objects.push_back(object);
  }
  return objects;
}

bool SameValues(const ListResult& one, const ListResult& other) {
  return std::equal(
      one.values.begin(), one.values.end(), other.values.begin(), other.values.end(),
      [](const ListValue& a, const ListValue& b) { return a.type == b.type && a.data == b.data; });
}

/// A line of an event log, word by word.
class EventWords {
 public:
  explicit EventWords(const std::string& line) : words_{line} {}

  std::string Text() {
    std::string word;
    words_ >> word;
    return word;
  }
  std::int64_t Number() { return std::stoll(Text()); }

 private:
  std::istringstream words_;
};

/// What the events of one data set take of its bytes.
class ReadBytes {
 public:
  std::int64_t Of(const std::string& line) {
    EventWords words(line);
    const std::string event = words.Text();
    if (event == "StartContent") implicit_vrs_ = words.Text() == dicom_bytes::kImplicitLittleEndian;
    if (event == "StartElement") return OfElementHeader(words);
    if (event == "StartItem") return kTagAndLength;
    if (event == "StartSequence") open_.push_back(length_);
    if (event == "EndItem") return words.Text().empty() ? 0 : OfDelimitation(words.Number());
    if (event == "EndSequence") return OfDelimitation(Close());
    if (event == "Data") return OfValue(words);
    return 0;
  }

 private:
  static constexpr std::int64_t kTagAndLength = 8;
  static constexpr std::int64_t kLongHeader = 12;

  std::int64_t OfElementHeader(EventWords& words) {
    words.Text();
    const std::string vr = words.Text();
    length_ = words.Number();
    constexpr std::array<const char*, 7> kLongForms{"OX", "OB", "OW", "OF", "SQ", "UT", "UN"};
    const bool is_long = std::find(kLongForms.begin(), kLongForms.end(), vr) != kLongForms.end();
    return is_long && !implicit_vrs_ ? kLongHeader : kTagAndLength;
  }

  static std::int64_t OfValue(EventWords& words) {
    words.Text();
    words.Text();
    return static_cast<std::int64_t>(words.Text().size() / 2);
  }

  static std::int64_t OfDelimitation(std::int64_t length) {
    return length == dicom_bytes::kUndefined ? kTagAndLength : 0;
  }

  std::int64_t Close() {
    const std::int64_t length = open_.back();
    open_.pop_back();
    return length;
  }

  std::int64_t length_ = 0;  ///< of the element that began last
  std::vector<std::int64_t> open_;
  bool implicit_vrs_ = false;
};

}  // namespace

Attempt Try(const Scenario& scenario, Host& host, const Library& library) {
  Attempt attempt;
  attempt.result = scenario.call(host, library);
  attempt.message.assign(attempt.result.message.begin(), attempt.result.message.end());
  for (const EventLog* log : ObjectsOf<EventLog>(host)) {
    attempt.events.insert(attempt.events.end(), log->Lines().begin(), log->Lines().end());
  }
  for (const MemoryStream* stream : ObjectsOf<MemoryStream>(host)) {
    attempt.bytes.push_back(stream->Bytes());
    attempt.positions.push_back(stream->Position());
  }
  attempt.stack_depth = host.StackDepth();
  attempt.open_long_strings = host.OpenLongStrings();
  return attempt;
}

bool WentAlike(const Attempt& one, const Attempt& other) {
  return one.result.returned == other.result.returned && one.result.status == other.result.status &&
         SameValues(one.result, other.result) && one.events == other.events && one.bytes == other.bytes &&
         one.positions == other.positions && one.stack_depth == other.stack_depth &&
         one.open_long_strings == other.open_long_strings;
}

bool IsStartOf(const Attempt& start, const Attempt& whole) {
  const auto begins = [](const std::string& part, const std::string& all) { return all.starts_with(part); };
  return start.events.size() <= whole.events.size() &&
         std::equal(start.events.begin(), start.events.end(), whole.events.begin()) &&
         std::equal(start.bytes.begin(), start.bytes.end(), whole.bytes.begin(), whole.bytes.end(), begins);
}

Standing StandingOf(const Host& host) {
  Standing standing;
  standing.stack_depth = host.StackDepth();
  for (const EventLog* log : ObjectsOf<EventLog>(host)) standing.events += log->Count();
  for (const MemoryStream* stream : ObjectsOf<MemoryStream>(host)) {
    standing.byte_counts.push_back(stream->Bytes().size());
    standing.positions.push_back(stream->Position());
  }
  return standing;
}

std::int64_t BytesBehind(const std::vector<std::string>& events) {
  ReadBytes read;
  std::int64_t bytes = 0;
  for (const std::string& event : events) bytes += read.Of(event);
  return bytes;
}

}  // namespace emulator
