#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/value.h"

namespace emulator {

using Subscripts = std::span<const Value>;

/// A node with its subscripts as texts.
struct GlobalNode {
  std::string name;
  std::vector<std::string> subscripts;
};

/// A value as it is kept: 8-bit text, or 16-bit text in little-endian bytes. Valid until the globals change.
class KeptValue {
 public:
  /// @param kept  what a store was given
  explicit KeptValue(std::string_view kept) : kept_(kept) {}

  bool IsWide() const { return kept_.front() == kWide; }
  /// Of 8-bit text.
  std::string_view Bytes() const { return kept_.substr(1); }
  Value Restored() const;
  /// As AsBytes of the value itself.
  std::string AsBytes() const { return emulator::AsBytes(Restored()); }

  // The first byte of what is kept.
  static constexpr char kBytes = 'b';
  static constexpr char kWide = 'w';

 private:
  std::string_view kept_;
};

/// What follows a subscript on its level, as it is kept. Valid until the next step and until the globals change.
struct KeptNeighbour {
  std::string_view subscript;      ///< its key bytes; none at the end of the level
  std::optional<KeptValue> value;  ///< of the node itself; none where only nodes below it have one
};

/// What follows a subscript on its level.
struct NextSubscript {
  std::string subscript;       ///< empty at the end of the level
  std::optional<Value> value;  ///< of the node itself; none where only nodes below it have one
};

/// The host's globals: trees of nodes, ordered by the host's collation. Names stand without the leading "^".
/// Values are texts, 8-bit or 16-bit; numbers are kept in canonical form. The functions whose names end in
/// Key take keys made by collation.h and are the quick way for those who have them.
class Globals {
 public:
  Globals() = default;
  virtual ~Globals() = default;
  Globals(const Globals&) = delete;
  Globals& operator=(const Globals&) = delete;

  /// @throws HostError  kInvalidSubscript for an empty subscript, kInvalidArgument for an object as a value
  void Set(std::string_view name, const std::vector<Value>& subscripts, const Value& value);

  /// The node's value; none when the node has none.
  std::optional<Value> Get(std::string_view name, const std::vector<Value>& subscripts) const;

  /// 0 nothing there, 1 a value, 10 nodes below, 11 both.
  int Defined(std::string_view name, const std::vector<Value>& subscripts) const;

  /// The neighbour of the last subscript, `direction` +1 or -1; an empty last subscript stands before the
  /// first and behind the last.
  NextSubscript Order(std::string_view name, const std::vector<Value>& subscripts, int direction = 1) const;

  /// Removes the node and all nodes below it.
  void Kill(std::string_view name, const std::vector<Value>& subscripts = {});

  /// Visits every node that has a value, from the given one down, in the host's order, until `visit` returns
  /// false.
  void Visit(std::string_view name, const std::vector<Value>& subscripts,
             const std::function<bool(const GlobalNode&, const Value&)>& visit) const;

  /// `bytes` as an 8-bit text.
  void SetKey(std::string_view key, std::string_view bytes);
  std::optional<KeptValue> GetKey(std::string_view key) const;
  int DefinedKey(std::string_view key) const;
  /// `key` is the subscript's own; that of the node above takes up its first `level` bytes.
  KeptNeighbour OrderKey(std::string_view key, std::size_t level, int direction) const;

 protected:
  /// A node as it is kept: its key and its value as bytes. The value is valid until the next change, the key until the
  /// next of the questions below that is answered with one, too.
  struct Entry {
    std::string_view key;
    std::string_view value;
  };

  // What a store has to know: bytes ordered by bytes.
  virtual void Put(std::string_view key, std::string_view value) = 0;
  /// The value of that key.
  virtual std::optional<std::string_view> Find(std::string_view key) const = 0;
  virtual std::optional<Entry> FirstNotBefore(std::string_view key) const = 0;
  virtual std::optional<Entry> LastBefore(std::string_view key) const = 0;
  /// The first behind `key` and all nodes below it, if it begins with the same `level` bytes; its key without those.
  virtual std::optional<Entry> NextBelow(std::string_view key, std::size_t level) const;
  /// Removes the keys from `first` on that come before `behind`.
  virtual void Erase(std::string_view first, std::string_view behind) = 0;

 private:
  std::optional<Entry> PreviousBelow(std::string_view key, std::size_t level) const;

  mutable std::string from_;  // where a step starts: storage that is used again
};

}  // namespace emulator
