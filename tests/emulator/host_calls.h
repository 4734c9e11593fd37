#pragma once

// The callbacks as a library makes them, in the shape that tests like.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/host.h"

namespace emulator {

inline const vessa::HostServices& Callbacks() { return *Host::Table(); }

inline const unsigned char* Units(std::string_view text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

inline int Length(std::string_view text) { return static_cast<int>(text.size()); }

inline int PushText(std::string_view text) { return Callbacks().push_string(Length(text), Units(text)); }

inline int PushMethod(std::uint32_t oref, std::string_view name, int result_wanted = 1) {
  return Callbacks().push_method(oref, Length(name), Units(name), result_wanted);
}

inline int PushProperty(std::uint32_t oref, std::string_view name) {
  return Callbacks().push_property(oref, Length(name), Units(name));
}

inline int PushGlobal(std::string_view name) { return Callbacks().push_global(Length(name), Units(name)); }

/// A pop's status and what it handed out.
struct PoppedText {
  int status = 0;
  std::string text;
};

inline PoppedText PopText() {
  int length = 0;
  unsigned char* text = nullptr;
  const int status = Callbacks().pop_string(&length, &text);
  if (status != 0) return {status, {}};
  return {0, std::string(text, text + length)};
}

struct PoppedUnits {
  int status = 0;
  std::u16string text;
};

inline PoppedUnits PopUnits() {
  int length = 0;
  std::uint16_t* text = nullptr;
  const int status = Callbacks().pop_wide_string(&length, &text);
  if (status != 0) return {status, {}};
  return {0, std::u16string(text, text + length)};
}

struct PoppedInteger {
  int status = 0;
  int value = 0;
};

inline PoppedInteger PopInteger() {
  PoppedInteger popped;
  popped.status = Callbacks().pop_integer(&popped.value);
  return popped;
}

inline PoppedInteger ConvertToInteger() {
  std::int32_t value = 0;
  const int status = Callbacks().convert_result(vessa::kConvertToInteger, &value);
  return {status, value};
}

/// An object that answers every method and property with the same value.
class Answer : public Object {
 public:
  explicit Answer(Value value) : value_(std::move(value)) {}
  Value Call(std::string_view /*method*/, std::span<const Value> arguments) override {
    arguments_.assign(arguments.begin(), arguments.end());
    return value_;
  }
  Value Property(std::string_view /*name*/) override { return value_; }

  const std::vector<Value>& Arguments() const { return arguments_; }

 private:
  Value value_;
  std::vector<Value> arguments_;
};

/// Leaves the value on the stack as the result of a method.
inline void LeaveResult(Host& host, Value value) {
  const std::uint32_t oref = host.Add(std::make_shared<Answer>(std::move(value)));
  PushMethod(oref, "Get");
  Callbacks().invoke_method(0);
}

}  // namespace emulator
