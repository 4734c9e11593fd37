#include "emulator/vessa/store_options.h"

namespace emulator::tool {

void StoreOptions::Define(CLI::App& app) {
  app.add_option("--store", folder_,
                 "Folder of the host's store [$XDG_DATA_HOME/vessa or ~/.local/share/vessa]");
}

std::unique_ptr<DataStore> StoreOptions::OpenBy(
    std::unique_ptr<DataStore> (*open)(const std::string&)) const {
  try {
    return open(folder_.empty() ? DefaultStoreFolder() : folder_);
  } catch (const StoreError& error) {
    throw ToolError(kInputUnreadable, error.what());
  }
}

}  // namespace emulator::tool
