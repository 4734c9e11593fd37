#include <gtest/gtest.h>
#include <syslog.h>

#include "platform/debug_output.h"

namespace vessa {
namespace {

TEST(DebugReport, GoesToTheSystemLogAsItStands) {
  openlog("vessa", LOG_PERROR, LOG_USER);  // what the log gets goes to the standard error as well
  testing::internal::CaptureStderr();
  DebugReport("%s Line = %d", "100%s", 305);
  const std::string written = testing::internal::GetCapturedStderr();
  closelog();
  EXPECT_EQ(written, "vessa: 100%s Line = 305\n");
}

TEST(DebugReport, IsOfTheDebugLevel) {
  openlog("vessa", LOG_PERROR, LOG_USER);
  const int before = setlogmask(LOG_UPTO(LOG_INFO));
  testing::internal::CaptureStderr();
  DebugReport("hidden");
  const std::string written = testing::internal::GetCapturedStderr();
  setlogmask(before);
  closelog();
  EXPECT_EQ(written, "");
}

TEST(FormatDebugReport, IsEmptyWhenTheFormatFails) {
  DebugReportBuffer buffer;
  const wchar_t no_character[] = {static_cast<wchar_t>(0x7FFFFFFF), L'\0'};
  FormatDebugReport(buffer, "before %ls", no_character);
  EXPECT_STREQ(buffer.data(), "");
}

}  // namespace
}  // namespace vessa
