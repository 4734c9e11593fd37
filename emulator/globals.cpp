#include "emulator/globals.h"

#include "emulator/collation.h"
#include "emulator/host_error.h"

namespace emulator {
namespace {

std::string Kept(const Value& value) {
  const auto* wide = std::get_if<std::u16string>(&value);
  if (wide == nullptr) return KeptValue::kBytes + AsBytes(value);
  std::string bytes(1, KeptValue::kWide);
  for (const char16_t unit : *wide) {
    bytes += static_cast<char>(static_cast<unsigned char>(unit & 0xFFU));
    bytes += static_cast<char>(static_cast<unsigned char>(unit >> 8U));
  }
  return bytes;
}

std::string NodeKey(std::string_view name, Subscripts subscripts) {
  std::string key = GlobalKey(name);
  for (const Value& subscript : subscripts) AppendSubscript(subscript, key);
  return key;
}

GlobalNode NodeOf(std::string_view key) {
  const auto next = [&key] {
    std::string text = SubscriptText(key);
    key.remove_prefix(SubscriptLength(key));
    return text;
  };
  GlobalNode node;
  node.name = next();
  while (!key.empty()) node.subscripts.push_back(next());
  return node;
}

/// The entry with its key below the level; none where it lies elsewhere.
template <class Entry>
std::optional<Entry> Below(std::optional<Entry> entry, std::string_view level) {
  if (!entry || !entry->key.starts_with(level)) return std::nullopt;
  entry->key.remove_prefix(level.size());
  return entry;
}

}  // namespace

Value KeptValue::Restored() const {
  const std::string_view bytes = kept_.substr(1);
  if (!IsWide()) return std::string(bytes);
  std::u16string text;
  text.reserve(bytes.size() / 2);
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    const auto low = static_cast<unsigned char>(bytes[at]);
    const auto high = static_cast<unsigned char>(bytes[at + 1]);
    text += static_cast<char16_t>(low | high << 8U);
  }
  return text;
}

void Globals::Set(std::string_view name, const std::vector<Value>& subscripts, const Value& value) {
  for (const Value& subscript : subscripts) {
    if (AsBytes(subscript).empty()) throw HostError{kInvalidSubscript};
  }
  Put(NodeKey(name, subscripts), Kept(value));
}

std::optional<Value> Globals::Get(std::string_view name, const std::vector<Value>& subscripts) const {
  const auto kept = GetKey(NodeKey(name, subscripts));
  return kept ? std::optional(kept->Restored()) : std::nullopt;
}

int Globals::Defined(std::string_view name, const std::vector<Value>& subscripts) const {
  return DefinedKey(NodeKey(name, subscripts));
}

NextSubscript Globals::Order(std::string_view name, const std::vector<Value>& subscripts,
                             int direction) const {
  if (subscripts.empty()) throw HostError{kInvalidArgument};
  std::string key = NodeKey(name, Subscripts(subscripts).first(subscripts.size() - 1));
  const std::size_t level = key.size();
  AppendSubscript(subscripts.back(), key);
  const KeptNeighbour kept = OrderKey(key, level, direction);
  NextSubscript next;
  if (!kept.subscript.empty()) next.subscript = SubscriptText(kept.subscript);
  if (kept.value) next.value = kept.value->Restored();
  return next;
}

void Globals::Kill(std::string_view name, const std::vector<Value>& subscripts) {
  const std::string key = NodeKey(name, subscripts);
  Erase(key, key + kBehindDescendants);
}

void Globals::Visit(std::string_view name, const std::vector<Value>& subscripts,
                    const std::function<bool(const GlobalNode&, const Value&)>& visit) const {
  const std::string top = NodeKey(name, subscripts);
  std::string from = top;
  for (auto entry = FirstNotBefore(from); entry && entry->key.starts_with(top);
       entry = FirstNotBefore(from)) {
    from.assign(entry->key);
    from += '\0';  // the least key behind this one
    if (!visit(NodeOf(entry->key), KeptValue(entry->value).Restored())) return;
  }
}

void Globals::SetKey(std::string_view key, std::string_view bytes) {
  std::string kept(1, KeptValue::kBytes);
  Put(key, kept += bytes);
}

std::optional<KeptValue> Globals::GetKey(std::string_view key) const {
  const auto value = Find(key);
  return value ? std::optional(KeptValue(*value)) : std::nullopt;
}

int Globals::DefinedKey(std::string_view key) const {
  auto entry = FirstNotBefore(key);
  const bool has_value = entry && entry->key == key;
  if (has_value) entry = FirstNotBefore(std::string(key) + '\0');
  const bool has_nodes_below = entry && entry->key.starts_with(key);
  return (has_value ? 1 : 0) + (has_nodes_below ? 10 : 0);
}

KeptNeighbour Globals::OrderKey(std::string_view key, std::size_t level, int direction) const {
  const std::optional<Entry> entry = direction > 0 ? NextBelow(key, level) : PreviousBelow(key, level);
  if (!entry || entry->key.empty()) return {};
  const std::string_view subscript = entry->key.substr(0, SubscriptLength(entry->key));
  if (subscript.size() == entry->key.size()) return {subscript, KeptValue(entry->value)};
  // Walking backward, the entry found may lie below the neighbour and the neighbour have a value all the same.
  from_.assign(key, 0, level).append(subscript);
  return {subscript, GetKey(from_)};
}

std::optional<Globals::Entry> Globals::NextBelow(std::string_view key, std::size_t level) const {
  from_.assign(key) += kBehindDescendants;
  return Below(FirstNotBefore(from_), key.substr(0, level));
}

/// An empty subscript stands behind the last.
std::optional<Globals::Entry> Globals::PreviousBelow(std::string_view key, std::size_t level) const {
  if (!IsEmptySubscript(key.substr(level))) return Below(LastBefore(key), key.substr(0, level));
  from_.assign(key, 0, level) += kBehindDescendants;
  return Below(LastBefore(from_), key.substr(0, level));
}

}  // namespace emulator
