#include "emulator/store/lmdb_globals.h"

#include <lmdb.h>

#include "emulator/host_error.h"
#include "emulator/store/store_error.h"

namespace emulator {
namespace {

/// LMDB takes all bytes through one structure, those that it only reads as well.
MDB_val ReadOnly(std::string_view bytes) {
  return {bytes.size(), const_cast<char*>(bytes.data())};  // NOLINT(cppcoreguidelines-pro-type-const-cast)
}

std::string_view BytesOf(const MDB_val& value) {
  return {static_cast<const char*>(value.mv_data), value.mv_size};
}

}  // namespace

LmdbGlobals::LmdbGlobals(std::shared_ptr<const LmdbEnvironment> environment, Access access)
    : environment_(std::move(environment)),
      longest_key_(static_cast<std::size_t>(mdb_env_get_maxkeysize(environment_->Handle()))) {
  const unsigned int flags = access == Access::kRead ? MDB_RDONLY : 0;
  environment_->RequireSuccess(mdb_txn_begin(environment_->Handle(), nullptr, flags, &transaction_));
  int code = mdb_dbi_open(transaction_, nullptr, 0, &database_);
  if (code == 0) code = mdb_cursor_open(transaction_, database_, &cursor_);
  if (code == 0) return;
  mdb_txn_abort(transaction_);
  environment_->RequireSuccess(code);
}

LmdbGlobals::~LmdbGlobals() {
  if (transaction_ == nullptr) return;
  mdb_cursor_close(cursor_);
  mdb_txn_abort(transaction_);
}

std::int64_t LmdbGlobals::Number() const { return static_cast<std::int64_t>(mdb_txn_id(transaction_)); }

void LmdbGlobals::Commit() {
  mdb_cursor_close(cursor_);
  MDB_txn* const transaction = transaction_;
  transaction_ = nullptr;  // a commit that fails ends it, too
  environment_->RequireSuccess(mdb_txn_commit(transaction));
}

void LmdbGlobals::Put(std::string_view key, std::string_view value) {
  if (IsTooLong(key)) throw HostError{kMaxString};
  MDB_val key_bytes = ReadOnly(key);
  MDB_val value_bytes = ReadOnly(value);
  environment_->RequireSuccess(mdb_put(transaction_, database_, &key_bytes, &value_bytes, 0));
}

std::optional<std::string_view> LmdbGlobals::Find(std::string_view key) const {
  if (IsTooLong(key)) return std::nullopt;
  MDB_val key_bytes = ReadOnly(key);
  MDB_val value_bytes{};
  const int code = mdb_get(transaction_, database_, &key_bytes, &value_bytes);
  if (code == MDB_NOTFOUND) return std::nullopt;
  environment_->RequireSuccess(code);
  return BytesOf(value_bytes);
}

std::optional<Globals::Entry> LmdbGlobals::FirstNotBefore(std::string_view key) const { return Seek(key); }

std::optional<Globals::Entry> LmdbGlobals::LastBefore(std::string_view key) const {
  return Seek(key) ? Step(MDB_PREV) : Step(MDB_LAST);
}

void LmdbGlobals::Erase(std::string_view first, std::string_view behind) {
  for (auto entry = Seek(first); entry && entry->key < behind; entry = Seek(first)) {
    environment_->RequireSuccess(mdb_cursor_del(cursor_, 0));
  }
}

bool LmdbGlobals::IsTooLong(std::string_view key) const { return key.size() > longest_key_; }

/// Moves the cursor to the first key from `key` on. A key that is too long comes behind the longest beginning of it
/// that can be kept, and before whatever follows that.
std::optional<Globals::Entry> LmdbGlobals::Seek(std::string_view key) const {
  MDB_val key_bytes = ReadOnly(key.substr(0, longest_key_));
  MDB_val value_bytes{};
  const int code = mdb_cursor_get(cursor_, &key_bytes, &value_bytes, MDB_SET_RANGE);
  if (code == MDB_NOTFOUND) return std::nullopt;
  environment_->RequireSuccess(code);
  if (IsTooLong(key) && BytesOf(key_bytes) < key) return Step(MDB_NEXT);
  return Entry{BytesOf(key_bytes), BytesOf(value_bytes)};
}

std::optional<Globals::Entry> LmdbGlobals::Step(int operation) const {
  MDB_val key_bytes{};
  MDB_val value_bytes{};
  const int code = mdb_cursor_get(cursor_, &key_bytes, &value_bytes, static_cast<MDB_cursor_op>(operation));
  if (code == MDB_NOTFOUND) return std::nullopt;
  environment_->RequireSuccess(code);
  return Entry{BytesOf(key_bytes), BytesOf(value_bytes)};
}

}  // namespace emulator
