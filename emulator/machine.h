#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/argument_text.h"
#include "emulator/globals.h"
#include "emulator/handed_out_text.h"
#include "emulator/long_strings.h"
#include "emulator/value_stack.h"
#include "host/binary_interface.h"

namespace emulator {

class Host;

/// What the host's callbacks do. Refusals are thrown as HostError, with nothing pushed and nothing popped; a node
/// without a value, which is no refusal, uses up its reference.
class Machine {
 public:
  explicit Machine(Host& host) : host_(host) {}

  // --- Pushes ---
  void PushInteger(std::int64_t value);
  void PushDouble(double value);
  void PushObject(std::uint32_t oref);
  void PushBytes(int length, const unsigned char* text);
  void PushUnits(int length, const std::uint16_t* text);
  void* NewLongBytes(vessa::LongStringDescriptor* descriptor, int length);
  void* NewLongUnits(vessa::LongStringDescriptor* descriptor, int length);
  void PushLongBytes(const vessa::LongStringDescriptor* descriptor);
  void PushLongUnits(const vessa::LongStringDescriptor* descriptor);

  // --- Objects ---
  void PushMethod(std::uint32_t oref, int length, const unsigned char* name, int result_wanted);
  void InvokeMethod(int arguments);
  void PushProperty(std::uint32_t oref, int length, const unsigned char* name);
  void GetProperty();

  // --- Globals ---
  void PushGlobal(int length, const unsigned char* name);
  void PushGlobalInNamespace(int length, const unsigned char* name, int namespace_length,
                             const unsigned char* name_space);
  void GlobalGet(int subscripts, int flag);
  void GlobalDefined(int subscripts, int flag);
  void GlobalOrder(int subscripts, int direction, int value_wanted);

  // --- Results ---
  void ConvertResult(int type, void* receiver);
  std::int32_t PopInteger();
  /// What is handed out stays as it is until Scribble.
  std::string& PopBytes();
  std::vector<std::uint16_t>& PopUnits();

  // --- Housekeeping ---
  ValueStack& Stack() { return stack_; }
  const ValueStack& Stack() const { return stack_; }
  LongStrings& Areas() { return long_strings_; }
  const LongStrings& Areas() const { return long_strings_; }
  /// What the last pop handed out is no longer the library's to read.
  void Scribble() {
    if (scribbling_) ScribbleAll();
  }
  void SetScribbling(bool on) { scribbling_ = on; }
  /// The method that InvokeMethod would call; empty when there is none.
  std::string_view MethodBegun() const;

 private:
  void ScribbleAll();
  void PushText(std::string_view text, StackKind kind);
  void PushArgument(Value value);
  template <class Result>
  void PushResult(Result&& value);
  void PushKept(const KeptValue& value);
  void MakeGlobalKey(std::string_view global);
  void PushSubscriptText(std::string_view subscript);
  void ConvertToCountedString(const Value& result, void* receiver);
  void PushIntegerArgument(std::int64_t value);

  Host& host_;
  ValueStack stack_;
  LongStrings long_strings_;
  HandedOutText<std::string> bytes_;
  HandedOutText<std::vector<std::uint16_t>> units_;
  std::string global_;  ///< pushed last, and the key that it makes: most references are to one global
  std::string global_key_;
  bool scribbling_ = true;
};

// What makes a reference, as most callbacks do.

inline void Machine::PushGlobal(int length, const unsigned char* name) {
  stack_.RequireNothingBegun();
  const std::string_view global = Characters(ArgumentText(length, name));
  if (global.empty() || global != global_) MakeGlobalKey(global);
  stack_.PushReference(global_key_);
}

inline void Machine::PushGlobalInNamespace(int length, const unsigned char* name, int namespace_length,
                                           const unsigned char* name_space) {
  if (!ArgumentText(namespace_length, name_space).empty()) throw HostError{kUnknownNamespace};
  PushGlobal(length, name);
}

inline void Machine::PushInteger(std::int64_t value) {
  if (stack_.IsInReference()) return stack_.PushSubscript(value);
  PushIntegerArgument(value);
}

inline void Machine::PushBytes(int length, const unsigned char* text) {
  stack_.RequireRoom();
  const std::string_view characters = Characters(ArgumentText(length, text));
  if (stack_.IsInReference()) return stack_.PushSubscript(characters);
  PushText(characters, StackKind::kArgument);
}

}  // namespace emulator
