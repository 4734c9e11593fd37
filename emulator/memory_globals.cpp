#include "emulator/memory_globals.h"

#include <iterator>

namespace emulator {

void MemoryGlobals::Put(std::string_view key, std::string_view value) {
  nodes_.insert_or_assign(std::string(key), std::string(value));
}

std::optional<Globals::Entry> MemoryGlobals::Find(std::string_view key) const {
  const auto found = nodes_.find(key);
  if (found == nodes_.end()) return std::nullopt;
  return Entry{found->first, found->second};
}

std::optional<Globals::Entry> MemoryGlobals::FirstNotBefore(std::string_view key) const {
  const auto found = nodes_.lower_bound(key);
  if (found == nodes_.end()) return std::nullopt;
  return Entry{found->first, found->second};
}

std::optional<Globals::Entry> MemoryGlobals::LastBefore(std::string_view key) const {
  const auto behind = nodes_.lower_bound(key);
  if (behind == nodes_.begin()) return std::nullopt;
  const auto found = std::prev(behind);
  return Entry{found->first, found->second};
}

void MemoryGlobals::Erase(std::string_view first, std::string_view behind) {
  nodes_.erase(nodes_.lower_bound(first), nodes_.lower_bound(behind));
}

}  // namespace emulator
