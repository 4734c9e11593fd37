#include "emulator/store/lmdb_store.h"

#include <vector>

#include "emulator/store/lmdb_globals.h"
#include "emulator/store/store_error.h"

namespace emulator {
namespace {

class LmdbTransaction : public StoreTransaction {
 public:
  LmdbTransaction(const std::shared_ptr<const LmdbEnvironment>& environment, LmdbPixelFiles files,
                  Access access)
      : environment_(environment),
        files_(std::move(files)),
        nodes_(std::make_shared<LmdbGlobals>(environment, access)) {
    if (access == Access::kWrite) files_.Recover(*nodes_, environment_->OldestReader());
  }

  ~LmdbTransaction() override {
    for (const auto& file : created_) files_.Remove(file.name);
  }
  LmdbTransaction(const LmdbTransaction&) = delete;
  LmdbTransaction& operator=(const LmdbTransaction&) = delete;

  std::shared_ptr<Globals> Nodes() override { return nodes_; }

  NewPixels CreatePixels() override {
    created_.push_back(files_.Create(*nodes_));
    return {created_.back().name, created_.back().stream};
  }

  std::shared_ptr<StreamObject> OpenPixels(const std::string& name) override {
    for (const auto& file : created_) {
      if (file.name == name) file.stream->Flush();
    }
    return files_.Open(name);
  }

  void DropPixels(const std::string& name) override {
    LmdbPixelFiles::Drop(*nodes_, name, nodes_->Number());
    dropped_.push_back(name);
  }

  void Commit() override {
    for (const auto& file : created_) files_.Sync(file);
    const std::int64_t number = nodes_->Number();
    nodes_->Commit();
    for (const auto& file : created_) files_.Settle(file.name);
    if (environment_->OldestReader() >= number) {  // else a later transaction removes them
      for (const auto& name : dropped_) files_.Remove(name);
    }
    created_.clear();
    dropped_.clear();
  }

 private:
  std::shared_ptr<const LmdbEnvironment> environment_;
  LmdbPixelFiles files_;
  std::shared_ptr<LmdbGlobals> nodes_;
  std::vector<LmdbPixelFiles::NewFile> created_;
  std::vector<std::string> dropped_;
};

}  // namespace

LmdbStore::LmdbStore(const std::string& folder)
    : environment_(std::make_shared<const LmdbEnvironment>(folder)), files_(folder) {}

std::unique_ptr<StoreTransaction> LmdbStore::Begin(Access access) {
  return std::make_unique<LmdbTransaction>(environment_, files_, access);
}

std::unique_ptr<DataStore> OpenDataStore(const std::string& folder) {
  return std::make_unique<LmdbStore>(folder);
}

std::unique_ptr<DataStore> OpenExistingDataStore(const std::string& folder) {
  if (!LmdbEnvironment::IsIn(folder)) throw StoreError(folder + ": no store is there");
  return OpenDataStore(folder);
}

}  // namespace emulator
