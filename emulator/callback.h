#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "emulator/operation.h"

namespace emulator {

/// Bytes or units of which only the number is told.
struct Extent {
  std::int64_t count = 0;
  std::string_view unit;  ///< "bytes" or "units"
};

/// What went into a callback or came out of it. Texts are valid only while the callback is observed.
using CallbackItem = std::variant<std::monostate, std::int64_t, double, std::string_view,
                                  std::span<const std::uint16_t>, Extent>;

/// One callback, for those who watch: what the library called, with what, and what the host answered.
struct Callback {
  Operation operation = Operation::kConvertResult;
  std::array<CallbackItem, 4> arguments;  ///< in the order of the call; monostate behind the last
  CallbackItem result;                    ///< what was handed out; monostate when nothing was
  std::string_view bytes;                 ///< the 8-bit text handed out, where the result is its extent
  std::span<const std::uint16_t> units;   ///< the same for 16-bit text
  int status = 0;
  std::chrono::nanoseconds took{0};  ///< what was called inside it included
};

/// How much of the texts a line shows.
enum class TextForm {
  kArguments,  ///< arguments of up to 64 units; of longer ones and of all results the length
  kShort,      ///< arguments and results of up to 64 units; of longer ones the length
  kWhole,      ///< all of it
};

/// The callback as one line of a script:
///
///     PushMethod 3 "Peek" 1             texts of up to 64 units in quotes; '"' and '\' as \" and \\,
///     PushString "a\x00"                bytes outside the printable characters of ASCII as \xHH,
///     PushWideString "\u4E00"           such 16-bit units as \uHHHH,
///     PushString 8000 bytes             longer ones by their length; 16-bit ones in "units"
///     PushDouble 1.5                    as short as it can be and be read back
///     PopString -> 8 bytes              what was handed out: an extent,
///     PopInteger -> 1                   or a number
///     ConvertResult 3 -> 0 bytes
///     NewLongString 40000 -> null       an area that was not given
///     InvokeMethod 1 = 5                the status, when it is not 0
std::string CallbackLine(const Callback& callback, TextForm form = TextForm::kArguments);

/// The part of that line before the answer.
std::string CallbackQuestion(const Callback& callback, TextForm form);

/// A text as it stands in such a line.
void AppendQuoted(std::string_view bytes, std::string& line);
void AppendQuoted(std::span<const std::uint16_t> units, std::string& line);

}  // namespace emulator
