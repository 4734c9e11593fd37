#include "emulator/memory_globals.h"

#include <algorithm>
#include <iterator>

namespace emulator {
namespace {

constexpr std::size_t kMostNodesOfPage = 32;

}  // namespace

MemoryGlobals::MemoryGlobals() {
  pages_.try_emplace("");
  Forget();
}

void MemoryGlobals::Put(std::string_view key, std::string_view value) {
  const auto [found, place] = Seek(key);
  NodePage& page =
      pages_.erase(found, found)->second;  // erases nothing: the way to a page that may be changed
  if (place.is_taken) {
    page[place.index].value = value;
    return;
  }
  page.Insert(place.index, key, value);
  if (page.Size() <= kMostNodesOfPage) return;
  const std::size_t half = page.Size() / 2;
  const std::string least = page[half].key;
  pages_.try_emplace(least, page.SplitOff(half));
}

std::optional<Globals::Entry> MemoryGlobals::Find(std::string_view key) const {
  const auto& [page, place] = Seek(key);
  if (!place.is_taken) return std::nullopt;
  const NodePage::Node& node = page->second[place.index];
  return Entry{node.key, node.value};
}

std::optional<Globals::Entry> MemoryGlobals::FirstNotBefore(std::string_view key) const {
  const Position& position = Seek(key);
  auto page = position.page;
  std::size_t index = position.place.index;
  for (; index == page->second.Size(); index = 0) {
    if (++page == pages_.end()) return std::nullopt;
  }
  const NodePage::Node& node = page->second[index];
  return Entry{node.key, node.value};
}

std::optional<Globals::Entry> MemoryGlobals::LastBefore(std::string_view key) const {
  const Position& position = Seek(key);
  auto page = position.page;
  std::size_t index = position.place.index;
  for (; index == 0; index = page->second.Size()) {
    if (page == pages_.begin()) return std::nullopt;
    --page;
  }
  const NodePage::Node& node = page->second[index - 1];
  return Entry{node.key, node.value};
}

void MemoryGlobals::Erase(std::string_view first, std::string_view behind) {
  for (auto page = std::prev(pages_.upper_bound(first)); page != pages_.end() && page->first < behind;) {
    NodePage& nodes = page->second;
    nodes.Erase(nodes.Seek(first, 0).index, nodes.Seek(behind, nodes.Size()).index);
    page = nodes.IsEmpty() && page != pages_.begin() ? pages_.erase(page) : std::next(page);
  }
  Forget();
}

const MemoryGlobals::Position& MemoryGlobals::Seek(std::string_view key) const {
  const auto found = std::find_if(recent_.begin(), recent_.end(),
                                  [this, key](Position& position) { return MoveNear(key, position); });
  if (found != recent_.end()) {
    std::rotate(recent_.begin(), found, found + 1);
  } else {
    const auto page = std::prev(pages_.upper_bound(key));
    std::rotate(recent_.begin(), recent_.end() - 1, recent_.end());
    recent_.front() = {page, page->second.Seek(key, 0)};
  }
  return recent_.front();
}

/// Moves a position to the key if that is in the same page or in the one behind it; otherwise it ends somewhere.
bool MemoryGlobals::MoveNear(std::string_view key, Position& position) const {
  auto& [page, place] = position;
  place = page->second.Seek(key, place.index);
  if (!place.is_near) return false;
  if (place.index == 0) return place.is_taken || page->first <= key;
  if (place.index < page->second.Size()) return true;
  const auto next = std::next(page);
  if (next == pages_.end() || key < next->first) return true;
  page = next;
  place = page->second.Seek(key, 0);
  return place.index < page->second.Size();
}

}  // namespace emulator
