#include "emulator/globals.h"

#include "emulator/collation.h"
#include "emulator/host_error.h"

namespace emulator {
namespace {

// A kept value: its kind, then its bytes; 16-bit units little endian.
constexpr char kBytes = 'b';
constexpr char kWide = 'w';

std::string Kept(const Value& value) {
  const auto* wide = std::get_if<std::u16string>(&value);
  if (wide == nullptr) return kBytes + AsBytes(value);
  std::string bytes(1, kWide);
  for (const char16_t unit : *wide) {
    bytes += static_cast<char>(static_cast<unsigned char>(unit & 0xFFU));
    bytes += static_cast<char>(static_cast<unsigned char>(unit >> 8U));
  }
  return bytes;
}

Value Restored(std::string_view kept) {
  const std::string_view bytes = kept.substr(1);
  if (kept.front() == kBytes) return std::string(bytes);
  std::u16string text;
  text.reserve(bytes.size() / 2);
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    const auto low = static_cast<unsigned char>(bytes[at]);
    const auto high = static_cast<unsigned char>(bytes[at + 1]);
    text += static_cast<char16_t>(low | high << 8U);
  }
  return text;
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

}  // namespace

void Globals::Set(std::string_view name, const std::vector<Value>& subscripts, const Value& value) {
  for (const Value& subscript : subscripts) {
    if (AsBytes(subscript).empty()) throw HostError{kInvalidSubscript};
  }
  Put(NodeKey(name, subscripts), Kept(value));
}

std::optional<Value> Globals::Get(std::string_view name, const std::vector<Value>& subscripts) const {
  return GetKey(NodeKey(name, subscripts));
}

int Globals::Defined(std::string_view name, const std::vector<Value>& subscripts) const {
  return DefinedKey(NodeKey(name, subscripts));
}

NextSubscript Globals::Order(std::string_view name, const std::vector<Value>& subscripts,
                             int direction) const {
  if (subscripts.empty()) throw HostError{kInvalidArgument};
  std::string last;
  AppendSubscript(subscripts.back(), last);
  return OrderKey(NodeKey(name, Subscripts(subscripts).first(subscripts.size() - 1)), last, direction);
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
    if (!visit(NodeOf(entry->key), Restored(entry->value))) return;
  }
}

void Globals::SetKey(std::string_view key, std::string_view bytes) {
  std::string kept(1, kBytes);
  Put(key, kept += bytes);
}

std::optional<Value> Globals::GetKey(std::string_view key) const {
  const auto entry = Find(key);
  if (!entry) return std::nullopt;
  return Restored(entry->value);
}

int Globals::DefinedKey(std::string_view key) const {
  auto entry = FirstNotBefore(key);
  const bool has_value = entry && entry->key == key;
  if (has_value) entry = FirstNotBefore(std::string(key) + '\0');
  const bool has_nodes_below = entry && entry->key.starts_with(key);
  return (has_value ? 1 : 0) + (has_nodes_below ? 10 : 0);
}

NextSubscript Globals::OrderKey(std::string_view level, std::string_view subscript, int direction) const {
  std::string from(level);
  if (direction > 0) {
    from += subscript;
    from += kBehindDescendants;
    return Neighbour(FirstNotBefore(from), level);
  }
  if (IsEmptySubscript(subscript)) {
    from += kBehindDescendants;
  } else {
    from += subscript;
  }
  return Neighbour(LastBefore(from), level);
}

NextSubscript Globals::Neighbour(const std::optional<Entry>& entry, std::string_view level) const {
  if (!entry || entry->key.size() == level.size() || !entry->key.starts_with(level)) return {};
  const std::string_view below = entry->key.substr(level.size());
  const std::string_view node = entry->key.substr(0, level.size() + SubscriptLength(below));
  NextSubscript next;
  next.subscript = SubscriptText(below);
  // Walking backward, the entry found may lie below the neighbour and the neighbour have a value all the same.
  next.value = node.size() == entry->key.size() ? Restored(entry->value) : GetKey(node);
  return next;
}

}  // namespace emulator
