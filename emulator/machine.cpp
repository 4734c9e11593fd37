#include "emulator/machine.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "emulator/argument_text.h"
#include "emulator/collation.h"
#include "emulator/host.h"

namespace emulator {
namespace {

constexpr std::size_t kShortText = 15;

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

}  // namespace

template <class Result>
void Machine::PushResult(Result&& value) {
  stack_.Next() = std::forward<Result>(value);
  stack_.Push(StackKind::kResult);
}

// --- Objects -----------------------------------------------------------------------------------------------------

void Machine::InvokeMethod(int arguments) {
  const std::size_t begun = stack_.Begun(StackKind::kMethod, arguments);
  const ValueStack::Tag tag = stack_.TagAt(begun);
  const std::shared_ptr<Object> object = host_.Share(tag.of);  // a method may remove its own object
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
  const std::shared_ptr<Object> object = host_.Share(stack_.TagAt(begun).of);
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

void Machine::MakeGlobalKey(std::string_view global) {
  if (!IsGlobalName(global)) throw HostError{kInvalidName};
  global_key_ = GlobalKey(global);
  global_ = global;
}

void Machine::GlobalGet(int subscripts, int flag) {
  if (flag != 0) throw HostError{kInvalidArgument};
  const ValueStack::Reference node = stack_.ReferenceBegun(subscripts);
  const std::optional<KeptValue> value = host_.globals().GetKey(node.key);
  stack_.DropFrom(node.entry);
  if (!value)
    throw HostError{kUndefinedNode};  // no refusal: the node was looked up, and its reference is used
  PushKept(*value);
}

void Machine::GlobalDefined(int subscripts, int flag) {
  if (flag != 0) throw HostError{kInvalidArgument};
  const ValueStack::Reference node = stack_.ReferenceBegun(subscripts);
  const int defined = host_.globals().DefinedKey(node.key);
  stack_.DropFrom(node.entry);
  PushResult(std::int64_t{defined});
}

void Machine::GlobalOrder(int subscripts, int direction, int value_wanted) {
  if (subscripts < 1 || (direction != 1 && direction != -1)) throw HostError{kInvalidArgument};
  if (value_wanted != 0 && value_wanted != 1) throw HostError{kInvalidArgument};
  const ValueStack::Reference node = stack_.ReferenceBegun(subscripts);
  stack_.RequireRoom();  // two entries or more go, and three may come
  const KeptNeighbour next = host_.globals().OrderKey(node.key, node.level_size, direction);
  stack_.DropFrom(node.entry);
  // Popped from the top: whether there is a value, the value, the subscript.
  PushSubscriptText(next.subscript);
  if (value_wanted == 0) return;
  if (next.value) PushKept(*next.value);
  PushResult(std::int64_t{next.value ? 1 : 0});
}

// --- Results -----------------------------------------------------------------------------------------------------

void Machine::PushText(std::string_view text, StackKind kind) {
  stack_.NextText<std::string>() = text;
  stack_.Push(kind);
}

void Machine::PushKept(const KeptValue& value) {
  if (value.IsWide()) return PushResult(value.Restored());
  PushText(value.Bytes(), StackKind::kResult);
}

/// Empty where there is no subscript.
void Machine::PushSubscriptText(std::string_view subscript) {
  auto& text = stack_.NextText<std::string>();
  if (subscript.empty()) {
    text.clear();
  } else {
    AssignSubscriptText(subscript, text);
  }
  stack_.Push(StackKind::kResult);
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
  if (auto* const text = std::get_if<std::string>(&result)) {
    // A short one is copied: that takes less than a swap, and the next value finds storage of its own kind.
    if (text->size() <= kShortText) {
      bytes_.Place().assign(*text);
    } else {
      bytes_.Place().swap(*text);
    }
  } else {
    AssignBytes(result, bytes_.Place());
  }
  stack_.Drop();
  return bytes_.Place();
}

std::vector<std::uint16_t>& Machine::PopUnits() {
  const Value& result = stack_.TopResult(kInvalidArgument);
  if (const auto* const text = std::get_if<std::string>(&result)) {
    const auto* const bytes = reinterpret_cast<const unsigned char*>(text->data());
    units_.Place().assign(bytes, bytes + text->size());
  } else {
    const std::u16string wide = AsWideText(result);
    units_.Place().assign(wide.begin(), wide.end());
  }
  stack_.Drop();
  return units_.Place();
}

// --- Housekeeping ------------------------------------------------------------------------------------------------

void Machine::ScribbleAll() {
  bytes_.Scribble();
  units_.Scribble();
}

std::string_view Machine::MethodBegun() const {
  const Value* name = stack_.MethodBegun();
  if (name == nullptr) return {};
  return std::get<std::string>(*name);
}

}  // namespace emulator
