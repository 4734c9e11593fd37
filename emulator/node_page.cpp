#include "emulator/node_page.h"

#include <algorithm>
#include <iterator>

#include "emulator/collation.h"

namespace emulator {
namespace {

std::ptrdiff_t Offset(std::size_t index) { return static_cast<std::ptrdiff_t>(index); }

std::size_t CommonBytes(std::string_view left, std::string_view right) {
  const auto differing = std::mismatch(left.begin(), left.end(), right.begin(), right.end());
  return static_cast<std::size_t>(differing.first - left.begin());
}

}  // namespace

std::string_view NodePage::KeyBehind(std::size_t index, std::size_t bytes, std::string& storage) const {
  const std::string& rest = nodes_[index].rest;
  if (bytes >= common_.size()) return std::string_view{rest}.substr(bytes - common_.size());
  storage.assign(common_, bytes).append(rest);
  return storage;
}

bool NodePage::KeyBegins(std::size_t index, std::string_view beginning) const {
  if (beginning.size() <= common_.size()) return common_.starts_with(beginning);
  return nodes_[index].rest.starts_with(beginning.substr(common_.size())) && beginning.starts_with(common_);
}

/// Of the first head not before that one, which most often is near.
std::size_t NodePage::IndexOf(const KeyHead& head, std::size_t near) const {
  constexpr std::size_t kSteps = 4;
  std::size_t from = near > 0 ? near - 1 : 0;
  std::size_t end = Size();
  if (from > 0 && !(heads_[from - 1] < head)) {
    end = from;
    from = 0;
  } else {
    const std::size_t last = std::min(from + kSteps, end);
    while (from < last && heads_[from] < head) ++from;
    if (from < last) return from;
  }
  const auto found = std::lower_bound(heads_.begin() + Offset(from), heads_.begin() + Offset(end), head);
  return static_cast<std::size_t>(found - heads_.begin());
}

NodePage::Place NodePage::Seek(const Sought& sought, std::size_t near) const {
  if (!sought.key.starts_with(common_)) return {sought < common_ ? 0 : Size(), false};
  const Sought rest{sought.key.substr(common_.size()), sought.is_behind_below};
  KeyHead head(sought.key, common_.size());
  if (sought.is_behind_below) head = head.With(kBehindDescendants);
  std::size_t index = IndexOf(head, std::min(near, Size()));
  if (head.IsWhole()) return {index, index < Size() && heads_[index] == head};
  while (index < Size() && heads_[index] == head && nodes_[index].rest < rest) ++index;
  return {index, index < Size() && !rest.is_behind_below && nodes_[index].rest == rest.key};
}

void NodePage::Insert(std::size_t index, std::string_view key, std::string_view value) {
  if (IsEmpty()) {
    common_ = key;
  } else if (const std::size_t common = CommonBytes(common_, key); common < common_.size()) {
    ShortenCommon(common);
  }
  const std::string_view rest = key.substr(common_.size());
  nodes_.insert(nodes_.begin() + Offset(index), Node{std::string(rest), std::string(value)});
  heads_.insert(heads_.begin() + Offset(index), KeyHead(key, common_.size()));
}

void NodePage::Erase(std::size_t first, std::size_t behind) {
  nodes_.erase(nodes_.begin() + Offset(first), nodes_.begin() + Offset(behind));
  heads_.erase(heads_.begin() + Offset(first), heads_.begin() + Offset(behind));
}

NodePage NodePage::SplitOff(std::size_t index) {
  NodePage page;
  const auto first = nodes_.begin() + Offset(index);
  page.common_ = common_;
  page.nodes_.assign(std::make_move_iterator(first), std::make_move_iterator(nodes_.end()));
  page.heads_.assign(heads_.begin() + Offset(index), heads_.end());
  page.LengthenCommon();
  Erase(index, Size());
  LengthenCommon();
  return page;
}

void NodePage::ShortenCommon(std::size_t size) {
  const std::string moved = common_.substr(size);
  common_.resize(size);
  for (Node& node : nodes_) node.rest.insert(0, moved);
  MakeHeads();
}

void NodePage::LengthenCommon() {
  const std::size_t moved = CommonBytes(nodes_.front().rest, nodes_.back().rest);
  if (moved == 0) return;
  common_.append(nodes_.front().rest, 0, moved);
  for (Node& node : nodes_) node.rest.erase(0, moved);
  MakeHeads();
}

void NodePage::MakeHeads() {
  std::transform(nodes_.begin(), nodes_.end(), heads_.begin(),
                 [](const Node& node) { return KeyHead(node.rest, 0); });
}

}  // namespace emulator
