#include "emulator/vessa/inflated_stream.h"

#include <array>

#include "emulator/vessa/exit_code.h"
#include "emulator/vessa/raw_inflate.h"

namespace emulator::tool {
namespace {

constexpr std::int64_t kReadBytes = 32767;

}  // namespace

std::shared_ptr<StreamObject> InflatedStream(StreamObject& stream, const std::string& name,
                                             std::uint64_t most_bytes) {
  try {
    const auto next_block = [&] { return ReadFrom(stream, kReadBytes, name); };
    return std::make_shared<MemoryStream>(InflateRaw(next_block, most_bytes));
  } catch (const InflateError& error) {
    throw ToolError(kInputUnreadable, name + ": deflated data set: " + error.what());
  }
}

std::string ReadFrom(StreamObject& stream, std::int64_t bytes, const std::string& name) {
  try {
    const std::array<Value, 1> arguments{bytes};
    return AsBytes(stream.Call("Read", arguments));
  } catch (const HostError&) {
    throw ToolError(kInputUnreadable, name + ": the file cannot be read");
  }
}

}  // namespace emulator::tool
