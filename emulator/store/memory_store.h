#pragma once

#include <map>
#include <memory>
#include <string>

#include "emulator/store/data_store.h"

namespace emulator {

/// Data sets in memory, for as long as the object lives. Changes are kept as they are made: there is nobody else who
/// could see half of them.
class MemoryStore : public DataStore {
 public:
  MemoryStore();
  std::unique_ptr<StoreTransaction> Begin(Access access) override;

  struct Contents {
    std::shared_ptr<Globals> nodes;
    std::map<std::string, std::shared_ptr<StreamObject>, std::less<>> pixels;
    int last_name = 0;
  };

 private:
  std::shared_ptr<Contents> contents_;
};

}  // namespace emulator
