#include "emulator/value_stack.h"

namespace emulator {

void ValueStack::Clear() {
  DropDownTo(base_);
  left_behind_ = 0;
}

void ValueStack::PushUnfitSubscript(int refusal) {
  RequireRoom();
  PushSubscriptAt(keys_.Size());
  Tag& top = tags_[depth_ - 1];
  if (top.refusal == 0) top.refusal = refusal;
}

void ValueStack::RequireNoneBegunBelow() const {
  for (std::size_t entry = depth_; entry > std::max(base_, interrupted_); --entry) {
    const StackKind kind = tags_[entry - 1].kind;
    if (kind != StackKind::kArgument && kind != StackKind::kResult) throw HostError{kInvalidArgument};
  }
}

std::size_t ValueStack::Begun(StackKind kind, int arguments) const {
  if (arguments < 0 || static_cast<std::size_t>(arguments) >= depth_ - base_)
    throw HostError{kInvalidArgument};
  const std::size_t entry = depth_ - 1 - static_cast<std::size_t>(arguments);
  for (std::size_t above = entry + 1; above < depth_; ++above) {
    if (tags_[above].kind != StackKind::kArgument) throw HostError{kInvalidArgument};
  }
  if (tags_[entry].kind != kind) throw HostError{kInvalidArgument};
  return entry;
}

std::span<const Value> ValueStack::Above(std::size_t entry) const {
  return std::span<const Value>(values_).subspan(entry + 1, depth_ - entry - 1);
}

const Value* ValueStack::MethodBegun() const {
  for (std::size_t entry = depth_; entry > base_; --entry) {
    if (tags_[entry - 1].kind == StackKind::kMethod) return &values_[entry - 1];
  }
  return nullptr;
}

ValueStack::Nesting::Nesting(ValueStack& stack)
    : stack_(stack), outer_base_(stack.base_), depth_(stack.depth_) {
  stack_.base_ = stack_.depth_;
}

ValueStack::Nesting::~Nesting() {
  stack_.left_behind_ += stack_.depth_ - depth_;
  stack_.DropDownTo(depth_);
  stack_.base_ = outer_base_;
}

}  // namespace emulator
