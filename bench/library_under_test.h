#pragma once

#include <string>
#include <string_view>

#include "emulator/library.h"
#include "host/binary_interface.h"

namespace bench {

/// The loaded library with a callback table of the benchmark's choice. A call that fails throws its message.
class LibraryUnderTest {
 public:
  explicit LibraryUnderTest(const vessa::HostServices* services);

  void DecomposeStream(std::string_view transfer_syntax);

 private:
  emulator::Library library_;
};

}  // namespace bench
