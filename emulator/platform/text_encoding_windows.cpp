#include <windows.h>

#include "emulator/platform/text_encoding.h"

namespace emulator {
namespace {

UINT CodePageOf(TextEncoding encoding) {
  switch (encoding) {
    case TextEncoding::kLatin1:
      return 28591;
    case TextEncoding::kLatin2:
      return 28592;
    case TextEncoding::kLatin3:
      return 28593;
    case TextEncoding::kLatin4:
      return 28594;
    case TextEncoding::kCyrillic:
      return 28595;
    case TextEncoding::kArabic:
      return 28596;
    case TextEncoding::kGreek:
      return 28597;
    case TextEncoding::kHebrew:
      return 28598;
    case TextEncoding::kLatin5:
      return 28599;
    case TextEncoding::kThai:
      return 874;
    case TextEncoding::kJapanese:
      return 20932;
    case TextEncoding::kKorean:
      return 949;
    case TextEncoding::kChinese:
      return 936;
    case TextEncoding::kGbk:
      return 936;
    case TextEncoding::kGb18030:
      return 54936;
  }
  return 0;
}

/// GBK is the part of GB 18030 whose characters have at most two bytes: what a system without the whole still reads.
UINT CodePageHere(TextEncoding encoding) {
  const UINT code_page = CodePageOf(encoding);
  if (encoding != TextEncoding::kGb18030 || IsValidCodePage(code_page) != 0) return code_page;
  return CodePageOf(TextEncoding::kGbk);
}

/// Some code pages refuse the flag that makes bad bytes an error: GB 18030 takes it, others must do without.
std::wstring Widen(UINT code_page, DWORD flags, std::string_view bytes) {
  const int size = static_cast<int>(bytes.size());
  const int units = MultiByteToWideChar(code_page, flags, bytes.data(), size, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(units), L'\0');
  MultiByteToWideChar(code_page, flags, bytes.data(), size, wide.data(), units);
  return wide;
}

}  // namespace

std::optional<std::string> DecodeText(std::string_view bytes, TextEncoding encoding) {
  if (bytes.empty()) return std::string();
  const UINT code_page = CodePageHere(encoding);
  std::wstring wide = Widen(code_page, MB_ERR_INVALID_CHARS, bytes);
  if (wide.empty() && GetLastError() == ERROR_INVALID_FLAGS) wide = Widen(code_page, 0, bytes);
  if (wide.empty()) return std::nullopt;
  const int units = static_cast<int>(wide.size());
  const int size = WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, nullptr, 0, nullptr, nullptr);
  std::string text(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, text.data(), size, nullptr, nullptr);
  return text;
}

}  // namespace emulator
