#pragma once

#include <string_view>

namespace vessa {

// The throws of the decomposer stand apart from its steps: a step that clears nothing up costs a stop through it less,
// and every answered query is such a stop.

/// @throws CDecomposeException  `text`, its "%1" replaced by `argument` where there is one
[[noreturn]] void Refuse(std::string_view text);
[[noreturn]] void Refuse(std::string_view text, std::string_view argument);

}  // namespace vessa
