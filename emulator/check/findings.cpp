#include "emulator/check/findings.h"

namespace emulator {
namespace {

struct Words {
  const char* name;
  const char* explanation;
};

constexpr std::array<Words, kFindingKinds> kWords = {{
    {"executable-preamble", "the preamble makes the file a program as well"},
    {"empty-data-set", "no element follows, and the call succeeds all the same"},
    {"unpositioned", "the data set does not begin here: preamble or group 0002 is read as elements of it"},
    {"wrong-syntax", "the first element does not look like the transfer syntax that is named"},
    {"short-length-vr",
     "a VR with a 4-byte length that is read with a 2-byte one (OD, OL, OV, SV, UC, UR, UV); what follows is "
     "misread"},
    {"unknown-vr", "a VR that the standard does not have; read with a 2-byte length"},
    {"placeholder-vr", "a VR that implicit syntaxes leave open; handed on as OX or XS"},
    {"unordered-tags", "a tag that is not above the one before it; a query may miss what follows"},
    {"stray-tag", "a tag of group 0000, 0002 or FFFE, which no data set holds"},
    {"zero-elements", "zeros, such as padding behind the data set, that are read as elements (0000,0000)"},
    {"delimiter-length", "a delimiter with a length, which is not heeded"},
    {"overrun", "an element that runs over the end of its item or sequence"},
    {"unended-item", "an item of undefined length that the end of the data ends"},
}};

const Words& WordsOf(FindingKind kind) { return kWords[static_cast<std::size_t>(kind)]; }

}  // namespace

const char* NameOf(FindingKind kind) { return WordsOf(kind).name; }

const char* ExplanationOf(FindingKind kind) { return WordsOf(kind).explanation; }

std::optional<FindingKind> FindingNamed(std::string_view name) {
  for (std::size_t index = 0; index < kFindingKinds; ++index) {
    if (kWords[index].name == name) return static_cast<FindingKind>(index);
  }
  return std::nullopt;
}

}  // namespace emulator
