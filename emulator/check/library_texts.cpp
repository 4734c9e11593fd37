#include "emulator/check/library_texts.h"

#include "emulator/tag_text.h"

namespace emulator::library_texts {
namespace {

constexpr const char* kStage = " decomposing stream";
constexpr std::size_t kMostCharacters = 16379;  // what a result list of 32766 bytes has room for

std::string With(const char* text, std::string_view what) { return text + std::string(what); }

}  // namespace

std::string UnsupportedSyntax(std::string_view syntax) {
  return With("DecomposeStream: Expected a supported transfer syntax, got: ", syntax);
}

std::string UndefinedLength(std::string_view vr) {
  return With("DecomposeElement reading VR and data length: Element specifies undefined length but VR '",
              vr) +
         "' does not allow it";
}

std::string NoItem(std::uint32_t tag) {
  return With("DecomposeItem: Expected [Item] or [Sequence Delimitation Item], got: ", PlainTag(tag));
}

std::string NoEncapsulatedSyntax(std::string_view syntax) {
  return With("DecomposeData_UndefLength: Expected an encapsulated transfer syntax, got: ", syntax);
}

std::string NoEncapsulatedTag(std::uint32_t tag) {
  return With("DecomposeData_UndefLength: Expected an encapsulated transfer syntax tag, got: ",
              PlainTag(tag));
}

std::string NoEncapsulatedVr(std::string_view vr) {
  return With("DecomposeData_UndefLength: Expected a VR or 'OB' or 'OW', got: ", vr);
}

std::string FragmentsEndWithLength(std::uint32_t length) {
  return With("DecomposeData_UndefLength:  [Sequence Delimitation Item] should have zero length, got: ",
              std::to_string(static_cast<std::int32_t>(length)));
}

std::string Message(const std::string& text) {
  std::string message = text.empty() ? kStage : text + " - " + kStage;
  if (message.size() <= kMostCharacters) return message;
  return std::string("Return value exceeded Maximum String Length - ") + kStage;
}

}  // namespace emulator::library_texts
