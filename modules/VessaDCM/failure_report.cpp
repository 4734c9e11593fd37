#include "modules/VessaDCM/failure_report.h"

#include <exception>

#include "platform/debug_output.h"

namespace vessa {

void WriteReport(const FailureReport& report) noexcept {
  DebugReport("File = %s Line = %d Function = %s %s", "VessaDCM.cpp", report.line, report.function,
              report.what);
}

ReportOnFailure::ReportOnFailure(const FailureReport& report)
    : report_{report}, exceptions_on_entry_{std::uncaught_exceptions()} {}

ReportOnFailure::~ReportOnFailure() {
  if (std::uncaught_exceptions() > exceptions_on_entry_) WriteReport(report_);
}

}  // namespace vessa
