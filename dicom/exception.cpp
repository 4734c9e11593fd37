#include "dicom/exception.h"

namespace vessa {

CException::CException(std::string_view text, std::string_view argument) : text_(text) {
  constexpr std::string_view kPlaceholder = "%1";
  if (const std::size_t at = text_.find(kPlaceholder); at != std::string::npos) {
    text_.replace(at, kPlaceholder.size(), argument);
  }
}

}  // namespace vessa
