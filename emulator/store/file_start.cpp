#include "emulator/store/file_start.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>

#include "emulator/store/data_set_keys.h"
#include "emulator/store/data_sets.h"
#include "emulator/tag_text.h"

namespace emulator {
namespace {

constexpr std::size_t kPreambleBytes = 128;

struct Element {
  std::string vr;
  std::string value;
};
using Elements = std::map<std::uint32_t, Element>;

void AppendNumber(std::uint32_t number, int bytes, std::string& out) {
  for (int byte = 0; byte < bytes; ++byte)
    out += static_cast<char>(static_cast<unsigned char>(number >> (8 * byte) & 0xFFU));
}

/// Those of PS3.5 section 7.1.2 with a length of 32 bits.
bool HasLongLength(std::string_view vr) {
  constexpr std::array<std::string_view, 13> kLong = {"OB", "OD", "OF", "OL", "OV", "OW", "SQ",
                                                      "SV", "UC", "UN", "UR", "UT", "UV"};
  return std::find(kLong.begin(), kLong.end(), vr) != kLong.end();
}

std::string Encoded(std::uint32_t tag, const Element& element) {
  constexpr std::size_t kLongestShortValue = 0xFFFF;
  const auto length = static_cast<std::uint32_t>(element.value.size());
  const std::string vr = length > kLongestShortValue || element.vr.size() != 2 ? "UN" : element.vr;
  std::string bytes;
  AppendNumber(GroupOf(tag), 2, bytes);
  AppendNumber(ElementOf(tag), 2, bytes);
  bytes += vr;
  if (HasLongLength(vr)) {
    AppendNumber(0, 2, bytes);
    AppendNumber(length, 4, bytes);
  } else {
    AppendNumber(length, 2, bytes);
  }
  return bytes + element.value;
}

/// Values have an even length (PS3.5 section 6.2).
std::string Padded(std::string_view value, char padding) {
  std::string padded(value);
  if (padded.size() % 2 == 1) padded += padding;
  return padded;
}

std::string StoredValue(const Globals& nodes, DataSetKeys& keys, std::uint32_t tag) {
  std::string value;
  auto chunk = nodes.GetKey(keys.MetaElement(tag, kDataName));
  for (std::int64_t index = 1; chunk; ++index) {
    value += chunk->AsBytes();
    chunk = nodes.GetKey(keys.MetaChunk(tag, index));
  }
  return value;
}

Elements StoredElements(const Globals& nodes, const std::string& id) {
  DataSetKeys keys(id);
  Elements elements;
  const auto level = [&id](const std::string& tag) {
    return std::vector<Value>{id, std::string(kMetaGroupName), tag};
  };
  for (auto next = nodes.Order(kMetaGlobal, level("")); !next.subscript.empty();
       next = nodes.Order(kMetaGlobal, level(next.subscript))) {
    const auto tag = static_cast<std::uint32_t>(AsInteger(Value(next.subscript)));
    const auto vr = nodes.GetKey(keys.MetaElement(tag, kVrName));
    elements[tag] = {vr ? vr->AsBytes() : "UN", StoredValue(nodes, keys, tag)};
  }
  return elements;
}

void TakeFromDataSet(const Globals& nodes, const std::string& id, std::uint32_t data_set_tag,
                     std::uint32_t tag, Elements& elements) {
  const auto uid = TopLevelValue(nodes, id, data_set_tag);
  if (uid && !uid->empty()) elements[tag] = {"UI", Padded(*uid, '\0')};
}

}  // namespace

std::string FileStart(const Globals& nodes, const std::string& id, std::string_view transfer_syntax,
                      const Implementation& implementation) {
  Elements elements = StoredElements(nodes, id);
  elements.erase(kMetaGroupLength);
  elements[kMetaVersion] = {"OB", std::string("\0\1", 2)};
  TakeFromDataSet(nodes, id, kSopClassUid, kMediaStorageSopClassUid, elements);
  TakeFromDataSet(nodes, id, kSopInstanceUid, kMediaStorageSopInstanceUid, elements);
  elements[kTransferSyntaxUid] = {"UI", Padded(transfer_syntax, '\0')};
  elements[kImplementationClassUid] = {"UI", Padded(implementation.class_uid, '\0')};
  elements[kImplementationVersionName] = {"SH", Padded(implementation.version_name, ' ')};

  std::string group;
  for (const auto& [tag, element] : elements) group += Encoded(tag, element);
  std::string length;
  AppendNumber(static_cast<std::uint32_t>(group.size()), 4, length);
  return std::string(kPreambleBytes, '\0') + "DICM" + Encoded(kMetaGroupLength, {"UL", length}) + group;
}

}  // namespace emulator
