#include "platform/debug_output.h"

#include <cstdarg>
#include <cstdio>

namespace vessa {
namespace {

void FormatInto(DebugReportBuffer& buffer, const char* format, std::va_list values) {
  if (std::vsnprintf(buffer.data(), buffer.size(), format, values) < 0) buffer[0] = '\0';
}

}  // namespace

void FormatDebugReport(DebugReportBuffer& buffer, const char* format, ...) {
  std::va_list values;
  va_start(values, format);
  FormatInto(buffer, format, values);
  va_end(values);
}

void DebugReport(const char* format, ...) {
  DebugReportBuffer buffer;
  std::va_list values;
  va_start(values, format);
  FormatInto(buffer, format, values);
  va_end(values);
  WriteDebugOutput(buffer.data());
}

}  // namespace vessa
