#include <sys/wait.h>

#include "tests/vessa/run_tool.h"

int ExitCodeOf(int system_status) { return WIFEXITED(system_status) ? WEXITSTATUS(system_status) : -1; }

std::string Quoted(const std::string& word) {
  std::string quoted = "'";
  for (const char letter : word) quoted += letter == '\'' ? std::string("'\\''") : std::string(1, letter);
  return quoted + "'";
}

std::string ForShell(const std::string& command_line) { return command_line; }

const char* AbortText() { return "SIGABRT"; }
