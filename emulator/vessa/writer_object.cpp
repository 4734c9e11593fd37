#include "emulator/vessa/writer_object.h"

#include <string>

#include "emulator/vessa/host_time.h"

namespace emulator::tool {

Value WriterObject::Call(std::string_view method, std::span<const Value> arguments) {
  if (method != "Write") return Object::Call(method, arguments);
  if (arguments.size() != 1) throw HostError{kWrongParameters};
  const HostTime host_time(progress_);
  try {
    if (const auto* const bytes = std::get_if<std::string>(arguments.data())) {
      take_(*bytes);
    } else {
      take_(AsBytes(arguments[0]));
    }
  } catch (...) {
    error_ = std::current_exception();
    throw HostError{kWriteError};
  }
  return std::string();
}

void WriterObject::RethrowError() const {
  if (error_) std::rethrow_exception(error_);
}

}  // namespace emulator::tool
