#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "dicom/exception.h"
#include "emulator/host.h"
#include "emulator/stream_object.h"
#include "host/callin.h"

/// A test whose callbacks go to a host of its own. Whatever the test did, nothing may be left on the host's
/// stack after calls that succeeded: see ExpectCleanStack.
class EmulatedHost : public ::testing::Test {
 public:
  ~EmulatedHost() override { vessa::SetHostServices(nullptr); }

 protected:
  EmulatedHost() { vessa::SetHostServices(emulator::Host::Table()); }

  std::uint32_t Add(std::shared_ptr<emulator::Object> object) { return host_.Add(std::move(object)); }

  /// The callbacks that the action makes, one line each.
  template <class Action>
  std::vector<std::string> CallsOf(Action action) {
    host_.ClearCalls();
    host_.Record(true);
    action();
    host_.Record(false);
    return host_.Calls();
  }

  void ExpectCleanStack() const { EXPECT_EQ(host_.StackDepth(), 0U); }

  emulator::Host host_;
};

/// What a failure says: the text of a CException, or the number of a bare status.
template <class Action>
std::string FailureOf(Action action) {
  try {
    action();
  } catch (const vessa::CException& failure) {
    return failure.Text();
  } catch (const vessa::Status status) {
    return "status " + std::to_string(status);
  }
  return "no failure";
}

inline std::string StatusText(vessa::Status status) { return "status " + std::to_string(status); }

/// `count` bytes that differ from their neighbours, also from those a power of two away.
inline std::string SomeBytes(std::size_t count) {
  std::string bytes(count, '\0');
  for (std::size_t i = 0; i < count; ++i) bytes[i] = static_cast<char>((i * 7 + i / 251 + 1) & 0xFF);
  return bytes;
}

/// Reads `count` bytes of any of the input streams.
template <class Stream>
std::string ReadBytes(Stream& stream, std::size_t count) {
  std::string bytes(count, '?');
  const vessa::Status status = stream.Read({reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size()});
  return status == vessa::kSuccess ? bytes : StatusText(status);
}

/// What a peek gives: the bytes, "end", or its status.
template <class Stream>
std::string PeekBytes(Stream& stream, std::size_t count) {
  std::string bytes(count, '?');
  bool at_end = true;
  const vessa::Status status =
      stream.Peek({reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size()}, at_end);
  if (status != vessa::kSuccess) return StatusText(status);
  return at_end ? "end" : bytes;
}

inline std::span<const std::uint8_t> BytesOf(const std::string& text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}
