#pragma once

#include <gtest/gtest.h>

#include "dicom/status.h"

namespace vessa {

/// Expects `call` to raise exactly that status.
template <class Call>
void ExpectStatus(Call call, Status expected) {
  try {
    call();
    ADD_FAILURE() << "nothing was raised";
  } catch (const Status raised) {
    EXPECT_EQ(raised, expected);
  }
}

}  // namespace vessa
