#include "emulator/store/data_sets.h"

#include <limits>

#include "emulator/store/data_set_keys.h"
#include "emulator/transfer_syntax.h"

namespace emulator {
namespace {

/// The library reads a stream's Size, which is one more than its bytes, as a signed integer of 32 bits.
constexpr std::int64_t kMostPixelBytes = std::numeric_limits<std::int32_t>::max() - 1;

constexpr std::uint32_t kDirectoryRecords = 0x00041220;

std::string TextAt(const Globals& nodes, const std::string& key) {
  const auto value = nodes.GetKey(key);
  return value ? value->AsBytes() : std::string();
}

}  // namespace

std::optional<StoredFacts> FindDataSet(const Globals& nodes, const std::string& id) {
  DataSetKeys keys(id);
  StoredFacts facts;
  facts.transfer_syntax = TextAt(nodes, keys.Meta(kSyntaxName));
  if (facts.transfer_syntax.empty()) return std::nullopt;
  facts.pixels = TextAt(nodes, keys.Meta(kPixelsName));
  facts.has_framed_pixels = !TextAt(nodes, keys.Meta(kFramedName)).empty();
  facts.is_directory = nodes.DefinedKey(keys.Child(0, 0, kDirectoryRecords)) != 0;
  facts.has_nested_frames = !TextAt(nodes, keys.Meta(kNestedName)).empty();
  return facts;
}

void VisitDataSets(const Globals& nodes, const std::function<void(const std::string&)>& visit) {
  NextSubscript next = nodes.Order(kMetaGlobal, {std::string()});
  for (; !next.subscript.empty(); next = nodes.Order(kMetaGlobal, {next.subscript})) visit(next.subscript);
}

void RemoveDataSet(StoreTransaction& transaction, const std::string& id) {
  const auto nodes = transaction.Nodes();
  DataSetKeys keys(id);
  const std::string pixels = TextAt(*nodes, keys.Meta(kPixelsName));
  if (!pixels.empty()) transaction.DropPixels(pixels);
  nodes->Kill(kDataGlobal, {id});
  nodes->Kill(kMetaGlobal, {id});
}

std::optional<std::string> TopLevelValue(const Globals& nodes, const std::string& id, std::uint32_t tag) {
  DataSetKeys keys(id);
  const auto number = nodes.GetKey(keys.Child(0, 0, tag));
  if (!number) return std::nullopt;
  const std::int64_t node = AsInteger(number->Restored());
  auto chunk = nodes.GetKey(keys.Element(node, kDataName));
  if (!chunk) return std::nullopt;
  std::string value;
  for (std::int64_t index = 1; chunk; ++index) {
    value += chunk->AsBytes();
    chunk = nodes.GetKey(keys.Chunk(node, index));
  }
  return value;
}

std::optional<std::string> WhyNotIn(std::string_view transfer_syntax, const StoredFacts& facts,
                                    std::int64_t pixel_bytes) {
  if (facts.is_directory) return "it is a directory of files, whose offsets would no longer be right";
  if (facts.has_nested_frames) return "an item holds compressed pixel data, which the library cannot write";
  if (pixel_bytes > kMostPixelBytes) return "the pixel data are longer than the library can copy (2 GiB)";
  if (facts.pixels.empty() || transfer_syntax == facts.transfer_syntax) return std::nullopt;
  if (facts.has_framed_pixels) {
    return "the pixel data are compressed, and stay so: only " + facts.transfer_syntax + " can hold them";
  }
  if (HasEncapsulatedPixels(transfer_syntax)) return "the pixel data are not compressed, and stay so";
  return std::nullopt;
}

}  // namespace emulator
