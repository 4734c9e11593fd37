#include "emulator/argument_text.h"
#include "emulator/host.h"
#include "emulator/machine.h"

namespace emulator {
namespace {

constexpr ValueStack::Tag kArgument{};

/// Texts come as unsigned bytes and units and are kept as characters, into storage that is used again.
template <class Text, class Unit>
void Assign(int length, const Unit* text, Value& place) {
  const auto view = ArgumentText(length, text);
  auto* kept = std::get_if<Text>(&place);
  if (kept == nullptr) kept = &place.emplace<Text>();
  kept->assign(view.begin(), view.end());
}

}  // namespace

void Machine::PushInteger(std::int64_t value) {
  stack_.Next() = value;
  stack_.Push(kArgument);
}

void Machine::PushDouble(double value) {
  stack_.Next() = value;
  stack_.Push(kArgument);
}

void Machine::PushObject(std::uint32_t oref) {
  if (oref != 0 && host_.Find(oref) == nullptr) throw HostError{kInvalidOref};
  stack_.Next() = ObjectRef{oref};
  stack_.Push(kArgument);
}

void Machine::PushBytes(int length, const unsigned char* text) {
  Assign<std::string>(length, text, stack_.Next());
  stack_.Push(kArgument);
}

void Machine::PushUnits(int length, const std::uint16_t* text) {
  Assign<std::u16string>(length, text, stack_.Next());
  stack_.Push(kArgument);
}

void* Machine::NewLongBytes(vessa::LongStringDescriptor* descriptor, int length) {
  return long_strings_.NewBytes(descriptor, length);
}

void* Machine::NewLongUnits(vessa::LongStringDescriptor* descriptor, int length) {
  return long_strings_.NewUnits(descriptor, length);
}

void Machine::PushLongBytes(const vessa::LongStringDescriptor* descriptor) {
  Value& place = stack_.Next();
  place = long_strings_.TakeBytes(descriptor);
  stack_.Push(kArgument);
}

void Machine::PushLongUnits(const vessa::LongStringDescriptor* descriptor) {
  Value& place = stack_.Next();
  place = long_strings_.TakeUnits(descriptor);
  stack_.Push(kArgument);
}

void Machine::PushMethod(std::uint32_t oref, int length, const unsigned char* name, int result_wanted) {
  stack_.RequireNothingBegun();
  if (result_wanted != 0 && result_wanted != 1) throw HostError{kInvalidArgument};
  if (host_.Find(oref) == nullptr) throw HostError{kInvalidOref};
  Assign<std::string>(length, name, stack_.Next());
  stack_.Push({StackKind::kMethod, oref, result_wanted == 1});
}

void Machine::PushProperty(std::uint32_t oref, int length, const unsigned char* name) {
  stack_.RequireNothingBegun();
  if (host_.Find(oref) == nullptr) throw HostError{kInvalidOref};
  Assign<std::string>(length, name, stack_.Next());
  stack_.Push({StackKind::kProperty, oref, true});
}

}  // namespace emulator
