#pragma once

#include <cstdint>
#include <span>

#include "bench/recorded_callback.h"
#include "host/binary_interface.h"

namespace bench {

/// Makes the callbacks against `host`, in their order, and does nothing else.
inline void MakeCallbacks(std::span<const RecordedCallback> callbacks, const vessa::HostServices& host) {
  using Operation = RecordedCallback::Operation;
  vessa::HostString receiver;
  int number = 0;
  unsigned char* popped = nullptr;
  std::uint16_t* popped_wide = nullptr;
  for (const RecordedCallback& callback : callbacks) {
    const auto* text = static_cast<const unsigned char*>(callback.text);
    switch (callback.operation) {
      case Operation::kConvertResult:
        host.convert_result(callback.length, &receiver);
        break;
      case Operation::kPushInteger:
        host.push_integer(callback.length);
        break;
      case Operation::kPushString:
        host.push_string(callback.length, text);
        break;
      case Operation::kPushGlobal:
        host.push_global(callback.length, text);
        break;
      case Operation::kPushGlobalInNamespace:
        host.push_global_in_namespace(callback.length, text, 0, text);
        break;
      case Operation::kPopInteger:
        host.pop_integer(&number);
        break;
      case Operation::kPopString:
        host.pop_string(&number, &popped);
        break;
      case Operation::kPopWideString:
        host.pop_wide_string(&number, &popped_wide);
        break;
      case Operation::kPushMethod:
        host.push_method(callback.value, callback.length, text, 1);
        break;
      case Operation::kInvokeMethod:
        host.invoke_method(callback.length);
        break;
      case Operation::kPushProperty:
        host.push_property(callback.value, callback.length, text);
        break;
      case Operation::kGetProperty:
        host.get_property();
        break;
      case Operation::kGlobalDefined:
        host.global_defined(callback.length, 0);
        break;
      case Operation::kGlobalGet:
        host.global_get(callback.length, 0);
        break;
      case Operation::kGlobalOrder:
        host.global_order(callback.length, 1, static_cast<int>(callback.value));
        break;
      case Operation::kPushUnsigned:
        host.push_unsigned(callback.value);
        break;
    }
  }
}

}  // namespace bench
