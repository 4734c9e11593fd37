#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "bench/library_under_test.h"
#include "emulator/host.h"
#include "emulator/object.h"
#include "emulator/store/data_store.h"

namespace bench {

/// Imports a data set as the tool does: decomposed by the library, stored in one transaction.
/// @return  elements stored
std::int64_t Import(LibraryUnderTest& library, emulator::DataStore& store, const std::string& id,
                    const std::string& bytes, const char* syntax);

/// The arguments of zfComposeStream for a stored data set; 0 for no pixel data.
std::string ComposeArguments(const std::string& id, const char* syntax, std::uint32_t output_oref,
                             std::uint32_t pixels_oref);

/// Takes what is written to it into memory that it has from the start, up to its size; like a stream of a host that knows
/// how much will come.
class MemoryOutput : public emulator::Object {
 public:
  explicit MemoryOutput(std::size_t size) : bytes_(size, '\0') {}
  emulator::Value Call(std::string_view method, std::span<const emulator::Value> arguments) override;

  void Clear() { used_ = 0; }
  std::string_view Bytes() const { return std::string_view(bytes_).substr(0, used_); }

 private:
  std::string bytes_;
  std::size_t used_ = 0;
};

}  // namespace bench
