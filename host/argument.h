#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "host/vessa_list.h"

namespace vessa {

/// One value for PushArguments; as what it is read is the format letter's business. Signed and unsigned
/// integers stand for each other, as do the pointers to text.
class Argument {
 public:
  // Implicit on purpose: PushArguments takes the values as they are.
  constexpr Argument(std::int32_t value) : integer_{static_cast<std::uint32_t>(value)} {}  // NOLINT
  constexpr Argument(std::uint32_t value) : integer_{value} {}                             // NOLINT
  constexpr Argument(double value) : number_{value} {}                                     // NOLINT
  constexpr Argument(const char* value) : pointer_{value} {}                               // NOLINT
  constexpr Argument(const std::uint8_t* value) : pointer_{value} {}                       // NOLINT
  constexpr Argument(const char16_t* value) : pointer_{value} {}                           // NOLINT
  constexpr Argument(const VessaList* value) : pointer_{value} {}                          // NOLINT
  constexpr Argument(const std::span<const std::uint8_t>* value) : pointer_{value} {}      // NOLINT

  std::int32_t Integer() const { return static_cast<std::int32_t>(integer_); }
  std::uint32_t Unsigned() const { return integer_; }
  double Number() const { return number_; }
  template <class Pointee>
  const Pointee* Pointer() const {
    return static_cast<const Pointee*>(pointer_);
  }

 private:
  union {
    std::uint32_t integer_;
    double number_;
    const void* pointer_;
  };
};

/// The letters by which PushArguments reads its values, known to the compiler: nothing is left of a format at run
/// time but the callbacks that it stands for.
template <std::size_t kSize>
struct ArgumentFormat {
  // Implicit on purpose: a format is written as a text.
  consteval ArgumentFormat(const char (&text)[kSize]) {  // NOLINT(google-explicit-constructor)
    std::copy_n(text, kSize, letters);
  }

  static constexpr std::size_t kLetters = kSize - 1;
  /// Letters that stand for a value; a "*" tells of the next one.
  consteval int Counted() const {
    return static_cast<int>(kLetters) - static_cast<int>(std::count(letters, letters + kLetters, '*'));
  }

  char letters[kSize];
};

}  // namespace vessa
