#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace emulator {

/// Encodings of text that the system knows how to read.
enum class TextEncoding {
  kLatin1,    ///< ISO 8859-1
  kLatin2,    ///< ISO 8859-2
  kLatin3,    ///< ISO 8859-3
  kLatin4,    ///< ISO 8859-4
  kCyrillic,  ///< ISO 8859-5
  kArabic,    ///< ISO 8859-6
  kGreek,     ///< ISO 8859-7
  kHebrew,    ///< ISO 8859-8
  kLatin5,    ///< ISO 8859-9
  kThai,      ///< TIS 620
  kJapanese,  ///< EUC-JP: JIS X 0208, with JIS X 0201 behind 8E and JIS X 0212 behind 8F
  kKorean,    ///< EUC-KR: KS X 1001
  kChinese,   ///< EUC-CN: GB 2312
  kGbk,
  kGb18030,
};

/// The text in UTF-8; nothing when it is no text of that encoding, or when this system lacks the encoding.
std::optional<std::string> DecodeText(std::string_view bytes, TextEncoding encoding);

}  // namespace emulator
