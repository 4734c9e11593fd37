#pragma once

#include <string>
#include <string_view>
#include <vector>

// Runs the tool as a user's shell does: words in, two texts and an exit code out.

struct ToolRun {
  int exit_code;
  std::string output;
  std::string errors;
};

/// The path of a library that answers wrongly, never or not at all.
extern const char* const kFaultyLibraryPath;

/// Runs the tool with these arguments; `input` is its standard input.
ToolRun RunTool(const std::vector<std::string>& arguments, std::string_view input = {});

/// A file in a folder of this run's own, made anew. Returns its path.
std::string MakeFile(const std::string& name, std::string_view bytes);

/// A path in that folder, where no file need be.
std::string PathOf(const std::string& name);

// What differs between the systems.

int ExitCodeOf(int system_status);            ///< in what std::system returns
std::string Quoted(const std::string& word);  ///< as one word of the shell
std::string ForShell(const std::string& command_line);
const char* AbortText();  ///< what the tool says of a library that aborts
