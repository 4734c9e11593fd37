#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "emulator/store/data_store.h"
#include "emulator/store/store_error.h"
#include "emulator/vessa/exit_code.h"

namespace emulator::tool {

/// The arguments that every command has that uses the host's store.
class StoreOptions {
 public:
  void Define(CLI::App& app);

  /// Makes the store when there is none. @throws ToolError  kInputUnreadable
  std::unique_ptr<DataStore> Open() const { return OpenBy(OpenDataStore); }
  /// @throws ToolError  kInputUnreadable, when there is none as well
  std::unique_ptr<DataStore> OpenExisting() const { return OpenBy(OpenExistingDataStore); }

 private:
  std::unique_ptr<DataStore> OpenBy(std::unique_ptr<DataStore> (*open)(const std::string&)) const;

  std::string folder_;
};

/// Does some work on a store, whose failures become ToolErrors (kOutputUnwritable) that name what is at work.
template <class Work>
void WithStore(const std::string& name, const Work& work) {
  try {
    work();
  } catch (const StoreError& error) {
    throw ToolError(kOutputUnwritable, name + ": " + error.what());
  }
}

}  // namespace emulator::tool
