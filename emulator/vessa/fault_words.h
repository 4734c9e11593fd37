#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "emulator/fault_plan.h"

namespace emulator::tool {

/// The option --inject: callbacks that are to fail.
class FaultWords {
 public:
  void Define(CLI::App& app);

  /// @throws ToolError  kWrongUsage, with the word that cannot be read
  void AddTo(FaultPlan& plan) const;

 private:
  std::vector<std::string> words_;
};

}  // namespace emulator::tool
