#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "host/binary_interface.h"

namespace bench {

/// Every callback of one call, in order and with its arguments, to be made again without the library in
/// between: the least that any library making the same callbacks could cost.
class Recording {
 public:
  enum class Operation : std::uint8_t {
    kConvertResult,
    kPushInteger,
    kPushString,
    kPushGlobal,
    kPushGlobalInNamespace,
    kPopInteger,
    kPopString,
    kPopWideString,
    kPushMethod,
    kInvokeMethod,
    kPushProperty,
    kGetProperty,
    kGlobalDefined,
    kGlobalGet,
    kGlobalOrder,
    kPushUnsigned,
  };
  struct Callback {
    Operation operation;
    int length;           ///< of the text, or the one integer argument
    const void* text;     ///< kept by whoever made the call: a method's name, the library's chunk
    std::uint32_t value;  ///< object reference, unsigned integer, result type
  };

  /// A table that records into this object and passes everything on to `host`. One recording at a time.
  const vessa::HostServices* RecordOver(const vessa::HostServices* host);
  /// Makes the recorded callbacks against `host`.
  void Replay(const vessa::HostServices& host) const;

  std::size_t Count() const { return callbacks_.size(); }

 private:
  std::vector<Callback> callbacks_;
  friend struct RecordingCallbacks;
};

}  // namespace bench
