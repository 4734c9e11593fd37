#include "host/services.h"

namespace vessa {
namespace {

template <class... Arguments>
int Refuse(Arguments... /*ignored*/) {
  return kFailedCallin;
}

void* RefuseArea(LongStringDescriptor* /*descriptor*/, int /*length*/) { return nullptr; }

constexpr HostServices MakeRefusingServices() noexcept {
  HostServices table{};
  table.convert_result = Refuse;
  table.push_integer = Refuse;
  table.push_double = Refuse;
  table.push_string = Refuse;
  table.push_wide_string = Refuse;
  table.push_global = Refuse;
  table.push_global_in_namespace = Refuse;
  table.pop_integer = Refuse;
  table.pop_string = Refuse;
  table.global_get = Refuse;
  table.push_method = Refuse;
  table.invoke_method = Refuse;
  table.push_property = Refuse;
  table.get_property = Refuse;
  table.push_object = Refuse;
  table.push_wide_string_alt = Refuse;
  table.pop_wide_string = Refuse;
  table.push_counted = Refuse;
  table.global_order = Refuse;
  table.global_defined = Refuse;
  table.new_long_string = RefuseArea;
  table.new_long_wide_string = RefuseArea;
  table.push_long_string = Refuse;
  table.push_long_wide_string = Refuse;
  table.push_long_wide_string_alt = Refuse;
  table.push_unsigned = Refuse;
  return table;
}

constexpr HostServices kRefusingServices = MakeRefusingServices();

}  // namespace

namespace detail {

constinit const HostServices* host_services = &kRefusingServices;

}  // namespace detail

void SetHostServices(const HostServices* services) {
  detail::host_services = services != nullptr ? services : &kRefusingServices;
}

void RaiseStatus(Status status) { throw status; }

}  // namespace vessa
