#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "emulator/host.h"
#include "emulator/library.h"
#include "emulator/list.h"
#include "tests/callouts/next_call.h"
#include "tests/support/paths.h"

namespace emulator {

/// The library under test, loaded once and called as the host calls it.
inline const Library& TheLibrary() {
  static const Library library = Library::Load(kLibraryPath);
  return library;
}

/// A fresh host for each test. After a test nothing may be left on its stack but what a failed call had pushed, and
/// the next calls work.
class LoadedLibrary : public testing::Test {
 protected:
  void TearDown() override { ExpectTheNextCallsToWork(); }

  static ListResult Call(std::string_view name, const ListBuilder& arguments) {
    return TheLibrary().CallList(name, arguments);
  }

  template <class SomeObject, class... Arguments>
  std::pair<std::shared_ptr<SomeObject>, std::uint32_t> Make(Arguments&&... arguments) {
    auto object = std::make_shared<SomeObject>(std::forward<Arguments>(arguments)...);
    const std::uint32_t oref = host_.Add(object);
    return {std::move(object), oref};
  }

  Host host_;
};

inline void ExpectFailure(const ListResult& result, std::u16string_view message) {
  EXPECT_EQ(result.returned, 0);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.message, message);
}

inline void ExpectSuccess(const ListResult& result) {
  EXPECT_EQ(result.returned, 0);
  EXPECT_EQ(result.status, 0) << "failed with: " << std::string(result.message.begin(), result.message.end());
}

}  // namespace emulator
