#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "emulator/value.h"

namespace emulator {

/// What stands on the host's stack.
enum class StackKind : std::uint8_t {
  kArgument,  ///< pushed by the library
  kResult,    ///< left by the host, to be fetched
  kMethod,    ///< a call begun: the name of the method; its arguments come above it
  kProperty,  ///< a fetch begun: the name of the property
  kGlobal,    ///< a reference begun: the key of the global; its subscripts come above it
};

/// The stack between library and host. It never moves its values, so the arguments of a running method stay where
/// they are. What a call begun inside a method finds below itself is out of its reach.
class ValueStack {
 public:
  static constexpr std::size_t kEntries = 1024;

  ValueStack() : values_(kEntries), tags_(kEntries) {}

  /// Values, calls begun and results in all, with what nested calls have left behind.
  std::size_t Depth() const { return depth_ + left_behind_; }
  void Clear();

  /// Who is called, and whether a result is wanted.
  struct Tag {
    StackKind kind = StackKind::kArgument;
    std::uint32_t oref = 0;
    bool result_wanted = false;
  };

  /// The place of the next entry, to be filled and then pushed. @throws HostError  kStackFull
  Value& Next();
  /// @throws HostError  kStackFull
  void RequireRoom() const;
  void Push(const Tag& tag) { tags_[depth_++] = tag; }

  /// Refuses a new call while another one waits for its arguments. One that a failure interrupted does not count.
  /// @throws HostError  kInvalidArgument
  void RequireNothingBegun() const;

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
  Value& TopResult(int otherwise);

  /// Drops the entry and all above it.
  void DropFrom(std::size_t entry);
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
  std::vector<Value> values_;
  std::vector<Tag> tags_;
  std::size_t depth_ = 0;
  std::size_t base_ = 0;         // entries below it belong to calls further out
  std::size_t interrupted_ = 0;  // entries below it were there when a callback failed
  std::size_t left_behind_ = 0;
};

}  // namespace emulator
