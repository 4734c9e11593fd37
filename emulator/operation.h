#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace emulator {

/// The operations of the callback table that the host offers, in the order of their positions.
enum class Operation {
  kConvertResult,
  kPushInteger,
  kPushDouble,
  kPushString,
  kPushWideString,
  kPushGlobal,
  kPushGlobalInNamespace,
  kPopInteger,
  kPopString,
  kGlobalGet,
  kPushMethod,
  kInvokeMethod,
  kPushProperty,
  kGetProperty,
  kPushObject,
  kPushWideStringAlt,
  kPopWideString,
  kPushCounted,
  kGlobalOrder,
  kGlobalDefined,
  kNewLongString,
  kNewLongWideString,
  kPushLongString,
  kPushLongWideString,
  kPushLongWideStringAlt,
  kPushUnsigned,
};

inline constexpr std::size_t kOperationCount = static_cast<std::size_t>(Operation::kPushUnsigned) + 1;

/// "ConvertResult", "PushInteger", ...
std::string_view OperationName(Operation operation);

/// The operation of that name, if there is one.
std::optional<Operation> FindOperation(std::string_view name);

}  // namespace emulator
