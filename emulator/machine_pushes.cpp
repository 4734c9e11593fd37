#include "emulator/host.h"
#include "emulator/machine.h"

namespace emulator {
/// Any argument; those that are common as subscripts have ways of their own.
void Machine::PushArgument(Value value) {
  if (!stack_.IsInReference()) {
    stack_.Next() = std::move(value);
    return stack_.Push(StackKind::kArgument);
  }
  try {
    stack_.PushSubscript(AsBytes(value));
  } catch (const HostError& error) {
    stack_.PushUnfitSubscript(error.code);
  }
}

void Machine::PushIntegerArgument(std::int64_t value) {
  stack_.Next() = value;
  stack_.Push(StackKind::kArgument);
}

void Machine::PushDouble(double value) { PushArgument(value); }

void Machine::PushObject(std::uint32_t oref) {
  if (oref != 0 && host_.Find(oref) == nullptr) throw HostError{kInvalidOref};
  PushArgument(ObjectRef{oref});
}

void Machine::PushUnits(int length, const std::uint16_t* text) {
  stack_.RequireRoom();
  const std::span<const std::uint16_t> units = ArgumentText(length, text);
  if (stack_.IsInReference()) return PushArgument(std::u16string(units.begin(), units.end()));
  stack_.NextText<std::u16string>().assign(units.begin(), units.end());
  stack_.Push(StackKind::kArgument);
}

void* Machine::NewLongBytes(vessa::LongStringDescriptor* descriptor, int length) {
  return long_strings_.NewBytes(descriptor, length);
}

void* Machine::NewLongUnits(vessa::LongStringDescriptor* descriptor, int length) {
  return long_strings_.NewUnits(descriptor, length);
}

void Machine::PushLongBytes(const vessa::LongStringDescriptor* descriptor) {
  stack_.RequireRoom();
  PushArgument(long_strings_.TakeBytes(descriptor));
}

void Machine::PushLongUnits(const vessa::LongStringDescriptor* descriptor) {
  stack_.RequireRoom();
  PushArgument(long_strings_.TakeUnits(descriptor));
}

void Machine::PushMethod(std::uint32_t oref, int length, const unsigned char* name, int result_wanted) {
  stack_.RequireNothingBegun();
  if (result_wanted != 0 && result_wanted != 1) throw HostError{kInvalidArgument};
  if (host_.Find(oref) == nullptr) throw HostError{kInvalidOref};
  stack_.NextText<std::string>() = Characters(ArgumentText(length, name));
  stack_.Push(StackKind::kMethod, oref, result_wanted == 1);
}

void Machine::PushProperty(std::uint32_t oref, int length, const unsigned char* name) {
  stack_.RequireNothingBegun();
  if (host_.Find(oref) == nullptr) throw HostError{kInvalidOref};
  stack_.NextText<std::string>() = Characters(ArgumentText(length, name));
  stack_.Push(StackKind::kProperty, oref, true);
}

}  // namespace emulator
