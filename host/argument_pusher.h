#pragma once

#include <climits>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>

#include "host/argument.h"
#include "host/services.h"

namespace vessa {

/// In units of the text. A longer one goes through the host's long strings.
inline constexpr int kGreatestShortText = 32767;

/// The host's two ways for one kind of text.
template <class Unit>
struct TextRoute {
  int (*HostServices::*push)(int, const Unit*);
  void* (*HostServices::*new_long)(LongStringDescriptor*, int);
  int (*HostServices::*push_long)(LongStringDescriptor*);
};

inline constexpr TextRoute<unsigned char> kNarrow{&HostServices::push_string, &HostServices::new_long_string,
                                                  &HostServices::push_long_string};
inline constexpr TextRoute<std::uint16_t> kWide{&HostServices::push_wide_string,
                                                &HostServices::new_long_wide_string,
                                                &HostServices::push_long_wide_string};
inline constexpr TextRoute<std::uint16_t> kWideAlt{&HostServices::push_wide_string_alt,
                                                   &HostServices::new_long_wide_string,
                                                   &HostServices::push_long_wide_string_alt};

void PushLongText(const TextRoute<unsigned char>& route, const void* text, int length);
void PushLongText(const TextRoute<std::uint16_t>& route, const void* text, int length);

inline int CheckedLength(std::size_t length) {
  if (length > INT_MAX) throw kUnexpected;
  return static_cast<int>(length);
}

/// Takes the values in order as the letters ask for them.
class ArgumentPusher {
 public:
  explicit ArgumentPusher(std::span<const Argument> values) : values_{values} {}

  template <char kLetter>
  void Push() {
    const HostServices& host = Services();
    if constexpr (kLetter == 'i') {
      RaiseCallin(host.push_integer(Next().Integer()));
    } else if constexpr (kLetter == 'u') {
      RaiseCallin(host.push_unsigned(Next().Unsigned()));
    } else if constexpr (kLetter == 'd') {
      RaiseCallin(host.push_double(Next().Number()));
    } else if constexpr (kLetter == 'o') {
      RaiseCallin(host.push_object(Next().Unsigned()));
    } else if constexpr (kLetter == 'a') {
      PushText(kNarrow, Next().Pointer<char>());
    } else if constexpr (kLetter == 'n') {
      PushText(kWide, Next().Pointer<char16_t>());
    } else if constexpr (kLetter == 'x') {
      PushText(kWideAlt, Next().Pointer<char16_t>());
    } else if constexpr (kLetter == 'l') {
      PushBytes(&HostServices::push_string, Next().Pointer<VessaList>()->Bytes());
    } else if constexpr (kLetter == 'c') {
      PushBytes(&HostServices::push_counted, *Next().Pointer<std::span<const std::uint8_t>>());
    } else if constexpr (kLetter == '*') {
      KeepLength(Next().Integer());
    }  // kept: any other letter is counted, and that is all
  }

 private:
  static constexpr int kNoLength = -1;

  const Argument& Next() {
    if (next_ == values_.size()) throw kUnexpected;
    return values_[next_++];
  }

  void KeepLength(int length) {
    if (length < 0) throw kUnexpected;
    length_ = length;
  }

  template <class HostUnit, class Unit>
  void PushText(const TextRoute<HostUnit>& route, const Unit* text) {
    static constexpr Unit kEmpty[] = {0};
    int length = std::exchange(length_, kNoLength);
    if (text == nullptr) {
      text = kEmpty;
      length = 0;
    } else if (length == kNoLength) {
      length = CheckedLength(std::char_traits<Unit>::length(text));
    }
    if (length > kGreatestShortText) return PushLongText(route, text, length);
    RaiseCallin((Services().*route.push)(length, reinterpret_cast<const HostUnit*>(text)));
  }

  static void PushBytes(int (*HostServices::*push)(int, const unsigned char*),
                        std::span<const std::uint8_t> bytes) {
    RaiseCallin((Services().*push)(CheckedLength(bytes.size()), bytes.data()));
  }

  std::span<const Argument> values_;
  std::size_t next_ = 0;
  int length_ = kNoLength;  // from a '*', for the next text
};

}  // namespace vessa
