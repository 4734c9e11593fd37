#pragma once

#include <string>

#include "dicom/status.h"

namespace vessa {

/// The host's words for a callback status; "Unknown callin error" for a code without words.
std::string CallinErrorText(Status code);

/// The same behind "Vessa' callin error: ".
std::string CallinErrorMessage(Status code);

}  // namespace vessa
