#include "host/callin.h"

namespace vessa {
namespace {

/// What the host handed out, once it is known to be a text.
template <class Unit>
std::span<const Unit> HandedOut(int length, const Unit* units) {
  if (length < 0 || (units == nullptr && length > 0)) throw kFailedCallin;
  return {units, static_cast<std::size_t>(length)};
}

}  // namespace

std::int32_t ConvertResultToInteger() {
  std::int32_t value = 0;
  RaiseCallin(Services().convert_result(kConvertToInteger, &value));
  return value;
}

std::span<const std::uint8_t> PopString() {
  int length = 0;
  unsigned char* bytes = nullptr;
  RaiseCallin(Services().pop_string(&length, &bytes));
  return HandedOut<std::uint8_t>(length, bytes);
}

std::u16string_view PopWideString() {
  int length = 0;
  std::uint16_t* units = nullptr;
  RaiseCallin(Services().pop_wide_string(&length, &units));
  const std::span<const std::uint16_t> text = HandedOut<std::uint16_t>(length, units);
  return {reinterpret_cast<const char16_t*>(text.data()), text.size()};
}

std::int32_t PopInteger() {
  int value = 0;
  RaiseCallin(Services().pop_integer(&value));
  return value;
}

std::int32_t ReadIntegerProperty(std::uint32_t oref, std::string_view name) {
  RaiseCallin(Services().push_property(oref, static_cast<int>(name.size()), detail::AsBytes(name)));
  RaiseCallin(Services().get_property());
  return ConvertResultToInteger();
}

bool SimplePixelDataFrames() {
  return HoldsValue(ReadGlobalDefined<"a">("KevDICOM.Debug", "", "simplepixeldataframes"));
}

}  // namespace vessa
