#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "emulator/host_error.h"
#include "emulator/key_stack.h"
#include "emulator/value.h"

namespace emulator {

/// What stands on the host's stack.
enum class StackKind : std::uint8_t {
  kArgument,  ///< pushed by the library
  kResult,    ///< left by the host, to be fetched
  kMethod,    ///< a call begun: the name of the method; its arguments come above it
  kProperty,  ///< a fetch begun: the name of the property
  kGlobal,    ///< a reference begun; its subscripts come above it
};

/// The stack between library and host. It never moves its values, so the arguments of a running method stay where
/// they are. What a call begun inside a method finds below itself is out of its reach.
///
/// Of a reference and its subscripts no values are kept, but the bytes of the key that they make.
class ValueStack {
 public:
  static constexpr std::size_t kEntries = 1024;

  ValueStack() : values_(kEntries) {}

  /// Values, calls begun and results in all, with what nested calls have left behind.
  std::size_t Depth() const { return depth_ + left_behind_; }
  void Clear();

  /// Who is called, and whether a result is wanted. Small, for each push writes one.
  struct Tag {
    StackKind kind = StackKind::kArgument;
    bool result_wanted = false;
    bool is_of_reference = false;  ///< the reference itself or a subscript of it
    std::uint32_t of = 0;          ///< the object called, or the entry that begins the reference
    int refusal = 0;  ///< what the reference is answered with when it is used; 0 when all is well up to here
    std::uint32_t key_at = 0;  ///< where in the keys its bytes begin
  };

  /// The place of the next entry, to be filled and then pushed. @throws HostError  kStackFull
  Value& Next() {
    RequireRoom();
    return values_[depth_];
  }
  /// The same for a text, whose storage is used again.
  template <class Text>
  Text& NextText() {
    Value& place = Next();
    auto* const kept = std::get_if<Text>(&place);
    return kept != nullptr ? *kept : place.emplace<Text>();
  }
  /// @throws HostError  kStackFull
  void RequireRoom() const {
    if (depth_ == kEntries) throw HostError{kStackFull};
  }
  void Push(StackKind kind, std::uint32_t oref = 0, bool result_wanted = false) {
    tags_[depth_++] = {kind, result_wanted, false, oref, 0, keys_.Size()};
  }

  // --- References to globals; all of these: @throws HostError  kStackFull ---

  /// @param global  its key
  void PushReference(std::string_view global) {
    RequireRoom();
    const std::uint32_t key_at = keys_.Size();
    keys_.Append(global);
    tags_[depth_] = {StackKind::kGlobal, false, true, static_cast<std::uint32_t>(depth_), 0, key_at};
    ++depth_;
  }
  /// Whether the next argument will be a subscript.
  bool IsInReference() const { return depth_ > base_ && tags_[depth_ - 1].is_of_reference; }
  template <class Subscript>
  void PushSubscript(const Subscript& subscript) {
    RequireRoom();
    const std::uint32_t key_at = keys_.Size();
    keys_.AppendSubscript(subscript);
    PushSubscriptAt(key_at);
  }
  /// An argument that cannot be a subscript: its reference is of no use.
  void PushUnfitSubscript(int refusal);

  /// A reference with its subscripts.
  struct Reference {
    std::size_t entry;
    std::string_view key;
    std::size_t level_size;  ///< how much of the key comes before the last subscript
  };
  /// The one begun below the topmost `subscripts` entries, which must be its subscripts.
  /// @throws HostError  kInvalidArgument, or what an unfit subscript is answered with
  Reference ReferenceBegun(int subscripts) const {
    if (!IsInReference()) throw HostError{kInvalidArgument};
    const Tag& top = tags_[depth_ - 1];
    if (top.of + static_cast<std::size_t>(subscripts) != depth_ - 1) throw HostError{kInvalidArgument};
    if (top.refusal != 0) throw HostError{top.refusal};
    const std::uint32_t key_at = tags_[top.of].key_at;
    return {top.of, keys_.From(key_at), top.key_at - key_at};
  }

  /// Refuses a new call while another one waits for its arguments. One that a failure interrupted does not count.
  /// @throws HostError  kInvalidArgument
  void RequireNothingBegun() const {
    if (depth_ > std::max(base_, interrupted_)) RequireNoneBegunBelow();
  }

  /// The entry begun below the topmost `arguments` entries, which must be arguments and of that kind.
  /// @throws HostError  kInvalidArgument
  std::size_t Begun(StackKind kind, int arguments) const;
  const Tag& TagAt(std::size_t entry) const { return tags_[entry]; }
  const Value& ValueAt(std::size_t entry) const { return values_[entry]; }
  /// All above the entry.
  std::span<const Value> Above(std::size_t entry) const;

  /// The name of the method whose arguments are being pushed; null when there is none.
  const Value* MethodBegun() const;

  /// The result on top. @throws HostError  kNoResult when the stack is empty, `otherwise` when another thing is there
  Value& TopResult(int otherwise) {
    if (depth_ == base_) throw HostError{kNoResult};
    if (tags_[depth_ - 1].kind != StackKind::kResult) throw HostError{otherwise};
    return values_[depth_ - 1];
  }

  /// Drops the entry, which must be there, and all above it.
  void DropFrom(std::size_t entry) {
    keys_.CutTo(tags_[entry].key_at);
    depth_ = entry;
    interrupted_ = std::min(interrupted_, depth_);
  }
  void Drop() { DropFrom(depth_ - 1); }

  /// A callback has failed: what had been begun may never be finished.
  void NoteFailure() { interrupted_ = depth_; }

  /// While it lives, the entries of now are out of reach. What is then left above them was left behind.
  class Nesting {
   public:
    explicit Nesting(ValueStack& stack);
    ~Nesting();
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

   private:
    ValueStack& stack_;
    std::size_t outer_base_;
    std::size_t depth_;
  };

 private:
  void PushSubscriptAt(std::uint32_t key_at) {
    const Tag& below = tags_[depth_ - 1];
    tags_[depth_] = {StackKind::kArgument, false, true, below.of, below.refusal, key_at};
    ++depth_;
  }
  void RequireNoneBegunBelow() const;
  void DropDownTo(std::size_t depth) {
    if (depth < depth_) DropFrom(depth);
  }

  std::vector<Value> values_;
  std::array<Tag, kEntries> tags_;
  KeyStack keys_;
  std::size_t depth_ = 0;
  std::size_t base_ = 0;         // entries below it belong to calls further out
  std::size_t interrupted_ = 0;  // entries below it were there when a callback failed
  std::size_t left_behind_ = 0;
};

}  // namespace emulator
