#include "emulator/vessa/command_description.h"

#include <nlohmann/json.hpp>
#include <string_view>

namespace emulator::tool {
namespace {

using nlohmann::ordered_json;

ordered_json OptionDescription(const CLI::Option& option) {
  ordered_json names = ordered_json::array();
  for (const std::string& name : option.get_snames()) names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) names.push_back("--" + name);
  const bool takes_value = !option.get_type_name().empty();  // a flag has none
  ordered_json description = {{"names", names}, {"text", option.get_description()}};
  if (takes_value) description["value"] = option.get_type_name();
  if (takes_value && !option.get_default_str().empty()) description["default"] = option.get_default_str();
  if (option.get_positional()) {
    description["positional"] = option.get_single_name();
    description["required"] = option.get_required();
    description["repeats"] = option.get_items_expected_max() > 1;
  }
  return description;
}

ordered_json OptionDescriptions(const CLI::App& app) {
  ordered_json options = ordered_json::array();
  const auto is_shown = [](const CLI::Option* option) { return !option->get_group().empty(); };
  for (const CLI::Option* const option : app.get_options(is_shown))
    options.push_back(OptionDescription(*option));
  return options;
}

std::string UsageOf(const CLI::App& command) {
  constexpr std::string_view kStart = "Usage: ";
  const std::string help = command.help("vessa");
  const std::size_t start = help.find(kStart) + kStart.size();
  return help.substr(start, help.find('\n', start) - start);
}

ordered_json CommandDescription(const CLI::App& command) {
  return {{"name", command.get_name()},
          {"text", command.get_description()},
          {"usage", UsageOf(command)},
          {"options", OptionDescriptions(command)},
          {"footer", command.get_footer()}};
}

}  // namespace

std::string DescribeCommands(const CLI::App& app) {
  ordered_json commands = ordered_json::array();
  const auto any = [](const CLI::App*) { return true; };
  for (const CLI::App* const command : app.get_subcommands(any))
    commands.push_back(CommandDescription(*command));
  const ordered_json description = {{"text", app.get_description()},
                                    {"options", OptionDescriptions(app)},
                                    {"footer", app.get_footer()},
                                    {"commands", commands}};
  return description.dump(1);
}

}  // namespace emulator::tool
