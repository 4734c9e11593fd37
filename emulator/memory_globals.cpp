#include "emulator/memory_globals.h"

#include <algorithm>
#include <iterator>

namespace emulator {
namespace {

constexpr std::size_t kMostNodesOfPage = 64;

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
  auto found = std::find_if(recent_.begin(), recent_.end(),
                            [&sought](Position& position) { return MoveWithin(position, sought); });
  if (found == recent_.end()) {
    const Position position = SeekAnew(sought);
    found = std::find_if(recent_.begin(), recent_.end() - 1,
                         [&position](const Position& recent) { return recent.page == position.page; });
    *found = position;
  }
  if (found != recent_.begin()) std::rotate(recent_.begin(), found, found + 1);
  return recent_.front();
}

/// Moves a position to what is sought if that is among the nodes of its page; otherwise it stays.
bool MemoryGlobals::MoveWithin(Position& position, const Sought& sought) {
  const NodePage& page = position.page->second;
  const NodePage::Place place = page.Seek(sought, position.place.index);
  if (place.index == page.Size() || (place.index == 0 && !place.is_taken)) return false;
  position.place = place;
  return true;
}

/// Behind the nodes of a page of late or in the page behind that, as a walk comes to the end of its page; or wherever it
/// is.
MemoryGlobals::Position MemoryGlobals::SeekAnew(const Sought& sought) const {
  for (const Position& recent : recent_) {
    const auto page = recent.page;
    const NodePage::Place place = page->second.Seek(sought, page->second.Size());
    if (place.index < page->second.Size()) continue;
    Position next{std::next(page), {}};
    if (next.page == pages_.end() || sought < next.page->first) return {page, place};
    if (MoveWithin(next, sought)) return next;
  }
  const auto page = std::prev(pages_.upper_bound(sought));
  return {page, page->second.Seek(sought, 0)};
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
