#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "emulator/host.h"
#include "emulator/stream_object.h"
#include "host/callin.h"

/// A host with a stream to read from and one to write to.
class PackingHost {
 public:
  explicit PackingHost(std::string input)
      : PackingHost(std::make_shared<emulator::MemoryStream>(std::move(input))) {}
  explicit PackingHost(std::shared_ptr<emulator::Object> input)
      : in_{host_.Add(std::move(input))}, out_{host_.Add(output_)} {
    vessa::SetHostServices(emulator::Host::Table());
  }

  emulator::Host& Host() { return host_; }
  std::uint32_t In() const { return in_; }
  std::uint32_t Out() const { return out_; }
  const std::string& Output() const { return output_->Bytes(); }

 private:
  emulator::Host host_;
  std::shared_ptr<emulator::MemoryStream> output_ = std::make_shared<emulator::MemoryStream>();
  std::uint32_t in_;
  std::uint32_t out_;
};

/// Bytes that hardly pack at all, the same on every run.
inline std::string Noise(std::size_t size) {
  std::string bytes(size, '\0');
  std::uint32_t state = 12345;
  for (char& byte : bytes) {
    state = state * 1664525U + 1013904223U;
    byte = static_cast<char>(state >> 24);
  }
  return bytes;
}

/// Bytes that pack well.
inline std::string Pattern(std::size_t size) {
  std::string bytes(size, '\0');
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i % 251 * (i / 4096));
  return bytes;
}
