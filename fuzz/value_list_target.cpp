// Value lists: the library reads what the stand-in host's own reader reads, and refuses what it refuses.

#include <optional>
#include <stdexcept>

#include "emulator/list.h"
#include "fuzz/target.h"
#include "host/vessa_list.h"

namespace fuzz {
namespace {

/// Every item in turn and by its index, by all the ways that there are to read one.
/// @return  the texts; nothing when the library refuses the list
std::optional<std::string> LibraryReads(vessa::VessaROList list) {
  std::string texts;
  try {
    const std::uint64_t count = list.Count();
    for (std::uint64_t i = count; i-- > 0;) list.Seek(i);
    for (std::uint64_t i = 0; i < count; ++i) {
      list.Seek(i);
      texts += list.GetString() + "\n";
      list.GetInt();
      list.GetInt64();
      list.GetSublist();
    }
    list.Seek(count);
  } catch (const std::invalid_argument&) {
    return std::nullopt;
  }
  return texts;
}

/// What both read in the same way: strings and integers.
std::string CopyOf(const std::vector<emulator::ListValue>& items) {
  vessa::VessaList copy;
  for (const emulator::ListValue& item : items) {
    const auto* const integer = std::get_if<std::int64_t>(&item.value);
    if (const auto* const text = std::get_if<std::string>(&item.value)) copy.AppendString(*text);
    if (const auto* const text = std::get_if<std::u16string>(&item.value)) copy.AppendWString(*text);
    if (integer != nullptr && *integer >= 0) copy.AppendInt64(*integer);
    if (integer != nullptr && *integer < 0) copy.AppendInt(static_cast<std::int32_t>(*integer));
  }
  const auto bytes = copy.Bytes();
  return {bytes.begin(), bytes.end()};
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
    Require(LibraryReads(list).has_value() == host_reads.has_value(), "one reads what the other refuses");
  } catch (const std::out_of_range&) {
    return;  // numbers beyond 64 bits, where the host goes over to doubles
  } catch (const std::overflow_error&) {
    return;
  }
  if (!host_reads) return;
  const std::string copy = CopyOf(*host_reads);
  Require(emulator::ReadList(copy).size() <= host_reads->size(), "the host reads more than was written");
}

}  // namespace fuzz
