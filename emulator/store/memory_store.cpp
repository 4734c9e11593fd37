#include "emulator/store/memory_store.h"

#include "emulator/memory_globals.h"
#include "emulator/store/store_error.h"

namespace emulator {
namespace {

class MemoryTransaction : public StoreTransaction {
 public:
  explicit MemoryTransaction(std::shared_ptr<MemoryStore::Contents> contents)
      : contents_(std::move(contents)) {}

  std::shared_ptr<Globals> Nodes() override { return contents_->nodes; }

  NewPixels CreatePixels() override {
    NewPixels pixels{std::to_string(++contents_->last_name), std::make_shared<MemoryStream>()};
    contents_->pixels[pixels.name] = pixels.stream;
    return pixels;
  }

  std::shared_ptr<StreamObject> OpenPixels(const std::string& name) override {
    const auto found = contents_->pixels.find(name);
    if (found == contents_->pixels.end()) throw StoreError("no pixel data named " + name);
    found->second->MoveTo(1);
    return found->second;
  }

  void DropPixels(const std::string& name) override { contents_->pixels.erase(name); }

  void Commit() override {}

 private:
  std::shared_ptr<MemoryStore::Contents> contents_;
};

}  // namespace

MemoryStore::MemoryStore() : contents_(std::make_shared<Contents>()) {
  contents_->nodes = std::make_shared<MemoryGlobals>();
}

std::unique_ptr<StoreTransaction> MemoryStore::Begin(Access /*access*/) {
  return std::make_unique<MemoryTransaction>(contents_);
}

}  // namespace emulator
