#include "emulator/vessa/style.h"

#include <fmt/format.h>

#include <cstdlib>

#include "emulator/platform/standard_streams.h"

namespace emulator::tool {

Style Style::For(std::optional<bool> wish) {
  if (wish.has_value()) return Style(*wish);
  const char* const no_colour = std::getenv("NO_COLOR");  // NOLINT(concurrency-mt-unsafe): one thread
  const bool is_refused = no_colour != nullptr && *no_colour != '\0';
  return Style(!is_refused && IsTerminal(StandardStream::kOutput));
}

std::string Style::Coloured(std::string_view code, std::string_view text) const {
  if (!has_colour_ || text.empty()) return std::string(text);
  return fmt::format("\x1B[{}m{}\x1B[0m", code, text);
}

}  // namespace emulator::tool
