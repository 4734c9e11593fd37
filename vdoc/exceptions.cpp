#include "vdoc/exceptions.h"

#include <string>

namespace vessa {
namespace {

std::string WithOffset(std::string_view text, std::size_t position) {
  return std::string(text).append(" at offset ").append(std::to_string(position + 1));
}

}  // namespace

CVDocException::CVDocException(std::string_view text, std::size_t position)
    : CException(WithOffset(text, position)) {}

CVDocException::CVDocException(std::string_view text, std::string_view argument, std::size_t position)
    : CException(WithOffset(text, position), argument) {}

}  // namespace vessa
