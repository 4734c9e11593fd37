#include "emulator/vessa/answer_printer.h"

#include <fmt/format.h>

#include "emulator/hex_text.h"
#include "emulator/vessa/base64.h"
#include "emulator/vessa/json_value.h"
#include "emulator/vessa/printable_text.h"
#include "emulator/vessa/value_preview.h"
#include "emulator/vessa/value_representation.h"

namespace emulator::tool {
namespace {

std::string Base64(std::string_view bytes) {
  std::string text;
  Base64Encoder encoder;
  encoder.Append(bytes, text);
  encoder.Finish(text);
  return text;
}

/// The member that holds the value; empty when there is none to hold.
std::string ValueMember(const ElementAnswer& answer, const CharacterSets& characters) {
  const ValueRepresentation& vr = FindValueRepresentation(answer.vr);
  if (answer.value.empty() || vr.kind == ValueKind::kSequence) return "";
  if (vr.kind != ValueKind::kBytes) {
    if (const auto values = JsonValuesOf(vr, answer.value, characters)) {
      return values->array.empty() ? "" : fmt::format(R"(,"Value":{})", values->array);
    }
  }
  return fmt::format(R"(,"InlineBinary":"{}")", Base64(answer.value));
}

}  // namespace

std::string AnswerText(const ElementAnswer& answer, const CharacterSets& characters) {
  if (FindValueRepresentation(answer.vr).kind == ValueKind::kBytes) {
    return fmt::format("{} bytes{}{}", answer.value.size(), answer.value.empty() ? "" : ": ",
                       HexText(answer.value));
  }
  constexpr std::size_t kNoLimit = 0;
  return PreviewOf({answer.vr, characters, kNoLimit}, answer.value, true);
}

std::string AnswerJson(const std::string& file_name, const std::string& reference,
                       const ElementAnswer& answer, const CharacterSets& characters) {
  const std::string file =
      file_name.empty() ? std::string() : fmt::format(R"("file":{},)", JsonString(PrintableUtf8(file_name)));
  return fmt::format(R"({{{}"reference":{},"vr":{}{}}})", file, JsonString(PrintableUtf8(reference)),
                     JsonString(PrintableUtf8(answer.vr)), ValueMember(answer, characters));
}

bool IsLocalText(const std::string& vr) {
  const ValueKind kind = FindValueRepresentation(vr).kind;
  return kind == ValueKind::kLocalText || kind == ValueKind::kPersonName;
}

}  // namespace emulator::tool
