#pragma once

// Keys of global nodes as bytes whose plain order is the order in which the host walks its globals: among the
// subscripts of one level the empty one first, then canonical numbers by value, then all other texts by their
// bytes.
//
// A key is the name of the global, written like a text, and then its subscripts, end to end. No subscript's
// bytes are the beginning of another's, so the nodes below a node are those whose keys begin with its key.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "emulator/value.h"

namespace emulator {

/// Texts longer than that are never numbers.
inline constexpr std::size_t kMaxNumberLength = 1024;

/// True for a text that is a number just as the host writes it: "0", "12", "-7", ".5", "-1.25"; not "01",
/// "1.0", "-0".
bool IsCanonicalNumber(std::string_view text);

/// Most bytes that a text of that length takes in a key.
constexpr std::size_t MostKeyBytes(std::size_t text_length) { return 2 * text_length + 4; }

/// Most bytes that a 64-bit integer takes.
inline constexpr std::size_t kMostIntegerKeyBytes = 24;

// Both write the key bytes of one subscript to where MostKeyBytes of its text, or kMostIntegerKeyBytes, are free.
// @return  behind the last byte
inline char* WriteSubscript(std::string_view text, char* out);
char* WriteSubscript(std::int64_t number, char* out);

// What they are made of: a text that is no number, one that may be one, and a whole number above zero, as most numbers
// are. The last returns null for another text.
char* WriteText(std::string_view text, char* out);
char* WriteNumberOrText(std::string_view text, char* out);
char* WriteWholeNumber(std::string_view text, char* out);

inline char* WriteSubscript(std::string_view text, char* out) {
  if (!text.empty() && text.front() > '9') return WriteText(text, out);
  char* const end = WriteWholeNumber(text, out);
  return end != nullptr ? end : WriteNumberOrText(text, out);
}

/// True when the subscript at the start of `key` is a text that is no number.
bool IsTextSubscript(std::string_view key);

/// Appends the key bytes of one subscript.
void AppendSubscript(std::string_view text, std::string& key);

/// The same for a value; numbers in their canonical form.
/// @throws HostError  as AsBytes
void AppendSubscript(const Value& subscript, std::string& key);

/// True when the subscript at the start of `key`, which must be well formed and not empty, is the empty one.
bool IsEmptySubscript(std::string_view key);

/// Length in bytes of the subscript at the start of `key`, which must be well formed and not empty.
std::size_t SubscriptLength(std::string_view key);

/// The text of the subscript whose key bytes stand at the start of `key`.
std::string SubscriptText(std::string_view key);

/// The text of the subscript that has exactly these key bytes, into `text`, whose storage is used again.
void AssignSubscriptText(std::string_view subscript, std::string& text);

/// The key of a global as a whole, without subscripts.
std::string GlobalKey(std::string_view name);

/// A byte that sorts behind whatever can follow a key: key + kBehindDescendants comes after all nodes below
/// the node.
inline constexpr char kBehindDescendants = '\xFF';

}  // namespace emulator
