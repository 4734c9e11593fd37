#pragma once

#include <memory>

#include "emulator/globals.h"
#include "emulator/store/access.h"
#include "emulator/store/lmdb_environment.h"

// Of <lmdb.h>, which only the sources include.
struct MDB_cursor;
struct MDB_txn;

namespace emulator {

/// What Set answers for subscripts too long to be kept: the host's "max string".
inline constexpr int kMaxString = 5;

/// Globals in an LMDB database, as one transaction sees them. With kRead they stand still, whatever others commit
/// meanwhile. With kWrite, which waits until no other process writes, changes are kept by Commit and dropped by the
/// destructor.
///
/// All functions but Set take subscripts of any length; Set throws HostError (kMaxString) when the keys of name and
/// subscripts together exceed what LMDB holds (511 bytes). Failures of the database throw StoreError.
class LmdbGlobals : public Globals {
 public:
  LmdbGlobals(std::shared_ptr<const LmdbEnvironment> environment, Access access);
  ~LmdbGlobals() override;
  LmdbGlobals(const LmdbGlobals&) = delete;
  LmdbGlobals& operator=(const LmdbGlobals&) = delete;

  /// Transactions that write have numbers that grow; one that reads has that of the last whose changes it sees.
  std::int64_t Number() const;

  /// Keeps what was changed, on disk. Ends the transaction: no function may be called afterwards.
  void Commit();

 protected:
  void Put(std::string_view key, std::string_view value) override;
  std::optional<std::string_view> Find(std::string_view key) const override;
  std::optional<Entry> FirstNotBefore(std::string_view key) const override;
  std::optional<Entry> LastBefore(std::string_view key) const override;
  void Erase(std::string_view first, std::string_view behind) override;

 private:
  bool IsTooLong(std::string_view key) const;
  std::optional<Entry> Seek(std::string_view key) const;
  std::optional<Entry> Step(int operation) const;

  std::shared_ptr<const LmdbEnvironment> environment_;
  MDB_txn* transaction_ = nullptr;
  MDB_cursor* cursor_ = nullptr;
  unsigned int database_ = 0;
  std::size_t longest_key_ = 0;
};

}  // namespace emulator
