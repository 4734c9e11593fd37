#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include <algorithm>
#include <climits>
#include <new>

#include "platform/code_page.h"

namespace vessa {
namespace {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

constexpr UINT kActiveCodePage = CP_ACP;  // code page 0
constexpr DWORD kNoFlags = 0;

// The system counts in int; a text it cannot count is one it cannot convert.
int CheckedLength(std::size_t length) {
  if (length > INT_MAX) throw std::bad_alloc();
  return static_cast<int>(length);
}

std::size_t Converted(int length) {
  if (length <= 0) throw std::bad_alloc();
  return static_cast<std::size_t>(length);
}

int ToWide(std::string_view text, int length, char16_t* out, int room) {
  return MultiByteToWideChar(kActiveCodePage, kNoFlags, text.data(), length, reinterpret_cast<wchar_t*>(out),
                             room);
}

int ToNarrow(std::u16string_view text, int length, char* out, int room) {
  return WideCharToMultiByte(kActiveCodePage, kNoFlags, reinterpret_cast<const wchar_t*>(text.data()), length,
                             out, room, nullptr, nullptr);
}

}  // namespace

std::u16string Widen(std::string_view text) {
  if (text.empty()) return {};
  const int length = CheckedLength(text.size());
  std::u16string wide(Converted(ToWide(text, length, nullptr, 0)), u'\0');
  wide.resize(Converted(ToWide(text, length, wide.data(), CheckedLength(wide.size()))));
  return wide;
}

std::string Narrow(std::u16string_view text) {
  if (text.empty()) return {};
  const int length = CheckedLength(text.size());
  std::string narrow(Converted(ToNarrow(text, length, nullptr, 0)), '\0');
  narrow.resize(Converted(ToNarrow(text, length, narrow.data(), CheckedLength(narrow.size()))));
  return narrow;
}

std::size_t WidenInto(std::string_view text, std::span<char16_t> out) noexcept {
  // No code page needs more units than bytes, so what is taken always has room.
  const std::size_t taken = std::min({text.size(), out.size(), std::size_t{INT_MAX}});
  if (taken == 0) return 0;
  const int length = static_cast<int>(taken);
  const int units = ToWide(text, length, out.data(), length);
  if (units > 0) return static_cast<std::size_t>(units);
  // Better the bytes as characters than no text at all.
  std::transform(text.begin(), text.begin() + length, out.begin(),
                 [](char byte) { return static_cast<char16_t>(static_cast<unsigned char>(byte)); });
  return taken;
}

}  // namespace vessa
