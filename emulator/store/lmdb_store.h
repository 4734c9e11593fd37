#pragma once

#include <memory>
#include <string>

#include "emulator/store/data_store.h"
#include "emulator/store/lmdb_environment.h"
#include "emulator/store/lmdb_pixel_files.h"

namespace emulator {

/// Data sets in a folder: globals in LMDB, pixel data in files. A process that is killed while it writes leaves the
/// store as the last commit made it.
class LmdbStore : public DataStore {
 public:
  /// As OpenDataStore.
  explicit LmdbStore(const std::string& folder);

  std::unique_ptr<StoreTransaction> Begin(Access access) override;

 private:
  std::shared_ptr<const LmdbEnvironment> environment_;
  LmdbPixelFiles files_;
};

}  // namespace emulator
