#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include "platform/debug_output.h"

namespace vessa {

void WriteDebugOutput(const char* text) { OutputDebugStringA(text); }

}  // namespace vessa
