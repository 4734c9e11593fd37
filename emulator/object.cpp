#include "emulator/object.h"

namespace emulator {

Value Object::Call(std::string_view /*method*/, std::span<const Value> /*arguments*/) {
  throw HostError{kMethodMissing};
}

Value Object::Property(std::string_view /*name*/) { throw HostError{kPropertyMissing}; }

}  // namespace emulator
