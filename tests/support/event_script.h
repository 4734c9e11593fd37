#pragma once

#include <sstream>
#include <string>
#include <vector>

/// Lines of an event log.
using Lines = std::vector<std::string>;

/// The lines of a text without empty ones; blanks in front of a line only show the nesting.
inline Lines Script(const std::string& text) {
  Lines lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    const std::size_t start = line.find_first_not_of(' ');
    if (start != std::string::npos) lines.push_back(line.substr(start));
  }
  return lines;
}
