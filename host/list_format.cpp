#include "host/list_format.h"

#include <stdexcept>

namespace vessa {

void ThrowListFormatError() { throw std::invalid_argument("List Format Error"); }

}  // namespace vessa
