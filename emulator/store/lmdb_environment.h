#pragma once

#include <cstdint>
#include <string>

// Of <lmdb.h>, which only the sources include.
struct MDB_env;

namespace emulator {

/// A folder with an LMDB database, opened. A process opens each folder once, and not across a fork. Any number of
/// processes may read while one writes; what a process that was killed had begun is gone.
class LmdbEnvironment {
 public:
  /// Makes the folder and the database when there are none.
  /// @param folder  in UTF-8
  /// @throws StoreError
  explicit LmdbEnvironment(const std::string& folder);
  ~LmdbEnvironment();
  LmdbEnvironment(const LmdbEnvironment&) = delete;
  LmdbEnvironment& operator=(const LmdbEnvironment&) = delete;

  /// True when the folder holds a database.
  static bool IsIn(const std::string& folder);

  /// Number of the oldest transaction that anybody still reads from; above all numbers when nobody reads.
  std::int64_t OldestReader() const;

  MDB_env* Handle() const { return handle_; }
  const std::string& Folder() const { return folder_; }

  /// Throws a StoreError with LMDB's words unless the code is 0.
  void RequireSuccess(int code) const;

 private:
  int Open() const;

  std::string folder_;
  MDB_env* handle_ = nullptr;
};

}  // namespace emulator
