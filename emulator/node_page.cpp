#include "emulator/node_page.h"

#include <algorithm>
#include <iterator>

namespace emulator {
namespace {

std::ptrdiff_t Offset(std::size_t index) { return static_cast<std::ptrdiff_t>(index); }

std::size_t CommonBytes(std::string_view left, std::string_view right) {
  const auto differing = std::mismatch(left.begin(), left.end(), right.begin(), right.end());
  return static_cast<std::size_t>(differing.first - left.begin());
}

constexpr std::size_t kHeadBytes = sizeof(std::uint64_t);

std::uint64_t BigEndian(const char* bytes) {
  std::uint64_t number = 0;
  for (std::size_t byte = 0; byte < kHeadBytes; ++byte)
    number = number << 8U | static_cast<unsigned char>(bytes[byte]);
  return number;
}

}  // namespace

NodePage::Place NodePage::Seek(std::string_view key, std::size_t near) const {
  if (IsEmpty()) return {};
  const std::string_view common = std::string_view{nodes_.front().key}.substr(0, common_);
  if (const int order = key.substr(0, common_).compare(common); order != 0) {
    return {order < 0 ? 0 : Size(), false, false};
  }
  const Head head = HeadOf(key);
  std::size_t index = std::min(near, Size());
  while (index < Size() && heads_[index] < head) ++index;
  while (index > 0 && heads_[index - 1] >= head) --index;
  for (; index < Size() && heads_[index] == head; ++index) {
    const int order = nodes_[index].key.compare(key);
    if (order >= 0) return {index, order == 0, true};
  }
  return {index, false, true};
}

void NodePage::Insert(std::size_t index, std::string_view key, std::string_view value) {
  nodes_.insert(nodes_.begin() + Offset(index), Node{std::string(key), std::string(value)});
  if (CommonBytes(nodes_.front().key, nodes_.back().key) < common_ || Size() == 1) {
    MakeHeads();
  } else {
    heads_.insert(heads_.begin() + Offset(index), HeadOf(key));
  }
}

void NodePage::Erase(std::size_t first, std::size_t behind) {
  nodes_.erase(nodes_.begin() + Offset(first), nodes_.begin() + Offset(behind));
  MakeHeads();
}

NodePage NodePage::SplitOff(std::size_t index) {
  NodePage page;
  const auto first = nodes_.begin() + Offset(index);
  page.nodes_.assign(std::make_move_iterator(first), std::make_move_iterator(nodes_.end()));
  page.MakeHeads();
  Erase(index, Size());
  return page;
}

/// Of two keys with the common beginning the one that comes first has the lesser head, or both have the same.
NodePage::Head NodePage::HeadOf(std::string_view key) const {
  const std::size_t rest = key.size() - common_;
  if (rest == 0) return 0;
  if (rest >= kHeadBytes) return BigEndian(key.data() + common_);
  if (key.size() >= kHeadBytes) {  // the last bytes, without those of the common beginning
    return BigEndian(key.data() + key.size() - kHeadBytes) << (8 * (kHeadBytes - rest));
  }
  Head head = 0;
  for (const char byte : key.substr(common_)) head = head << 8U | static_cast<unsigned char>(byte);
  return head << (8 * (kHeadBytes - rest));
}

void NodePage::MakeHeads() {
  common_ = IsEmpty() ? 0 : CommonBytes(nodes_.front().key, nodes_.back().key);
  heads_.resize(Size());
  std::transform(nodes_.begin(), nodes_.end(), heads_.begin(),
                 [this](const Node& node) { return HeadOf(node.key); });
}

}  // namespace emulator
