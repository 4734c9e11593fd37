#pragma once

#include <string>
#include <vector>

#include "emulator/globals.h"
#include "emulator/hex_text.h"

namespace emulator {

/// All nodes of a global, one text each: subscripts, comma-parted, "=" and the value; bytes that are no printable
/// character as \xHH.
inline std::vector<std::string> NodeList(const Globals& globals, const std::string& name) {
  const auto printable = [](const std::string& bytes) {
    std::string text;
    for (const char byte : bytes) {
      const auto code = static_cast<unsigned char>(byte);
      if (code >= 0x20 && code < 0x7F) {
        text += byte;
      } else {
        text += "\\x" + HexText(code, 2);
      }
    }
    return text;
  };
  std::vector<std::string> lines;
  globals.Visit(name, {}, [&](const GlobalNode& node, const Value& value) {
    std::string line;
    for (const std::string& subscript : node.subscripts) line += (line.empty() ? "" : ",") + subscript;
    lines.push_back(line + "=" + printable(AsBytes(value)));
    return true;
  });
  return lines;
}

}  // namespace emulator
