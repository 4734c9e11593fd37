#pragma once

#include <gtest/gtest.h>

#include <string>
#include <typeinfo>

namespace vessa {

/// Expects `call` to throw exactly `Exception` with exactly that text.
template <class Exception, class Call>
void ExpectFailure(Call call, const std::string& text) {
  try {
    call();
    ADD_FAILURE() << "nothing was thrown";
  } catch (const Exception& failure) {
    EXPECT_EQ(typeid(failure), typeid(Exception));
    EXPECT_EQ(failure.what(), text);
  }
}

template <class Call>
void ExpectFormatError(Call call) {
  ExpectFailure<std::invalid_argument>(call, "List Format Error");
}

template <class Call>
void ExpectOutOfBounds(Call call) {
  ExpectFailure<std::out_of_range>(call, "Index out of bounds");
}

}  // namespace vessa
