#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "compose/content_source.h"

namespace vessa {

/// The data set that the host keeps in its global ^KevDICOM.Data under an identifier:
///
///   (id, 0, "c", 0, tagKey)           number of a top-level element's node; tagKey is the tag in decimal
///   (id, node, "v")                   the element's VR
///   (id, node, "d")                   first chunk of its value, a character a byte
///   (id, node, "d", k)                further chunks, in the order of k
///   (id, node, "l")                   "1": to be written with an undefined length
///   (id, node, "c", itemKey)          an item of the sequence `node`
///   (id, node, "c", itemKey, tagKey)  number of the node of an element inside that item
///
/// The data set is node 0, a sequence with the single item 0.
///
/// NextTagKey, NextSequenceTagKey, GetDataLength and GetNextDataChunk throw CComposeException, also for a
/// host that failed; the other operations raise the host's Status.
class CGlobalContentSource : public CContentSource {
 public:
  explicit CGlobalContentSource(std::string identifier) : CContentSource{std::move(identifier)} {}

  void Reset() override {}
  bool NextTagKey(std::string& key, ContentElement& element) override;
  std::uint64_t GetDataLength(std::int32_t node) override;
  bool GetNextDataChunk(std::int32_t node, std::string& key, std::span<std::uint8_t>& chunk) override;
  bool NextSequenceItemKey(std::int32_t node, std::string& item_key) override;
  bool NextSequenceTagKey(const std::string& item_key, std::string& key, std::int32_t node,
                          ContentElement& element) override;
  bool HasUndefinedLength(std::int32_t node) override;

 private:
  void ReadVr(ContentElement& element);

  std::vector<std::uint8_t> storage_;  ///< bytes of the chunk handed out last, kept from call to call
};

}  // namespace vessa
