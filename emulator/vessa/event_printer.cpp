#include "emulator/vessa/event_printer.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include "emulator/hex_text.h"
#include "emulator/vessa/printable_text.h"
#include "emulator/vessa/tag_text.h"
#include "emulator/vessa/value_preview.h"

namespace emulator::tool {
namespace {

constexpr std::size_t kShownBytes = 32;

/// A VR can be any two bytes of the stream.
std::string VrText(std::string_view vr) { return PrintableAscii(vr); }

using Members = nlohmann::ordered_json;

}  // namespace

void EventTextPrinter::StartContent(std::string_view transfer_syntax) {
  output_.WriteLine(fmt::format("StartContent {}", PrintableAscii(transfer_syntax)));
}

void EventTextPrinter::EndContent() { output_.WriteLine("EndContent"); }

void EventTextPrinter::StartElement(std::uint32_t tag, std::string_view vr, std::uint32_t length) {
  output_.WriteLine(fmt::format("StartElement {} {} {}", PlainTag(tag), VrText(vr), length));
}

void EventTextPrinter::EndElement(std::uint32_t tag) {
  output_.WriteLine(fmt::format("EndElement {}", PlainTag(tag)));
}

void EventTextPrinter::Data(std::uint32_t tag, std::uint32_t chunk, std::string_view bytes) {
  const bool is_cut = !shows_all_bytes_ && bytes.size() > kShownBytes;
  output_.WriteLine(fmt::format("Data {} {} {}{}{}", PlainTag(tag), chunk, bytes.size(),
                                bytes.empty() ? "" : " ",
                                is_cut ? HexText(bytes.substr(0, kShownBytes)) + "..." : HexText(bytes)));
}

void EventTextPrinter::StartSequence() { output_.WriteLine("StartSequence"); }

void EventTextPrinter::EndSequence() { output_.WriteLine("EndSequence"); }

void EventTextPrinter::StartItem(std::uint32_t tag, std::uint32_t length) {
  output_.WriteLine(fmt::format("StartItem {} {}", PlainTag(tag), length));
}

void EventTextPrinter::EndItem(std::uint32_t tag, std::uint32_t length) {
  output_.WriteLine(fmt::format("EndItem {} {}", PlainTag(tag), length));
}

void EventJsonPrinter::StartContent(std::string_view transfer_syntax) {
  const std::string syntax = PrintableAscii(transfer_syntax);
  output_.WriteLine(Members{{"event", "StartContent"}, {"transferSyntax", syntax}}.dump());
}

void EventJsonPrinter::EndContent() { output_.WriteLine(R"({"event":"EndContent"})"); }

void EventJsonPrinter::StartElement(std::uint32_t tag, std::string_view vr, std::uint32_t length) {
  output_.WriteLine(
      Members{{"event", "StartElement"}, {"tag", PlainTag(tag)}, {"vr", VrText(vr)}, {"length", length}}
          .dump());
}

void EventJsonPrinter::EndElement(std::uint32_t tag) {
  output_.WriteLine(Members{{"event", "EndElement"}, {"tag", PlainTag(tag)}}.dump());
}

void EventJsonPrinter::Data(std::uint32_t tag, std::uint32_t chunk, std::string_view bytes) {
  output_.WriteLine(
      Members{{"event", "Data"}, {"tag", PlainTag(tag)}, {"chunk", chunk}, {"bytes", HexText(bytes)}}.dump());
}

void EventJsonPrinter::StartSequence() { output_.WriteLine(R"({"event":"StartSequence"})"); }

void EventJsonPrinter::EndSequence() { output_.WriteLine(R"({"event":"EndSequence"})"); }

void EventJsonPrinter::StartItem(std::uint32_t tag, std::uint32_t length) {
  output_.WriteLine(Members{{"event", "StartItem"}, {"tag", PlainTag(tag)}, {"length", length}}.dump());
}

void EventJsonPrinter::EndItem(std::uint32_t tag, std::uint32_t length) {
  output_.WriteLine(Members{{"event", "EndItem"}, {"tag", PlainTag(tag)}, {"length", length}}.dump());
}

}  // namespace emulator::tool
