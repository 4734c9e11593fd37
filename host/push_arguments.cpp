#include <climits>
#include <cstring>
#include <string>
#include <utility>

#include "host/callin.h"

namespace vessa {
namespace {

/// In units of the text. A longer one goes through the host's long strings.
constexpr int kGreatestShortText = 32767;

/// The host's two ways for one kind of text.
template <class Unit>
struct TextRoute {
  int (*HostServices::*push)(int, const Unit*);
  void* (*HostServices::*new_long)(LongStringDescriptor*, int);
  int (*HostServices::*push_long)(LongStringDescriptor*);
};

constexpr TextRoute<unsigned char> kNarrow{&HostServices::push_string, &HostServices::new_long_string,
                                           &HostServices::push_long_string};
constexpr TextRoute<std::uint16_t> kWide{&HostServices::push_wide_string, &HostServices::new_long_wide_string,
                                         &HostServices::push_long_wide_string};
constexpr TextRoute<std::uint16_t> kWideAlt{&HostServices::push_wide_string_alt,
                                            &HostServices::new_long_wide_string,
                                            &HostServices::push_long_wide_string_alt};

template <class Unit>
void PushLongText(const TextRoute<Unit>& route, const void* text, int length) {
  const HostServices& host = Services();
  LongStringDescriptor descriptor{};
  void* const area = (host.*route.new_long)(&descriptor, length);
  if (area == nullptr) throw kFailedCallin;
  std::memcpy(area, text, static_cast<std::size_t>(length) * sizeof(Unit));
  RaiseCallin((host.*route.push_long)(&descriptor));
}

int CheckedLength(std::size_t length) {
  if (length > INT_MAX) throw kUnexpected;
  return static_cast<int>(length);
}

/// Takes the values in order as the letters ask for them.
class ArgumentPusher {
 public:
  explicit ArgumentPusher(std::span<const Argument> values) : values_{values} {}

  void Push(char letter) {
    const HostServices& host = Services();
    switch (letter) {
      case 'i':
        return RaiseCallin(host.push_integer(Next().Integer()));
      case 'u':
        return RaiseCallin(host.push_unsigned(Next().Unsigned()));
      case 'd':
        return RaiseCallin(host.push_double(Next().Number()));
      case 'o':
        return RaiseCallin(host.push_object(Next().Unsigned()));
      case 'a':
        return PushText(kNarrow, Next().Pointer<char>());
      case 'n':
        return PushText(kWide, Next().Pointer<char16_t>());
      case 'x':
        return PushText(kWideAlt, Next().Pointer<char16_t>());
      case 'l':
        return PushBytes(&HostServices::push_string, Next().Pointer<VessaList>()->Bytes());
      case 'c':
        return PushBytes(&HostServices::push_counted, *Next().Pointer<std::span<const std::uint8_t>>());
      case '*':
        return KeepLength(Next().Integer());
      default:
        return;  // kept: such a letter is counted, and that is all
    }
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

}  // namespace

int PushArgumentList(const char* format, std::span<const Argument> values) {
  ArgumentPusher pusher(values);
  int count = 0;
  for (; *format != '\0'; ++format) {
    pusher.Push(*format);
    if (*format != '*') ++count;
  }
  return count;
}

}  // namespace vessa
