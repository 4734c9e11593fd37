#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "emulator/host.h"
#include "emulator/stream_object.h"
#include "host/callin.h"
#include "tests/support/packed_bytes.h"

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

using packed_bytes::Noise;
using packed_bytes::Pattern;
