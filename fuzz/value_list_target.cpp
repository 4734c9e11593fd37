// Value lists: the library reads what the stand-in host's own reader reads, and refuses what it refuses.

#include <algorithm>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "emulator/list.h"
#include "fuzz/target.h"
#include "host/vessa_list.h"

namespace fuzz {
namespace {

/// An item as the library reads it, in all ways that there are.
struct Reading {
  std::string text;
  std::int32_t number;
  std::int64_t number64;
};

/// Every item in turn and by its index. Nothing when the library refuses the list.
std::optional<std::vector<Reading>> LibraryReads(vessa::VessaROList list) {
  std::vector<Reading> readings;
  try {
    const std::uint64_t count = list.Count();
    for (std::uint64_t i = count; i-- > 0;) list.Seek(i);
    for (std::uint64_t i = 0; i < count; ++i) {
      list.Seek(i);
      list.GetSublist();
      readings.push_back({list.GetString(), list.GetInt(), list.GetInt64()});
    }
    list.Seek(count);
  } catch (const std::invalid_argument&) {
    return std::nullopt;
  }
  return readings;
}

std::int32_t Saturated(std::int64_t number) {
  constexpr std::int64_t kLeast = std::numeric_limits<std::int32_t>::min();
  constexpr std::int64_t kGreatest = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::clamp(number, kLeast, kGreatest));
}

/// The least number has a text of its own: kept, hosts have always met it.
std::string TextOf(std::int64_t number) {
  return number == std::numeric_limits<std::int64_t>::min() ? "LONG64_MI" : std::to_string(number);
}

/// Strings and integers, which both sides must take for the same. Numbers with a point have rules of their own.
void RequireSameReading(const emulator::ListValue& item, const Reading& reading) {
  if (const auto* const text = std::get_if<std::string>(&item.value)) {
    Require(reading.text == *text, "the library reads another text");
  }
  if (const auto* const number = std::get_if<std::int64_t>(&item.value)) {
    Require(reading.number64 == *number, "the library reads another number");
    Require(reading.number == Saturated(*number), "the library reads another number of 32 bits");
    Require(reading.text == TextOf(*number), "the library reads another text for a number");
  }
}

bool IsWritten(const emulator::Value& value) {
  const auto* const number = std::get_if<std::int64_t>(&value);
  if (number != nullptr) return *number >= std::numeric_limits<std::int32_t>::min();
  return std::holds_alternative<std::string>(value) || std::holds_alternative<std::u16string>(value);
}

void Write(const emulator::Value& value, vessa::VessaList& list) {
  const auto* const number = std::get_if<std::int64_t>(&value);
  if (const auto* const text = std::get_if<std::string>(&value)) list.AppendString(*text);
  if (const auto* const text = std::get_if<std::u16string>(&value)) list.AppendWString(*text);
  if (number != nullptr && *number >= 0) list.AppendInt64(*number);
  if (number != nullptr && *number < 0) list.AppendInt(static_cast<std::int32_t>(*number));
}

/// What the library writes the host reads as it was.
void RequireSameCopy(const std::vector<emulator::ListValue>& items) {
  vessa::VessaList copy;
  std::vector<emulator::Value> written;
  for (const emulator::ListValue& item : items) {
    if (!IsWritten(item.value)) continue;
    Write(item.value, copy);
    written.push_back(item.value);
  }
  const auto bytes = copy.Bytes();
  const auto read = emulator::ReadList({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
  const auto is_same = [](const emulator::ListValue& one, const emulator::Value& other) {
    return one.value == other;
  };
  Require(std::equal(read.begin(), read.end(), written.begin(), written.end(), is_same),
          "the host reads other than was written");
}

}  // namespace

void RunInput(FuzzInput input) {
  const std::string bytes = input.Rest();
  // Of exactly that size, so that a read behind it shows.
  const std::vector<std::uint8_t> exact(bytes.begin(), bytes.end());
  const vessa::VessaROList list{std::span<const std::uint8_t>(exact)};

  std::optional<std::vector<emulator::ListValue>> host_reads;
  try {
    host_reads = emulator::ReadList(bytes);
  } catch (const std::invalid_argument&) {
    host_reads = std::nullopt;
  }
  try {
    const auto library_reads = LibraryReads(list);
    Require(library_reads.has_value() == host_reads.has_value(), "one reads what the other refuses");
    if (!host_reads) return;
    Require(library_reads->size() == host_reads->size(), "one reads more items than the other");
    for (std::size_t i = 0; i < host_reads->size(); ++i)
      RequireSameReading((*host_reads)[i], (*library_reads)[i]);
  } catch (const std::out_of_range&) {
    return;  // numbers beyond 64 bits, where the host goes over to doubles
  } catch (const std::overflow_error&) {
    return;
  }
  RequireSameCopy(*host_reads);
}

}  // namespace fuzz
