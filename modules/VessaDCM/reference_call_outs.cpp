#include "modules/VessaDCM/call_outs.h"
#include "vdoc/property_reference.h"

namespace vessa {
namespace {

void Parse(Call& call, void (*parse)(std::string_view reference, VessaList& list)) {
  const std::string reference = call.TextArgument(1);
  Call::Stage(" parsing property reference");
  VessaList property_list;
  parse(reference, property_list);
  call.Succeed().AppendString(property_list.Bytes());
}

}  // namespace

void zfParsePropertyReference(Call& call) { Parse(call, ParsePropertyReference); }

void zfParsePropertySubscriptReference(Call& call) { Parse(call, ParsePropertySubscriptReference); }

}  // namespace vessa
