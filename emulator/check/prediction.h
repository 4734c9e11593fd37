#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace emulator {

/// What a decomposition will come to.
struct Prediction {
  enum class Outcome {
    kSucceeds,
    kFails,          ///< the library answers with `message`
    kDoesNotReturn,  ///< the data end inside an item of defined length, and the library waits for the rest
    kUnclear,        ///< nobody says what the bytes are; `message` tells what is missing
  };
  Outcome outcome = Outcome::kSucceeds;
  std::string message;       ///< of a failure: the library's, byte for byte
  std::uint64_t offset = 0;  ///< how far the library has read by then
  bool is_at_end = false;    ///< nothing follows that offset
  std::string path;          ///< of the elements that are open there, see PathText
};

/// The VR that the library's dictionary holds for a tag; empty for none.
using DictionaryVr = std::function<std::string(std::uint32_t tag)>;

}  // namespace emulator
