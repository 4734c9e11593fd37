#include "emulator/memory_globals.h"

#include <algorithm>
#include <iterator>

namespace emulator {
namespace {

constexpr std::size_t kMostNodesOfPage = 64;
constexpr std::size_t kAboutAsLong = 4;  // bytes

}  // namespace

MemoryGlobals::MemoryGlobals() {
  pages_.try_emplace("");
  Forget();
}

void MemoryGlobals::Put(std::string_view key, std::string_view value) {
  const auto [found, place] = Seek({key});
  NodePage& page =
      pages_.erase(found, found)->second;  // erases nothing: the way to a page that may be changed
  if (place.is_taken) {
    page[place.index].value = value;
    return;
  }
  page.Insert(place.index, key, value);
  if (page.Size() <= kMostNodesOfPage) return;
  // Where nodes come one behind the other, as they do in an import, pages stay full.
  NodePage second = page.SplitOff(std::max(page.Size() / 2, place.index));
  std::string least(second.KeyBehind(0, 0, key_));
  pages_.try_emplace(std::move(least), std::move(second));
}

std::optional<std::string_view> MemoryGlobals::Find(std::string_view key) const {
  const auto& [page, place] = Seek({key});
  if (!place.is_taken) return std::nullopt;
  return page->second[place.index].value;
}

std::optional<Globals::Entry> MemoryGlobals::FirstNotBefore(std::string_view key) const {
  const std::optional<NodePlace> node = FirstFrom(Seek({key}));
  if (!node) return std::nullopt;
  return Entry{node->page->KeyBehind(node->index, 0, key_), (*node->page)[node->index].value};
}

std::optional<Globals::Entry> MemoryGlobals::NextBelow(std::string_view key, std::size_t level) const {
  const std::optional<NodePlace> node = FirstFrom(Seek({key, true}));
  if (!node || !node->page->KeyBegins(node->index, key.substr(0, level))) return std::nullopt;
  return Entry{node->page->KeyBehind(node->index, level, key_), (*node->page)[node->index].value};
}

std::optional<Globals::Entry> MemoryGlobals::LastBefore(std::string_view key) const {
  const Position& position = Seek({key});
  auto page = position.page;
  std::size_t index = position.place.index;
  for (; index == 0; index = page->second.Size()) {
    if (page == pages_.begin()) return std::nullopt;
    --page;
  }
  return Entry{page->second.KeyBehind(index - 1, 0, key_), page->second[index - 1].value};
}

void MemoryGlobals::Erase(std::string_view first, std::string_view behind) {
  for (auto page = std::prev(pages_.upper_bound(first)); page != pages_.end() && page->first < behind;) {
    NodePage& nodes = page->second;
    nodes.Erase(nodes.Seek({first}, 0).index, nodes.Seek({behind}, nodes.Size()).index);
    page = nodes.IsEmpty() && page != pages_.begin() ? pages_.erase(page) : std::next(page);
  }
  Forget();
}

const MemoryGlobals::Position& MemoryGlobals::Seek(const Sought& sought) const {
  const Position& last = recent_[last_];
  last_ = sought.key.size() / kAboutAsLong % recent_.size();
  Position& recent = recent_[last_];
  if (MoveTo(sought, recent)) return recent;
  recent = last;
  if (MoveTo(sought, recent)) return recent;
  const auto page = std::prev(pages_.upper_bound(sought));
  return recent = {page, page->second.Seek(sought, 0)};
}

/// Moves a position to what is sought if that is in its page or, as when a walk comes to the end of one, in the next;
/// otherwise it stays.
bool MemoryGlobals::MoveTo(const Sought& sought, Position& position) const {
  const NodePage::Place place = position.page->second.Seek(sought, position.place.index);
  if (place.index == 0 && !place.is_taken) return false;
  if (place.index < position.page->second.Size()) {
    position.place = place;
    return true;
  }
  const auto next = std::next(position.page);
  if (next == pages_.end() || sought < next->first) {
    position.place = place;
    return true;
  }
  const NodePage::Place place_in_next = next->second.Seek(sought, 0);
  if (place_in_next.index == next->second.Size()) return false;
  position = {next, place_in_next};
  return true;
}

/// The first node from there on.
std::optional<MemoryGlobals::NodePlace> MemoryGlobals::FirstFrom(const Position& position) const {
  auto page = position.page;
  std::size_t index = position.place.index;
  for (; index == page->second.Size(); index = 0) {
    if (++page == pages_.end()) return std::nullopt;
  }
  return NodePlace{&page->second, index};
}

}  // namespace emulator
