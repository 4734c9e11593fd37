#pragma once

#include <cstddef>
#include <string_view>

#include "dicom/exception.h"

namespace vessa {

/// A reference text that cannot be parsed. The message ends in " at offset " and the 1-based offset of the
/// character at which the failure was found.
class CVDocException : public CException {
 public:
  /// @param position  0-based position of that character; the text's length stands for its end
  CVDocException(std::string_view text, std::size_t position);
  /// `text` with its "%1" replaced by `argument`.
  CVDocException(std::string_view text, std::string_view argument, std::size_t position);
};

/// A property list that cannot be queried, or an answer that cannot be returned.
class CVDocQueryException : public CException {
 public:
  explicit CVDocQueryException(std::string_view text) : CException(text) {}
};

}  // namespace vessa
