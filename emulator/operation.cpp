#include "emulator/operation.h"

#include <algorithm>
#include <array>

namespace emulator {
namespace {

constexpr std::array<std::string_view, kOperationCount> kNames = {
    "ConvertResult",
    "PushInteger",
    "PushDouble",
    "PushString",
    "PushWideString",
    "PushGlobal",
    "PushGlobalInNamespace",
    "PopInteger",
    "PopString",
    "GlobalGet",
    "PushMethod",
    "InvokeMethod",
    "PushProperty",
    "GetProperty",
    "PushObject",
    "PushWideStringAlt",
    "PopWideString",
    "PushCounted",
    "GlobalOrder",
    "GlobalDefined",
    "NewLongString",
    "NewLongWideString",
    "PushLongString",
    "PushLongWideString",
    "PushLongWideStringAlt",
    "PushUnsigned",
};

}  // namespace

std::string_view OperationName(Operation operation) { return kNames.at(static_cast<std::size_t>(operation)); }

std::optional<Operation> FindOperation(std::string_view name) {
  const auto found = std::find(kNames.begin(), kNames.end(), name);
  if (found == kNames.end()) return std::nullopt;
  return static_cast<Operation>(found - kNames.begin());
}

}  // namespace emulator
