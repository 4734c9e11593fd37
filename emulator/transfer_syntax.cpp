#include "emulator/transfer_syntax.h"

#include <algorithm>
#include <charconv>
#include <iterator>

namespace emulator {
namespace {

/// Last numbers of the UIDs that begin alike.
struct Range {
  std::string_view start;
  int first;
  int last;
};

/// PS3.6 table A-1.
constexpr Range kEncapsulated[] = {
    {"1.2.840.10008.1.2.1.", 98, 98},    // uncompressed
    {"1.2.840.10008.1.2.4.", 50, 66},    // JPEG
    {"1.2.840.10008.1.2.4.", 70, 70},    //
    {"1.2.840.10008.1.2.4.", 80, 81},    // JPEG-LS
    {"1.2.840.10008.1.2.4.", 90, 93},    // JPEG 2000
    {"1.2.840.10008.1.2.4.", 94, 95},    // JPIP
    {"1.2.840.10008.1.2.4.", 100, 101},  // MPEG-2
    {"1.2.840.10008.1.2.4.", 102, 106},  // MPEG-4
    {"1.2.840.10008.1.2.4.", 107, 108},  // HEVC
    {"1.2.840.10008.1.2.", 5, 5},        // RLE
    {"1.2.840.10008.1.2.6.", 1, 2},      // MIME, XML
    {"1.2.840.10008.1.2.7.", 1, 3},      // SMPTE ST 2110
};

bool Holds(const Range& range, std::string_view uid) {
  if (!uid.starts_with(range.start)) return false;
  const std::string_view digits = uid.substr(range.start.size());
  int number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return error == std::errc() && end == digits.data() + digits.size() && digits.front() != '0' &&
         number >= range.first && number <= range.last;
}

}  // namespace

bool HasEncapsulatedPixels(std::string_view uid) {
  return std::any_of(std::begin(kEncapsulated), std::end(kEncapsulated),
                     [uid](const Range& range) { return Holds(range, uid); });
}

}  // namespace emulator
