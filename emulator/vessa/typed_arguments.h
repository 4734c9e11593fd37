#pragma once

#include <string>
#include <vector>

#include "emulator/list.h"

namespace emulator::tool {

/// What the help text says of typed arguments.
extern const char* const kTypedArgumentsHelp;

/// A value list out of words such as i:5, s:text and l:[i:1,absent].
/// Throws ToolError (kWrongUsage) that names the word it cannot read.
ListBuilder ParseTypedArguments(const std::vector<std::string>& words);

/// An item of a value list in the words' types, with its value.
std::string TypedText(const ListValue& item);

/// The same as a word: i:5, s:"text", w:"text"; of a text longer than 64 units the length.
std::string TypedWord(const ListValue& item);

}  // namespace emulator::tool
