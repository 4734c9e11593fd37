// References: what a parser accepts it also accepts when it is written out in tags, and makes the same list of it.

#include <array>
#include <optional>

#include "emulator/host.h"
#include "emulator/tag_text.h"
#include "fuzz/library.h"
#include "fuzz/target.h"

namespace fuzz {
namespace {

std::optional<std::vector<emulator::ListValue>> Parse(const char* parser, const std::string& reference) {
  emulator::Host host;
  const emulator::ListResult result =
      TheLibrary().CallList(parser, emulator::ListBuilder().String(reference));
  if (!result.Succeeded()) {
    Require(MessageOf(result).find(" at offset ") != std::string::npos, "a refusal without its offset");
    return std::nullopt;
  }
  Require(result.values.size() == 1, "another answer than one list");
  return emulator::ReadList(result.values[0].data);
}

/// Tags and item numbers in turn, as the reference has them.
std::string WrittenOut(const std::vector<emulator::ListValue>& list) {
  std::string reference;
  for (std::size_t i = 0; i < list.size(); ++i) {
    const std::int64_t entry = emulator::AsInteger(list[i].value);
    if (i % 2 == 1) {
      reference += entry == 0 ? "[]" : "[" + std::to_string(entry) + "]";
    } else {
      reference += (i == 0 ? "" : ".") + emulator::DisplayTag(static_cast<std::uint32_t>(entry));
    }
  }
  return reference;
}

bool AreEqual(const std::vector<emulator::ListValue>& left, const std::vector<emulator::ListValue>& right) {
  if (left.size() != right.size()) return false;
  for (std::size_t i = 0; i < left.size(); ++i) {
    if (left[i].type != right[i].type || left[i].data != right[i].data) return false;
  }
  return true;
}

}  // namespace

void RunInput(FuzzInput input) {
  const bool is_subscript = input.Choice(2) == 1;
  const char* const parser = is_subscript ? "zfParsePropertySubscriptReference" : "zfParsePropertyReference";
  constexpr std::size_t kLongest = 16000;
  const auto list = Parse(parser, input.Rest().substr(0, kLongest));
  if (!list) return;
  Require(list->size() % 2 == (is_subscript ? 0U : 1U), "a list of the other kind's length");
  const std::string written_out = WrittenOut(*list);
  if (written_out.size() > kLongest) return;
  const auto again = Parse(parser, written_out);
  Require(again.has_value(), "an accepted reference is refused when it is written out");
  Require(AreEqual(*list, *again), "the same reference makes another list");
}

}  // namespace fuzz
