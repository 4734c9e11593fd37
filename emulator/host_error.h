#pragma once

namespace emulator {

/// What a function of the host answers when it cannot do what it was asked. Objects of the host throw it; the
/// callback on the way catches it and answers its code, so that no exception ever passes through the library.
struct HostError {
  int code = 0;
};

// Codes that the stand-in host gives of its own accord.
inline constexpr int kFailure = -1;        ///< something went wrong that has no code of its own
inline constexpr int kStringTooLong = -3;  ///< a short push of more than 32767 units
inline constexpr int kNotConnected = -7;   ///< no host is there to answer
inline constexpr int kBufferTooSmall =
    -10;  ///< a result longer than its receiver: only part of it was returned
inline constexpr int kInvalidArgument =
    -12;                               ///< an argument, or a step out of its order, that the host refuses
inline constexpr int kNoResult = -13;  ///< nothing there to be popped or converted
inline constexpr int kDescriptorInUse = -14;  ///< a long string's descriptor that was not zeroed
inline constexpr int kUndefinedNode = 9;      ///< a global node without a value
inline constexpr int kInvalidName = 14;       ///< no name of a global
inline constexpr int kOutOfStore = 15;        ///< no memory left in the host
inline constexpr int kInvalidSubscript = 16;  ///< an empty subscript where a node must have one
inline constexpr int kStackFull = 20;         ///< more values on the stack than it holds
inline constexpr int kReadError = 37;         ///< the system could not read a file
inline constexpr int kWriteError = 38;        ///< the system could not write a file
inline constexpr int kWrongParameters = 40;   ///< a method called with other arguments than it takes
inline constexpr int kUnknownNamespace = 83;  ///< a namespace that is not there
inline constexpr int kWideCharacter = 89;     ///< 16-bit text that does not fit into 8-bit text
inline constexpr int kInvalidOref = 119;      ///< no object behind the reference
inline constexpr int kMethodMissing = 120;    ///< the object has no method of that name
inline constexpr int kPropertyMissing = 121;  ///< the object has no property of that name

}  // namespace emulator
