#include <algorithm>
#include <string>
#include <string_view>

#include "dicom/big_hex.h"
#include "dicom/byte_order.h"
#include "modules/VessaDCM/call_outs.h"
#include "modules/VessaDCM/failure_report.h"

namespace vessa {
namespace {

constexpr std::int32_t kDone = 0;
constexpr std::int32_t kFailed = 1;

std::size_t LengthOf(const HostString& buffer) {
  return std::min<std::size_t>(buffer.count, HostString::kCapacity);
}

void ConvertInPlace(HostString& buffer) {
  const std::string hexadecimal(buffer.bytes, buffer.bytes + LengthOf(buffer));
  const std::string decimal = BigHexToDecimal(hexadecimal);
  std::copy(decimal.begin(), decimal.end(), buffer.bytes);
  buffer.count = static_cast<std::uint16_t>(decimal.size());
}

}  // namespace

std::int32_t zfSwitchByteOrdering(HostString* buffer, std::int32_t unit_size) {
  if (buffer == nullptr) return kDone;
  Call::Stage(" switching byte ordering");
  if (SwitchByteOrdering(buffer->bytes, LengthOf(*buffer), HostString::kCapacity, unit_size) >= 0)
    return kDone;
  WriteReport(kSwitchByteOrderingReport);
  return kFailed;
}

std::int32_t zfBigHexToDecimal(HostString* buffer) {
  if (buffer == nullptr) return kDone;
  Call::Stage(" running bighextodecimal");
  try {
    ConvertInPlace(*buffer);
    return kDone;
  } catch (...) {
    WriteReport(kBigHexToDecimalReport);
    return kFailed;
  }
}

}  // namespace vessa
