#include "modules/VessaDCM/buffer_frame.h"

#include "dicom/dictionary.h"
#include "modules/VessaDCM/exception_ladder.h"

namespace vessa {

std::int32_t RunInFrame(HostString* buffer, const ArgumentRule& rule, void (*work)(Call&)) {
  if (buffer == nullptr) return 0;
  InitialiseDictionary();
  Call call(*buffer);
  try {
    call.OpenArguments(rule);
    work(call);
  } catch (...) {
    KeepCurrentExceptionText();
    call.Fail();
  }
  call.WriteBack();
  return 0;
}

}  // namespace vessa
