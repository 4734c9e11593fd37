#include "emulator/store/lmdb_environment.h"

#include <lmdb.h>

#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <system_error>

#include "emulator/store/store_error.h"

namespace emulator {
namespace {

// The database file grows as it is filled; this is only the room reserved for it among the addresses of the process.
constexpr std::size_t kMostBytes = std::size_t{1} << 40U;
constexpr std::size_t kFewestBytes = std::size_t{1} << 28U;

// rw for the owner alone: these are patients' data.
constexpr mdb_mode_t kFileMode = 0600;

std::filesystem::path PathOf(const std::string& utf8) { return std::u8string(utf8.begin(), utf8.end()); }

void MakeFolder(const std::string& folder) {
  std::error_code error;
  std::filesystem::create_directories(PathOf(folder), error);
  if (error) throw StoreError(folder + ": " + error.message());
}

}  // namespace

bool LmdbEnvironment::IsIn(const std::string& folder) {
  std::error_code error;
  return std::filesystem::exists(PathOf(folder) / "data.mdb", error);
}

LmdbEnvironment::LmdbEnvironment(const std::string& folder) : folder_(folder) {
  MakeFolder(folder);
  RequireSuccess(mdb_env_create(&handle_));
  const int code = Open();
  if (code == 0) return;
  mdb_env_close(handle_);
  RequireSuccess(code);
}

LmdbEnvironment::~LmdbEnvironment() { mdb_env_close(handle_); }

/// Reserves as much as the system allows to this process.
int LmdbEnvironment::Open() const {
  int code = ENOMEM;
  for (std::size_t bytes = kMostBytes; code == ENOMEM && bytes >= kFewestBytes; bytes /= 2) {
    code = mdb_env_set_mapsize(handle_, bytes);
    // Readers belong to their object, not to their thread.
    if (code == 0) code = mdb_env_open(handle_, folder_.c_str(), MDB_NOTLS, kFileMode);
  }
  if (code != 0) return code;
  int dead_readers = 0;  // of processes that were killed; they would keep old pages from being used again
  return mdb_reader_check(handle_, &dead_readers);
}

void LmdbEnvironment::RequireSuccess(int code) const {
  if (code != 0) throw StoreError(folder_ + ": " + mdb_strerror(code));
}

}  // namespace emulator
