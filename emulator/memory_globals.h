#pragma once

#include <map>

#include "emulator/globals.h"

namespace emulator {

/// Globals that live as long as the object.
class MemoryGlobals : public Globals {
 protected:
  void Put(std::string_view key, std::string_view value) override;
  std::optional<Entry> Find(std::string_view key) const override;
  std::optional<Entry> FirstNotBefore(std::string_view key) const override;
  std::optional<Entry> LastBefore(std::string_view key) const override;
  void Erase(std::string_view first, std::string_view behind) override;

 private:
  std::map<std::string, std::string, std::less<>> nodes_;
};

}  // namespace emulator
