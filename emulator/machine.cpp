#include "emulator/machine.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "emulator/argument_text.h"
#include "emulator/collation.h"
#include "emulator/host.h"

namespace emulator {
namespace {

/// Integers leave the host as 32 bits; of larger ones the low bits.
std::int32_t LowBits(std::int64_t value) {
  return static_cast<std::int32_t>(
      static_cast<std::uint32_t>(static_cast<std::uint64_t>(value) & 0xFFFFFFFFU));
}

bool IsGlobalName(std::string_view name) {
  const auto fits = [](char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '.' || c == '%';
  };
  return !name.empty() && std::all_of(name.begin(), name.end(), fits);
}

std::string_view Characters(std::span<const unsigned char> text, std::string& storage) {
  storage.assign(text.begin(), text.end());
  return storage;
}

}  // namespace

// --- Objects -----------------------------------------------------------------------------------------------------

void Machine::InvokeMethod(int arguments) {
  const std::size_t begun = stack_.Begun(StackKind::kMethod, arguments);
  const ValueStack::Tag tag = stack_.TagAt(begun);
  const std::shared_ptr<Object> object = host_.Share(tag.oref);  // a method may remove its own object
  if (object == nullptr) throw HostError{kInvalidOref};
  Value result;
  {
    const ValueStack::Nesting nesting(stack_);
    result = object->Call(std::get<std::string>(stack_.ValueAt(begun)), stack_.Above(begun));
  }
  stack_.DropFrom(begun);
  if (tag.result_wanted) PushResult(std::move(result));
}

void Machine::GetProperty() {
  const std::size_t begun = stack_.Begun(StackKind::kProperty, 0);
  const std::shared_ptr<Object> object = host_.Share(stack_.TagAt(begun).oref);
  if (object == nullptr) throw HostError{kInvalidOref};
  Value result;
  {
    const ValueStack::Nesting nesting(stack_);
    result = object->Property(std::get<std::string>(stack_.ValueAt(begun)));
  }
  stack_.DropFrom(begun);
  PushResult(std::move(result));
}

// --- Globals -----------------------------------------------------------------------------------------------------

void Machine::PushGlobal(int length, const unsigned char* name) {
  stack_.RequireNothingBegun();
  const std::string_view text = Characters(ArgumentText(length, name), key_);
  if (!IsGlobalName(text)) throw HostError{kInvalidName};
  Value& place = stack_.Next();
  auto* kept = std::get_if<std::string>(&place);  // storage that is used again
  if (kept == nullptr) kept = &place.emplace<std::string>();
  kept->clear();
  AppendGlobal(text, *kept);
  stack_.Push({StackKind::kGlobal, 0, false});
}

void Machine::PushGlobalInNamespace(int length, const unsigned char* name, int namespace_length,
                                    const unsigned char* name_space) {
  if (!ArgumentText(namespace_length, name_space).empty()) throw HostError{kUnknownNamespace};
  PushGlobal(length, name);
}

const std::string& Machine::Key(std::size_t begun, std::size_t without) {
  key_ = std::get<std::string>(stack_.ValueAt(begun));
  const std::span<const Value> subscripts = stack_.Above(begun);
  for (const Value& subscript : subscripts.first(subscripts.size() - without))
    AppendSubscript(subscript, key_);
  return key_;
}

void Machine::GlobalGet(int subscripts, int flag) {
  if (flag != 0) throw HostError{kInvalidArgument};
  const std::size_t begun = stack_.Begun(StackKind::kGlobal, subscripts);
  std::optional<Value> value = host_.globals().GetKey(Key(begun, 0));
  stack_.DropFrom(begun);
  if (!value)
    throw HostError{kUndefinedNode};  // no refusal: the node was looked up, and its reference is used
  PushResult(*std::move(value));
}

void Machine::GlobalDefined(int subscripts, int flag) {
  if (flag != 0) throw HostError{kInvalidArgument};
  const std::size_t begun = stack_.Begun(StackKind::kGlobal, subscripts);
  const int defined = host_.globals().DefinedKey(Key(begun, 0));
  stack_.DropFrom(begun);
  PushResult(std::int64_t{defined});
}

void Machine::GlobalOrder(int subscripts, int direction, int value_wanted) {
  if (subscripts < 1 || (direction != 1 && direction != -1)) throw HostError{kInvalidArgument};
  if (value_wanted != 0 && value_wanted != 1) throw HostError{kInvalidArgument};
  const std::size_t begun = stack_.Begun(StackKind::kGlobal, subscripts);
  stack_.RequireRoom();  // two entries or more go, and three may come
  std::string last;
  AppendSubscript(stack_.Above(begun).back(), last);
  NextSubscript next = host_.globals().OrderKey(Key(begun, 1), last, direction);
  stack_.DropFrom(begun);
  // Popped from the top: whether there is a value, the value, the subscript.
  PushResult(std::move(next.subscript));
  if (value_wanted == 0) return;
  const std::int64_t has_value = next.value ? 1 : 0;
  if (next.value) PushResult(*std::move(next.value));
  PushResult(has_value);
}

// --- Results -----------------------------------------------------------------------------------------------------

void Machine::PushResult(Value value) {
  stack_.Next() = std::move(value);
  stack_.Push({StackKind::kResult, 0, false});
}

void Machine::ConvertResult(int type, void* receiver) {
  const Value& result = stack_.TopResult(kNoResult);
  if (receiver == nullptr) throw HostError{kInvalidArgument};
  if (type == vessa::kConvertToInteger) {
    *static_cast<std::int32_t*>(receiver) = LowBits(AsInteger(result));
  } else if (type == vessa::kConvertToCountedString) {
    ConvertToCountedString(result, receiver);
  } else {
    throw HostError{kInvalidArgument};
  }
  stack_.Drop();
}

void Machine::ConvertToCountedString(const Value& result, void* receiver) {
  auto& string = *static_cast<vessa::HostString*>(receiver);
  const std::size_t capacity = string.count;
  if (capacity > vessa::HostString::kCapacity) throw HostError{kInvalidArgument};
  const auto* text = std::get_if<std::string>(&result);
  if (text == nullptr) AssignBytes(result, bytes_.Place());
  const std::string& bytes = text != nullptr ? *text : bytes_.Place();
  const std::size_t fitting = std::min(bytes.size(), capacity);
  std::copy_n(bytes.begin(), fitting, string.bytes);
  string.count = static_cast<std::uint16_t>(fitting);
  if (fitting < bytes.size()) throw HostError{kBufferTooSmall};
}

std::int32_t Machine::PopInteger() {
  const std::int32_t value = LowBits(AsInteger(stack_.TopResult(kInvalidArgument)));
  stack_.Drop();
  return value;
}

std::string& Machine::PopBytes() {
  Value& result = stack_.TopResult(kInvalidArgument);
  if (auto* text = std::get_if<std::string>(&result)) {
    bytes_.Place().swap(*text);
  } else {
    AssignBytes(result, bytes_.Place());
  }
  stack_.Drop();
  return bytes_.Place();
}

std::vector<std::uint16_t>& Machine::PopUnits() {
  const Value& result = stack_.TopResult(kInvalidArgument);
  if (const auto* const bytes = std::get_if<std::string>(&result)) {
    const auto unit = [](char byte) { return static_cast<unsigned char>(byte); };
    units_.Place().resize(bytes->size());
    std::transform(bytes->begin(), bytes->end(), units_.Place().begin(), unit);
  } else {
    const std::u16string text = AsWideText(result);
    units_.Place().assign(text.begin(), text.end());
  }
  stack_.Drop();
  return units_.Place();
}

// --- Housekeeping ------------------------------------------------------------------------------------------------

void Machine::Scribble() {
  if (!scribbling_) return;
  bytes_.Scribble();
  units_.Scribble();
}

std::string_view Machine::MethodBegun() const {
  const Value* name = stack_.MethodBegun();
  if (name == nullptr) return {};
  return std::get<std::string>(*name);
}

}  // namespace emulator
