#include "emulator/vessa/stop_object.h"

#include "emulator/vessa/host_time.h"

namespace emulator::tool {

Value StopObject::Call(std::string_view method, std::span<const Value> arguments) {
  const HostTime host_time(progress_);
  if (method != "ShouldStopDecomposition") throw HostError{kMethodMissing};
  if (arguments.size() != 1) throw HostError{kWrongParameters};
  const bool stops = path_.IsTopLevel() && rule_(static_cast<std::uint32_t>(AsInteger(arguments[0])));
  return std::int64_t{stops ? 1 : 0};
}

}  // namespace emulator::tool
