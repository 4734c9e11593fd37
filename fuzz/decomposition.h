#pragma once

#include <cstdint>
#include <string>

#include "emulator/content_sink.h"
#include "emulator/library.h"

namespace fuzz {

/// How a decomposition ended.
struct Decomposition {
  emulator::ListResult result;
  bool would_never_return =
      false;  ///< see StreamAccount::PeeksForEver; the host's failing handler has ended it
};

/// Decomposes the bytes as a sound host does, holds the events against the bytes and hands them on to `sink`. Checks
/// the outcome: a success has told of every byte, has left the host's stream at its end and its stack empty.
/// @param hand_out_at_most  bytes that the host gives with one peek; 0: as many as asked for
Decomposition Decompose(const std::string& bytes, const char* transfer_syntax, emulator::ContentSink& sink,
                        std::int64_t hand_out_at_most = 0);

/// The transfer syntaxes that differ for the library: implicit, explicit, encapsulated and one that it refuses.
const char* SyntaxFor(std::size_t choice);
inline constexpr std::size_t kSyntaxes = 4;
inline constexpr std::size_t kSupportedSyntaxes = 3;

}  // namespace fuzz
