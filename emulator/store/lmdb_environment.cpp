#include "emulator/store/lmdb_environment.h"

#include <lmdb.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstddef>
#include <filesystem>
#include <limits>
#include <string_view>
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

/// Of LMDB's table of readers, which is for people: a title, then lines with process, thread and number of the
/// transaction, "-" for none.
int TakeReader(const char* line, void* oldest) {
  std::string_view text(line);
  text.remove_suffix(text.ends_with('\n') ? 1 : 0);
  text.remove_prefix(text.rfind(' ') + 1);
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  auto& least = *static_cast<std::int64_t*>(oldest);
  if (error == std::errc()) least = std::min(least, number);
  return 0;
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

std::int64_t LmdbEnvironment::OldestReader() const {
  int dead_readers = 0;
  RequireSuccess(mdb_reader_check(handle_, &dead_readers));
  std::int64_t oldest = std::numeric_limits<std::int64_t>::max();
  if (mdb_reader_list(handle_, TakeReader, &oldest) < 0)
    throw StoreError(folder_ + ": readers are not known");
  return oldest;
}

void LmdbEnvironment::RequireSuccess(int code) const {
  if (code != 0) throw StoreError(folder_ + ": " + mdb_strerror(code));
}

}  // namespace emulator
