#include "host/callin.h"

namespace vessa {

std::int32_t ConvertResultToInteger() {
  std::int32_t value = 0;
  RaiseCallin(Services().convert_result(kConvertToInteger, &value));
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
