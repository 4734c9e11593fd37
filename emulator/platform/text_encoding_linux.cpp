#include <iconv.h>

#include <cstdint>

#include "emulator/platform/text_encoding.h"

namespace emulator {
namespace {

const char* NameOf(TextEncoding encoding) {
  switch (encoding) {
    case TextEncoding::kLatin1:
      return "ISO-8859-1";
    case TextEncoding::kLatin2:
      return "ISO-8859-2";
    case TextEncoding::kLatin3:
      return "ISO-8859-3";
    case TextEncoding::kLatin4:
      return "ISO-8859-4";
    case TextEncoding::kCyrillic:
      return "ISO-8859-5";
    case TextEncoding::kArabic:
      return "ISO-8859-6";
    case TextEncoding::kGreek:
      return "ISO-8859-7";
    case TextEncoding::kHebrew:
      return "ISO-8859-8";
    case TextEncoding::kLatin5:
      return "ISO-8859-9";
    case TextEncoding::kThai:
      return "TIS-620";
    case TextEncoding::kJapanese:
      return "EUC-JP";
    case TextEncoding::kKorean:
      return "EUC-KR";
    case TextEncoding::kChinese:
      return "EUC-CN";
    case TextEncoding::kGbk:
      return "GBK";
    case TextEncoding::kGb18030:
      return "GB18030";
  }
  return "";
}

class Converter {
 public:
  explicit Converter(TextEncoding encoding) : handle_(iconv_open("UTF-8", NameOf(encoding))) {}
  ~Converter() {
    if (IsKnown()) iconv_close(handle_);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  bool IsKnown() const { return reinterpret_cast<std::intptr_t>(handle_) != -1; }

  /// The text, or nothing. A byte never becomes more than 4 bytes of UTF-8.
  std::optional<std::string> Convert(std::string bytes) {
    std::string text(4 * bytes.size(), '\0');
    char* from = bytes.data();
    std::size_t from_bytes = bytes.size();
    char* to = text.data();
    std::size_t to_bytes = text.size();
    if (iconv(handle_, &from, &from_bytes, &to, &to_bytes) != 0) return std::nullopt;
    text.resize(text.size() - to_bytes);
    return text;
  }

 private:
  iconv_t handle_;
};

}  // namespace

std::optional<std::string> DecodeText(std::string_view bytes, TextEncoding encoding) {
  Converter converter(encoding);
  if (!converter.IsKnown()) return std::nullopt;
  return converter.Convert(std::string(bytes));
}

}  // namespace emulator
