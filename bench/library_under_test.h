#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "emulator/list.h"
#include "emulator/platform/shared_object.h"
#include "host/binary_interface.h"

namespace bench {

/// The built library, loaded, with a callback table of the benchmark's choice.
class LibraryUnderTest {
 public:
  explicit LibraryUnderTest(const vessa::HostServices* services);

  /// Makes one call with a value list in its buffer, as a host does, and looks at the status alone.
  /// @throws std::runtime_error  the call's own message when it failed
  void Call(std::string_view name, std::string_view arguments);

  /// The same for a call-out of three integers.
  void Call(std::string_view name, std::int32_t first, std::int32_t second, std::int32_t third);

  /// What the last call answered behind its status, item by item.
  std::vector<emulator::ListValue> Answer() const;

  /// Over the stream that the host serves, with a content handler and no client.
  void DecomposeStream(std::string_view transfer_syntax);

 private:
  const vessa::CallOutRow& Row(std::string_view name) const;

  emulator::SharedObject object_;
  const vessa::CallOutRow* table_;
  vessa::HostString buffer_;
};

}  // namespace bench
