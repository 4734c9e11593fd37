#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "platform/debug_output.h"

namespace vessa {
namespace {

constexpr DWORD kDebugPrint = 0x40010006;  // DBG_PRINTEXCEPTION_C

std::string& LastDebugString() {
  static std::string text;
  return text;
}

// Debug output is raised as an exception whose facts are the length, terminator included, and the text.
LONG CALLBACK KeepDebugString(EXCEPTION_POINTERS* raised) {
  const EXCEPTION_RECORD& record = *raised->ExceptionRecord;
  if (record.ExceptionCode != kDebugPrint) return EXCEPTION_CONTINUE_SEARCH;
  LastDebugString().assign(reinterpret_cast<const char*>(record.ExceptionInformation[1]),
                           record.ExceptionInformation[0] - 1);
  return EXCEPTION_CONTINUE_EXECUTION;
}

TEST(DebugReport, GoesToTheDebugOutputAsItStands) {
  LastDebugString().clear();
  void* const handler = AddVectoredExceptionHandler(1, KeepDebugString);
  DebugReport("%s Line = %d", "100%s", 305);
  RemoveVectoredExceptionHandler(handler);
  EXPECT_EQ(LastDebugString(), "100%s Line = 305");
}

}  // namespace
}  // namespace vessa
