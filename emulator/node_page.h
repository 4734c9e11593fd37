#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace emulator {

/// Some nodes in the order of their keys. They have the beginnings of their keys in common, so that beginning is
/// compared once, and of the rest the first bytes as one number: a search compares next to no texts.
class NodePage {
 public:
  struct Node {
    std::string key;
    std::string value;
  };

  bool IsEmpty() const { return nodes_.empty(); }
  std::size_t Size() const { return nodes_.size(); }
  const Node& operator[](std::size_t index) const { return nodes_[index]; }
  Node& operator[](std::size_t index) { return nodes_[index]; }

  struct Place {
    std::size_t index = 0;  ///< of the first node not before the key; Size() for none
    bool is_taken = false;  ///< that node has the key
    bool is_near = false;   ///< the key begins like those of the page
  };
  /// @param near  an index where the search starts, in the hope that it is not far
  Place Seek(std::string_view key, std::size_t near) const;
  void Insert(std::size_t index, std::string_view key, std::string_view value);
  void Erase(std::size_t first, std::size_t behind);
  /// Takes the nodes from `index` on out of the page, as a page of their own.
  NodePage SplitOff(std::size_t index);

 private:
  using Head = std::uint64_t;

  Head HeadOf(std::string_view key) const;
  void MakeHeads();

  std::vector<Node> nodes_;
  std::vector<Head> heads_;  ///< of each key, what follows the common beginning
  std::size_t common_ = 0;   ///< bytes that all keys begin with
};

}  // namespace emulator
