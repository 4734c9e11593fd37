#pragma once

#include <span>
#include <string>
#include <string_view>

#include "emulator/content_events.h"
#include "emulator/object.h"

namespace emulator {

/// A content handler that hands each event to a sink, which outlives it.
class SinkObject : public Object {
 public:
  explicit SinkObject(ContentSink& sink) : sink_(sink) {}

  Value Call(std::string_view method, std::span<const Value> arguments) override {
    DispatchEvent(method, arguments, sink_);
    return std::string();
  }

 private:
  ContentSink& sink_;
};

}  // namespace emulator
