#include "tests/vessa/run_tool.h"

int ExitCodeOf(int system_status) { return system_status; }

std::string Quoted(const std::string& word) {
  std::string quoted = "\"";
  for (const char letter : word) quoted += letter == '"' ? std::string("\\\"") : std::string(1, letter);
  return quoted + "\"";
}

/// The shell drops the first quote and the last one of a line that begins with one.
std::string ForShell(const std::string& command_line) { return "\"" + command_line + "\""; }

const char* AbortText() { return "exit code 3"; }
