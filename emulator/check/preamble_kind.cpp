#include "emulator/check/preamble_kind.h"

#include <algorithm>

namespace emulator {
namespace {

using namespace std::string_view_literals;

struct Signature {
  std::string_view start;
  PreambleKind kind;
};

constexpr Signature kSignatures[] = {
    {"II\x2A\0"sv, PreambleKind::kTiff},
    {"MM\0\x2A"sv, PreambleKind::kTiff},
    {"II\x2B\0"sv, PreambleKind::kTiff},
    {"MM\0\x2B"sv, PreambleKind::kTiff},  // BigTIFF
    {"MZ"sv, PreambleKind::kPe},
    {"\x7F\x45LF"sv, PreambleKind::kElf},
    {"\xFE\xED\xFA\xCE"sv, PreambleKind::kMachO},
    {"\xFE\xED\xFA\xCF"sv, PreambleKind::kMachO},
    {"\xCE\xFA\xED\xFE"sv, PreambleKind::kMachO},
    {"\xCF\xFA\xED\xFE"sv, PreambleKind::kMachO},
    {"\xCA\xFE\xBA\xBE"sv, PreambleKind::kMachO},  // several processors in one
    {"#!"sv, PreambleKind::kScript},
};

}  // namespace

PreambleKind KindOfPreamble(std::string_view preamble) {
  if (preamble.empty()) return PreambleKind::kNone;
  if (std::all_of(preamble.begin(), preamble.end(), [](char byte) { return byte == 0; }))
    return PreambleKind::kZero;
  for (const Signature& signature : kSignatures) {
    if (preamble.starts_with(signature.start)) return signature.kind;
  }
  return PreambleKind::kOther;
}

const char* NameOf(PreambleKind kind) {
  switch (kind) {
    case PreambleKind::kNone:
      return "none";
    case PreambleKind::kZero:
      return "zero";
    case PreambleKind::kTiff:
      return "TIFF";
    case PreambleKind::kOther:
      return "other";
    case PreambleKind::kPe:
      return "PE";
    case PreambleKind::kElf:
      return "ELF";
    case PreambleKind::kMachO:
      return "Mach-O";
    case PreambleKind::kScript:
      return "script";
  }
  return "";
}

}  // namespace emulator
