#pragma once

#include <exception>
#include <memory>
#include <span>
#include <string_view>

#include "emulator/object.h"
#include "emulator/vessa/content_sink.h"
#include "emulator/vessa/element_path.h"

namespace emulator::tool {

/// The content handler that the library calls: hands each event to a sink and follows the path of open elements.
class HandlerObject : public Object {
 public:
  HandlerObject(ContentSink& sink, ElementPath& path, CallProgress& progress)
      : sink_(sink), path_(path), progress_(progress) {}

  Value Call(std::string_view method, std::span<const Value> arguments) override;

  /// Throws what a sink threw during an event, which failed with it. No exception can pass through the library.
  void RethrowError() const;

 private:
  ContentSink& sink_;
  ElementPath& path_;
  CallProgress& progress_;
  std::exception_ptr error_;
};

}  // namespace emulator::tool
