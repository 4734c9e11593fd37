#pragma once

#include <span>
#include <string_view>

#include "emulator/host_error.h"
#include "emulator/value.h"

namespace emulator {

/// An object of the host: what answers to an oref.
class Object {
 public:
  Object() = default;
  virtual ~Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  /// Calls a method. The arguments live until it returns. A method may call into the library again.
  /// @throws HostError  what the callback then answers; kMethodMissing unless overridden
  virtual Value Call(std::string_view method, std::span<const Value> arguments);

  /// @throws HostError  what the callback then answers; kPropertyMissing unless overridden
  virtual Value Property(std::string_view name);
};

}  // namespace emulator
