#include "modules/VessaDCM/exception_ladder.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>

#include "decompose/content_handler_interface.h"
#include "dicom/exception.h"
#include "dicom/status.h"
#include "modules/VessaDCM/frame_state.h"

namespace vessa {
namespace {

template <class Thrown>
std::string KeptText(const Thrown& thrown) {
  TheFrameState().error_text.Clear();
  try {
    throw thrown;
  } catch (...) {
    KeepCurrentExceptionText();
  }
  return std::string(TheFrameState().error_text.View());
}

TEST(ExceptionLadder, TakesTheTextOfTheFamily) {
  EXPECT_EQ(KeptText(CDecomposeException("got: %1", "7FE00010")), "got: 7FE00010");
}

TEST(ExceptionLadder, FindsNoTextInAnEarlyStop) { EXPECT_EQ(KeptText(CSuccessException()), ""); }

TEST(ExceptionLadder, FindsNoTextWhereMemoryRanOut) { EXPECT_EQ(KeptText(std::bad_alloc()), ""); }

TEST(ExceptionLadder, TakesTheTextOfTheListCodec) {
  EXPECT_EQ(KeptText(std::invalid_argument("List Format Error")), "List Format Error");
  EXPECT_EQ(KeptText(std::overflow_error("Exponent too large")), "Exponent too large");
}

TEST(ExceptionLadder, FindsNoTextInABareStatus) { EXPECT_EQ(KeptText(E_FAIL), ""); }

TEST(ExceptionLadder, LeavesTheTextThatTheThrowerSet) {
  try {
    TheFrameState().error_text.Assign("argument missing");
    throw kMissingArgument;
  } catch (...) {
    KeepCurrentExceptionText();
  }
  EXPECT_EQ(TheFrameState().error_text.View(), "argument missing");
}

TEST(ExceptionLadder, FindsNoTextInWhatItDoesNotKnow) { EXPECT_EQ(KeptText("a text"), ""); }

}  // namespace
}  // namespace vessa
