#pragma once

#include <memory>
#include <string>

#include "emulator/globals.h"
#include "emulator/store/access.h"
#include "emulator/stream_object.h"

namespace emulator {

/// One transaction of a store: the globals and, beside them, streams of pixel data, which have names of the store's
/// making. What a transaction with Access::kWrite has changed is kept, all of it, by Commit; otherwise nothing of it.
/// Failures throw StoreError; a write to a stream that fails, HostError.
class StoreTransaction {
 public:
  StoreTransaction() = default;
  virtual ~StoreTransaction() = default;
  StoreTransaction(const StoreTransaction&) = delete;
  StoreTransaction& operator=(const StoreTransaction&) = delete;

  /// The globals as the transaction sees them. Not to be used when it has ended.
  virtual std::shared_ptr<Globals> Nodes() = 0;

  struct NewPixels {
    std::string name;
    std::shared_ptr<StreamObject> stream;  ///< empty, to be written
  };
  virtual NewPixels CreatePixels() = 0;
  /// The stream, from its beginning.
  virtual std::shared_ptr<StreamObject> OpenPixels(const std::string& name) = 0;
  virtual void DropPixels(const std::string& name) = 0;

  /// Ends the transaction.
  virtual void Commit() = 0;
};

/// Where a host keeps data sets.
class DataStore {
 public:
  DataStore() = default;
  virtual ~DataStore() = default;
  DataStore(const DataStore&) = delete;
  DataStore& operator=(const DataStore&) = delete;

  /// With kWrite, waits until nobody else writes.
  virtual std::unique_ptr<StoreTransaction> Begin(Access access) = 0;
};

/// The store in a folder, made when there is none. Throws StoreError; always, where the program was built without one.
/// @param folder  in UTF-8
std::unique_ptr<DataStore> OpenDataStore(const std::string& folder);

/// As OpenDataStore, but throws where there is no store.
std::unique_ptr<DataStore> OpenExistingDataStore(const std::string& folder);

/// `vessa` in the folder for a user's data: $XDG_DATA_HOME, else ~/.local/share. Throws StoreError when the environment
/// names neither.
std::string DefaultStoreFolder();

}  // namespace emulator
