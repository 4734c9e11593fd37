#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "emulator/stream_object.h"
#include "tests/callouts/fault_run.h"
#include "tests/callouts/loaded_library.h"
#include "tests/support/packed_bytes.h"

namespace emulator {
namespace {

using fault_run::Attempt;
using fault_run::CleanRun;
using fault_run::Scenario;

Scenario Pack(std::string name, std::string bytes,
              std::function<std::int32_t(std::int32_t, std::int32_t)> call) {
  return {std::move(name), [bytes = std::move(bytes), call = std::move(call)](Host& host) {
            const auto output = std::make_shared<MemoryStream>();
            const auto in = static_cast<std::int32_t>(host.Add(std::make_shared<MemoryStream>(bytes)));
            const auto out = static_cast<std::int32_t>(host.Add(output));
            const std::int32_t returned = call(in, out);
            EXPECT_TRUE(returned == 0 || returned == -1) << returned;
            return Attempt{returned == 0, "", output->Bytes()};
          }};
}

std::vector<Scenario> Packings() {
  const auto deflate = [](std::int32_t level) {
    return [level](std::int32_t in, std::int32_t out) {
      return TheLibrary().Call("zfDeflateStream", level, in, out);
    };
  };
  const auto inflate = [](std::int32_t in, std::int32_t out) {
    return TheLibrary().Call("zfInflateStream", in, out, 0);
  };
  const std::string noise = packed_bytes::Noise(100000);
  return {
      Pack("zfDeflateStream nothing", "", deflate(6)),
      Pack("zfDeflateStream a little", "abc", deflate(9)),
      Pack("zfDeflateStream without compression", noise, deflate(0)),
      Pack("zfDeflateStream much", packed_bytes::Pattern(300000), deflate(6)),
      Pack("zfInflateStream nothing", packed_bytes::Packed("", 6), inflate),
      Pack("zfInflateStream a little", packed_bytes::Packed("abc", 6), inflate),
      Pack("zfInflateStream noise", packed_bytes::Packed(noise, 6), inflate),
      Pack("zfInflateStream much", packed_bytes::Packed(packed_bytes::Pattern(300000), 6), inflate),
  };
}

TEST(PackingFaults, FailTheCallLeaveTheStartOfTheOutputAndTheNextCallWorks) {
  int faults = 0;
  for (const Scenario& scenario : Packings()) {
    const CleanRun clean = RunWithoutFaults(scenario);
    faults += TryAllFaults(scenario, clean, std::vector<std::string>(clean.depth_before.size() - 1));
  }
  std::printf("%d faults tried\n", faults);
  EXPECT_GT(faults, 300);
}

}  // namespace
}  // namespace emulator
