#pragma once

#include <cstdint>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dicom/dictionary.h"
#include "host/vessa_list.h"
#include "tests/vdoc/property_list_bytes.h"
#include "vdoc/exceptions.h"
#include "vdoc/property_reference.h"

/// What parsing a reference came to: the list's bytes, or the message.
struct Parsed {
  std::string bytes;
  std::string message;

  bool operator==(const Parsed&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Parsed& parsed) {
  if (!parsed.message.empty()) return out << "message: " << parsed.message;
  out << "list:" << std::hex;
  for (const char byte : parsed.bytes) out << ' ' << static_cast<unsigned>(static_cast<unsigned char>(byte));
  return out << std::dec;
}

inline Parsed ListOf(const std::vector<std::uint32_t>& entries) {
  return {PropertyListBytes(entries).Bytes(), ""};
}
inline Parsed Message(std::string_view text) { return {"", std::string(text)}; }

using Parser = void (*)(std::string_view, vessa::VessaList&);

inline Parsed ParseWith(Parser parser, std::string_view text) {
  vessa::InitialiseDictionary();
  vessa::VessaList list;
  try {
    parser(text, list);
  } catch (const vessa::CVDocException& failure) {
    return Message(failure.Text());
  }
  const std::span<const std::uint8_t> bytes = list.Bytes();
  return {std::string(bytes.begin(), bytes.end()), ""};
}

inline Parsed ParseReference(std::string_view text) { return ParseWith(vessa::ParsePropertyReference, text); }
inline Parsed ParseSubscript(std::string_view text) {
  return ParseWith(vessa::ParsePropertySubscriptReference, text);
}
