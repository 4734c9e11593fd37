#include "emulator/vessa/check_report.h"

#include <fmt/format.h>

#include "emulator/path_text.h"
#include "emulator/vessa/json_value.h"
#include "emulator/vessa/printable_text.h"

namespace emulator::tool {
namespace {

using Outcome = Prediction::Outcome;

const char* NameOfOutcome(Outcome outcome) {
  switch (outcome) {
    case Outcome::kSucceeds:
      return "succeeds";
    case Outcome::kFails:
      return "fails";
    case Outcome::kDoesNotReturn:
      return "does-not-return";
    case Outcome::kUnclear:
      return "unclear";
  }
  return "";
}

std::string OutcomeText(const FileReport& report) {
  const Prediction& prediction = report.prediction;
  std::string message = PrintableAscii(prediction.message);
  const std::string place = PlaceText(prediction.offset, prediction.is_at_end, prediction.path);
  switch (prediction.outcome) {
    case Outcome::kSucceeds:
      return report.findings.IsEmpty() ? "ok" : "succeeds";
    case Outcome::kFails:
      return fmt::format("fails at {}: {}", place, message);
    case Outcome::kDoesNotReturn:
      return fmt::format("does not return: ends inside an item of defined length, at {}", place);
    case Outcome::kUnclear:
      return message;
  }
  return {};
}

template <class Visit>
void ForEachFinding(const FindingList& findings, const Visit& visit) {
  for (std::size_t index = 0; index < kFindingKinds; ++index) {
    const auto kind = static_cast<FindingKind>(index);
    if (findings.Of(kind).count > 0) visit(kind, findings.Of(kind));
  }
}

std::string FindingText(FindingKind kind, const Finding& finding) {
  const std::string place = PlaceText(finding.first_offset, false, finding.first_path);
  if (finding.count == 1) return fmt::format("; {} at {}", NameOf(kind), place);
  return fmt::format("; {} {} times, first at {}", NameOf(kind), finding.count, place);
}

/// Members after the first of an object.
std::string Member(const char* name, const std::string& text) {
  return fmt::format(", \"{}\": {}", name, JsonString(PrintableUtf8(text)));
}

std::string FindingJson(FindingKind kind, const Finding& finding) {
  return fmt::format(R"({{"kind": "{}", "count": {}, "offset": {}{}{}}})", NameOf(kind), finding.count,
                     finding.first_offset, Member("path", finding.first_path),
                     Member("means", ExplanationOf(kind)));
}

}  // namespace

std::string ReportText(const std::string& path, const FileReport& report) {
  std::string text = fmt::format("{}: {}", PrintableUtf8(path), OutcomeText(report));
  ForEachFinding(report.findings,
                 [&text](FindingKind kind, const Finding& finding) { text += FindingText(kind, finding); });
  const bool is_usual = report.preamble == PreambleKind::kZero || report.preamble == PreambleKind::kNone;
  if (!is_usual) text += fmt::format("; preamble: {}", NameOf(report.preamble));
  if (report.is_inflated) text += "; offsets of the inflated data set";
  return text;
}

std::string ReportJson(const std::string& path, const FileReport& report) {
  const Prediction& prediction = report.prediction;
  std::string text =
      fmt::format(R"({{"file": {}, "outcome": "{}", "preamble": "{}")", JsonString(PrintableUtf8(path)),
                  NameOfOutcome(prediction.outcome), NameOf(report.preamble));
  if (!report.transfer_syntax.empty())
    text += Member("transferSyntax", PrintableAscii(report.transfer_syntax));
  if (!prediction.message.empty()) text += Member("message", PrintableAscii(prediction.message));
  if (prediction.outcome != Outcome::kUnclear) {
    text += fmt::format(R"(, "offset": {}, "inflated": {})", prediction.offset, report.is_inflated);
    text += Member("path", prediction.path);
  }
  text += R"(, "findings": [)";
  const char* separator = "";
  ForEachFinding(report.findings, [&](FindingKind kind, const Finding& finding) {
    text += separator + FindingJson(kind, finding);
    separator = ", ";
  });
  return text + "]}";
}

}  // namespace emulator::tool
