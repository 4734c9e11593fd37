#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string_view>
#include <utility>

#include "emulator/object.h"
#include "emulator/vessa/element_path.h"

namespace emulator::tool {

/// The tag at which a decomposition is to stop; empty for none.
using StopRule = std::function<bool(std::uint32_t tag)>;

/// The client that the library asks before each element. It stops between elements of the top level only: inside an
/// item the library takes a stop for damage of the data.
class StopObject : public Object {
 public:
  StopObject(StopRule rule, const ElementPath& path, CallProgress& progress)
      : rule_(std::move(rule)), path_(path), progress_(progress) {}

  Value Call(std::string_view method, std::span<const Value> arguments) override;

 private:
  StopRule rule_;
  const ElementPath& path_;
  CallProgress& progress_;
};

}  // namespace emulator::tool
