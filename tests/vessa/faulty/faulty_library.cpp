// A library whose call-outs do what no library must: crash, never return, answer nonsense. One tells what it was asked.

#include <cstdlib>
#include <cstring>

#include "host/binary_interface.h"

namespace {

std::int32_t Crash(vessa::HostString*) { std::abort(); }

std::int32_t Leave(vessa::HostString*) { std::_Exit(0); }

std::int32_t Spin(vessa::HostString*) {
  const volatile bool is_done = false;
  while (!is_done) {
  }
  return 0;
}

std::int32_t AnswerNonsense(vessa::HostString* buffer) {
  buffer->count = 2;
  buffer->bytes[0] = 200;  // an item of 200 bytes
  buffer->bytes[1] = 1;
  return 0;
}

std::int32_t AnswerTerminalCodes(vessa::HostString* buffer) {
  constexpr unsigned char kList[] = {3, 4,   1, 16,  2, 'a',  0, 0x1B, 0, '[',
                                     0, '2', 0, 'J', 0, 0x9B, 0, 'b',  0};
  buffer->count = 0;
  for (const unsigned char byte : kList) buffer->bytes[buffer->count++] = byte;
  return 0;
}

/// Status 0, then the arguments as one 8-bit text.
std::int32_t Echo(vessa::HostString* buffer) {
  constexpr std::uint16_t kHeaderBytes = 4;  // the status and the head of a short item
  const std::uint16_t count = buffer->count;
  std::memmove(buffer->bytes + kHeaderBytes, buffer->bytes, count);
  const unsigned char header[kHeaderBytes] = {2, 4, static_cast<unsigned char>(count + 2), 1};
  std::memcpy(buffer->bytes, header, kHeaderBytes);
  buffer->count = static_cast<std::uint16_t>(count + kHeaderBytes);
  return 0;
}

constexpr vessa::CallOutRow kRows[] = {
    {"crash", "Bz", {.buffer = Crash}},
    {"leave", "Bz", {.buffer = Leave}},
    {"spin", "Bz", {.buffer = Spin}},
    {"nonsense", "Bz", {.buffer = AnswerNonsense}},
    {"echo", "Bz", {.buffer = Echo}},
    {"terminal", "Bz", {.buffer = AnswerTerminalCodes}},
    {},
};

}  // namespace

extern "C" const vessa::CallOutRow* GetZFTable(void*, const vessa::HostServices*) { return kRows; }
