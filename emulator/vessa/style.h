#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace emulator::tool {

/// Colours, where a terminal shows them.
class Style {
 public:
  /// Colours are used when `wish` says so; without a wish, on a terminal, unless NO_COLOR is set in the environment.
  static Style For(std::optional<bool> wish);

  explicit Style(bool has_colour) : has_colour_(has_colour) {}

  std::string Tag(std::string_view text) const { return Coloured("36", text); }
  std::string Vr(std::string_view text) const { return Coloured("33", text); }
  std::string Keyword(std::string_view text) const { return Coloured("1", text); }
  std::string Faint(std::string_view text) const { return Coloured("2", text); }

 private:
  std::string Coloured(std::string_view code, std::string_view text) const;

  bool has_colour_;
};

}  // namespace emulator::tool
