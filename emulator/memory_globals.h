#pragma once

#include <array>
#include <cstddef>
#include <map>

#include "emulator/globals.h"
#include "emulator/node_page.h"

namespace emulator {

/// Globals that live as long as the object.
class MemoryGlobals : public Globals {
 public:
  MemoryGlobals();

 protected:
  void Put(std::string_view key, std::string_view value) override;
  std::optional<std::string_view> Find(std::string_view key) const override;
  std::optional<Entry> FirstNotBefore(std::string_view key) const override;
  std::optional<Entry> NextBelow(std::string_view key, std::size_t level) const override;
  std::optional<Entry> LastBefore(std::string_view key) const override;
  void Erase(std::string_view first, std::string_view behind) override;

 private:
  /// By the least key that belongs there. Only the first one, by the empty key, may be empty.
  using Pages = std::map<std::string, NodePage, std::less<>>;

  /// Where a key is, or would be.
  struct Position {
    Pages::const_iterator page;
    NodePage::Place place;
  };

  struct NodePlace {
    const NodePage* page;
    std::size_t index;
  };

  const Position& Seek(const Sought& sought) const;
  bool MoveTo(const Sought& sought, Position& position) const;
  std::optional<NodePlace> FirstFrom(const Position& position) const;
  void Forget() { recent_.fill({pages_.begin(), {}}); }

  Pages pages_;
  /// Where the last searches ended, each in the place of keys of about that length: those of a walk are about as long,
  /// and what one asks for next is most often near.
  mutable std::array<Position, 8> recent_;
  mutable std::size_t last_ = 0;  // the index of the last search's
  mutable std::string key_;       // of what was found last: storage that is used again
};

}  // namespace emulator
