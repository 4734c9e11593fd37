#include <gtest/gtest.h>
#include <syslog.h>

#include <string>
#include <string_view>

#include "modules/VessaDCM/call_outs.h"

// The two call-outs that work on plain bytes tell of their failures in the system's log alone.

namespace vessa {
namespace {

/// What a call sends to the system's log.
template <class Call>
std::string LogOf(Call call) {
  openlog("vessa", LOG_PERROR, LOG_USER);  // what the log gets goes to the standard error as well
  testing::internal::CaptureStderr();
  call();
  closelog();
  return testing::internal::GetCapturedStderr();
}

HostString Holding(std::string_view text) {
  HostString buffer{};
  buffer.count = static_cast<std::uint16_t>(text.size());
  text.copy(reinterpret_cast<char*>(buffer.bytes), text.size());
  return buffer;
}

TEST(SwitchByteOrdering, LogsItsFailureAndNothingElse) {
  HostString buffer = Holding("abcd");
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(zfSwitchByteOrdering(&buffer, 2), 0); }), "");
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(zfSwitchByteOrdering(&buffer, 3), 1); }),
            "vessa: File = VessaDCM.cpp Line = 471 Function = int __cdecl zfSwitchByteOrdering(struct "
            "VessaString<unsigned char,32767> *,int) switch byte ordering failed\n");
}

TEST(BigHexToDecimal, LogsItsFailureAndNothingElse) {
  HostString buffer = Holding("FF");
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(zfBigHexToDecimal(&buffer), 0); }), "");
  buffer = Holding(std::string(100, 'F'));
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(zfBigHexToDecimal(&buffer), 1); }),
            "vessa: File = VessaDCM.cpp Line = 1205 Function = int __cdecl zfBigHexToDecimal(struct "
            "VessaString<unsigned char,32767> *) big hex-to-decimal caused an exception\n");
}

}  // namespace
}  // namespace vessa
