#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/key_head.h"

namespace emulator {

/// What is searched for: a place in the order of keys.
struct Sought {
  std::string_view key;
  bool is_behind_below = false;  ///< not the key's own, but that behind it and all keys that begin with it

  friend bool operator<(const Sought& sought, std::string_view kept) {
    return sought.key < kept && !(sought.is_behind_below && kept.starts_with(sought.key));
  }
  friend bool operator<(std::string_view kept, const Sought& sought) {
    return kept < sought.key || (sought.is_behind_below && kept.starts_with(sought.key));
  }
};

/// Some nodes in the order of their keys. What all keys begin with is kept, and compared, once; of the rest the first
/// bytes are there as numbers as well, so a search compares next to no texts and touches next to no node.
class NodePage {
 public:
  struct Node {
    std::string rest;  ///< of the key
    std::string value;
  };

  bool IsEmpty() const { return nodes_.empty(); }
  std::size_t Size() const { return nodes_.size(); }
  const Node& operator[](std::size_t index) const { return nodes_[index]; }
  Node& operator[](std::size_t index) { return nodes_[index]; }

  /// A node's key but for its first bytes. In `storage` when it is not in one piece.
  std::string_view KeyBehind(std::size_t index, std::size_t bytes, std::string& storage) const;
  bool KeyBegins(std::size_t index, std::string_view beginning) const;

  struct Place {
    std::size_t index = 0;  ///< of the first node not before what is sought; Size() for none
    bool is_taken = false;  ///< that node has the key
  };
  /// @param near  an index where the search starts, in the hope that it is not far
  Place Seek(const Sought& sought, std::size_t near) const;
  void Insert(std::size_t index, std::string_view key, std::string_view value);
  void Erase(std::size_t first, std::size_t behind);
  /// Takes the nodes from `index` on out of the page, as a page of their own.
  NodePage SplitOff(std::size_t index);

 private:
  std::size_t IndexOf(const KeyHead& head, std::size_t near) const;
  void ShortenCommon(std::size_t size);
  void LengthenCommon();
  void MakeHeads();

  std::string common_;  ///< what all keys begin with
  std::vector<Node> nodes_;
  std::vector<KeyHead> heads_;  ///< of each node's rest
};

}  // namespace emulator
