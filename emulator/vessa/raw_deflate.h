#pragma once

#include <functional>
#include <memory>
#include <string_view>

namespace emulator::tool {

/// Compresses as RFC 1951 has it, without the header and checksum of zlib: the form of deflated data sets (PS3.5
/// section A.5). Hands out the compressed bytes piece by piece.
class RawDeflate {
 public:
  using Take = std::function<void(std::string_view bytes)>;

  explicit RawDeflate(Take take);
  ~RawDeflate();
  RawDeflate(const RawDeflate&) = delete;
  RawDeflate& operator=(const RawDeflate&) = delete;

  void Write(std::string_view bytes);
  /// Hands out the rest.
  void Finish();

 private:
  struct State;
  void Run(int flush);

  Take take_;
  std::unique_ptr<State> state_;
};

}  // namespace emulator::tool
