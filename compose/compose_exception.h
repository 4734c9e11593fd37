#pragma once

#include <string_view>

#include "dicom/exception.h"

namespace vessa {

/// A data set that could not be written.
class CComposeException : public CException {
 public:
  explicit CComposeException(std::string_view text) : CException(text) {}
  CComposeException(std::string_view text, std::string_view argument) : CException(text, argument) {}
};

}  // namespace vessa
