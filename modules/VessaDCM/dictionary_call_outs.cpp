#include <string>
#include <string_view>

#include "dicom/dictionary.h"
#include "modules/VessaDCM/call_outs.h"
#include "modules/VessaDCM/failure_report.h"

namespace vessa {
namespace {

std::u16string WidenAscii(std::string_view text) { return {text.begin(), text.end()}; }

}  // namespace

void zfTagInfo(Call& call) {
  const Tag tag{static_cast<std::uint32_t>(call.Integer64Argument(1))};
  Call::Stage(" looking up tag");
  const ReportOnFailure report(kTagInfoReport);
  std::string_view texts[5];
  const std::string display = TagDisplay(tag);
  const std::optional<TagEntry> entry = LookupTag(tag);
  if (entry) {
    texts[0] = display;
    texts[1] = entry->vr.Text();
    texts[2] = entry->keyword;
    texts[3] = entry->vm;
    texts[4] = entry->note;
  }
  VessaList& results = call.Succeed();
  for (const std::string_view text : texts) results.AppendWString(WidenAscii(text));
}

void zfNameTag(Call& call) {
  const std::string keyword = call.TextArgument(1);
  Call::Stage(" looking up tag name");
  const Tag tag = LookupKeyword(keyword);
  call.Succeed().AppendInt64(tag.Value());
}

}  // namespace vessa
