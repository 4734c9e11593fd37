#include <gtest/gtest.h>
#include <syslog.h>

#include <string>

#include "modules/VessaDCM/failure_report.h"

namespace vessa {
namespace {

constexpr FailureReport kReport{"failed", 12, "int f()"};

/// What a scope with a report in it sends to the system's log.
std::string ReportOf(bool fails) {
  openlog("vessa", LOG_PERROR, LOG_USER);  // what the log gets goes to the standard error as well
  testing::internal::CaptureStderr();
  try {
    const ReportOnFailure report(kReport);
    if (fails) throw 1;
  } catch (int) {
  }
  closelog();
  return testing::internal::GetCapturedStderr();
}

TEST(ReportOnFailure, WritesItsLineWhenAnExceptionPasses) {
  EXPECT_EQ(ReportOf(true), "vessa: File = VessaDCM.cpp Line = 12 Function = int f() failed\n");
}

TEST(ReportOnFailure, IsSilentOtherwise) { EXPECT_EQ(ReportOf(false), ""); }

}  // namespace
}  // namespace vessa
