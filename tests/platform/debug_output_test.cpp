#include "platform/debug_output.h"

#include <gtest/gtest.h>

#include <string>

namespace vessa {
namespace {

TEST(FormatDebugReport, FormatsAsPrintfDoes) {
  DebugReportBuffer buffer;
  FormatDebugReport(buffer, "File = %s Line = %d Function = %s failed", "VessaDCM.cpp", 305,
                    "int __cdecl f(int)");
  EXPECT_STREQ(buffer.data(), "File = VessaDCM.cpp Line = 305 Function = int __cdecl f(int) failed");
}

TEST(FormatDebugReport, CutsALongerReport) {
  DebugReportBuffer buffer;
  FormatDebugReport(buffer, "%s", std::string(5000, 'x').c_str());
  EXPECT_EQ(std::string(buffer.data()), std::string(kDebugReportBytes - 1, 'x'));
}

TEST(FormatDebugReport, KeepsAReportThatJustFits) {
  DebugReportBuffer buffer;
  const std::string text = std::string(kDebugReportBytes - 2, 'x') + "y";
  FormatDebugReport(buffer, "%s", text.c_str());
  EXPECT_EQ(buffer.data(), text);
}

}  // namespace
}  // namespace vessa
