#pragma once

#include <string>
#include <vector>

#include "host/binary_interface.h"

namespace vessa {

/// The host's end of the callback table, bare: it writes each callback down as a line, answers what the test
/// prepared and can fail one of them. While it lives it is the library's host; one at a time.
class ScriptedHost {
 public:
  ScriptedHost();
  ~ScriptedHost();
  ScriptedHost(const ScriptedHost&) = delete;
  ScriptedHost& operator=(const ScriptedHost&) = delete;

  std::vector<std::string> calls;
  std::size_t fail_at = 0;  ///< the callback that fails, from 1; 0 for none
  int status = 5;           ///< what it answers

  // Answers of the callbacks that hand something out.
  int integer = 0;
  int length = 0;
  unsigned char* bytes = nullptr;
  std::uint16_t* units = nullptr;
  std::uint16_t counted_length = 0;  ///< what a counted string comes back with
  bool gives_areas = true;           ///< whether there is room for long strings

  const void* last_text = nullptr;  ///< where the last text that was pushed lay
  std::string area;                 ///< bytes of the last long string

  /// Writes the line down and answers the status of this callback.
  int Note(const std::string& line);
};

}  // namespace vessa
