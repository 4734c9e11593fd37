#pragma once

#include <array>
#include <cstddef>

namespace vessa {

/// Room of one debug report, its terminating zero included; a longer report is cut.
inline constexpr std::size_t kDebugReportBytes = 1024;
using DebugReportBuffer = std::array<char, kDebugReportBytes>;

/// Formats as printf does and sends the line to the system's debug output: OutputDebugStringA on Windows,
/// syslog at level LOG_DEBUG elsewhere. Needs no heap of the library's.
void DebugReport(const char* format, ...);

/// The formatting half of DebugReport. A format that fails gives an empty text.
void FormatDebugReport(DebugReportBuffer& buffer, const char* format, ...);

/// The output half of DebugReport, one a system.
void WriteDebugOutput(const char* text);

}  // namespace vessa
