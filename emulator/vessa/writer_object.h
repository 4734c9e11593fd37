#pragma once

#include <exception>
#include <functional>
#include <span>
#include <string_view>
#include <utility>

#include "emulator/object.h"
#include "emulator/vessa/call_progress.h"

namespace emulator::tool {

/// The stream that the library writes to: hands the bytes of each Write to a function.
class WriterObject : public Object {
 public:
  using Take = std::function<void(std::string_view bytes)>;

  WriterObject(Take take, CallProgress& progress) : take_(std::move(take)), progress_(progress) {}

  Value Call(std::string_view method, std::span<const Value> arguments) override;

  /// Throws what the function threw during a write. The library swallows failures of the last one.
  void RethrowError() const;

 private:
  Take take_;
  CallProgress& progress_;
  std::exception_ptr error_;
};

}  // namespace emulator::tool
