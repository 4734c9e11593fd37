#include <string>
#include <vector>

#include "tests/callouts/loaded_library.h"

// Arguments are fetched in the order of the list, and a call ends at the first that cannot be.

namespace emulator {
namespace {

constexpr int kUnknownType = 9;

struct Arguments {
  const char* function;
  int count;
  int list;  ///< position of the one that is a list, whose type byte nobody looks at; 0 for none
};

constexpr Arguments kArguments[] = {
    {"zfDecomposeStream", 4, 0},    {"zfComposeStream", 5, 0},    {"zfQueryStream", 4, 3},
    {"zfQueryFileOrDataSet", 6, 4}, {"zfGetNextSubscript", 3, 3},
};

/// Arguments of which all from that position on are of an unknown type.
ListBuilder BadFrom(int position, int count) {
  ListBuilder list;
  for (int at = 1; at <= count; ++at) {
    if (at < position) {
      list.Integer(1);
    } else {
      list.Item(kUnknownType, "");
    }
  }
  return list;
}

class ArgumentOrder : public LoadedLibrary, public testing::WithParamInterface<Arguments> {};

TEST_P(ArgumentOrder, IsTheListsAndEndsAtTheFirstThatCannotBeFetched) {
  const Arguments& call = GetParam();
  for (int bad = 1; bad <= call.count; ++bad) {
    const int first = bad == call.list ? bad + 1 : bad;
    if (first > call.count) continue;
    const std::string message = "List Format Error -  fetching argument " + std::to_string(first);
    ExpectFailure(Call(call.function, BadFrom(bad, call.count)),
                  std::u16string(message.begin(), message.end()));
  }
}

INSTANTIATE_TEST_SUITE_P(Functions, ArgumentOrder, testing::ValuesIn(kArguments),
                         [](const auto& of) { return of.param.function; });

}  // namespace
}  // namespace emulator
