#include "decompose/refusal.h"

#include "dicom/exception.h"

namespace vessa {

void Refuse(std::string_view text) { throw CDecomposeException(text); }

void Refuse(std::string_view text, std::string_view argument) { throw CDecomposeException(text, argument); }

}  // namespace vessa
