#pragma once

#include <cstdint>

namespace bench {

/// A callback as the library made it.
struct RecordedCallback {
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

  Operation operation;
  int length;           ///< of the text, or the one integer argument
  const void* text;     ///< kept by whoever made the call: a method's name, the library's chunk
  std::uint32_t value;  ///< object reference, unsigned integer, result type
};

}  // namespace bench
