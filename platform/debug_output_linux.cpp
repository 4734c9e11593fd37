#include <syslog.h>

#include "platform/debug_output.h"

namespace vessa {

void WriteDebugOutput(const char* text) { syslog(LOG_DEBUG, "%s", text); }

}  // namespace vessa
