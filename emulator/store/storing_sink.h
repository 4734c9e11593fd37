#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "emulator/content_sink.h"
#include "emulator/store/data_set_keys.h"
#include "emulator/store/data_store.h"
#include "emulator/store/placeholder_vrs.h"

namespace emulator {

/// Bytes of the name of a data set.
inline constexpr std::size_t kLongestId = 255;

/// Stores the data set, and the meta information of its file, that the events of a decomposition tell. See
/// data_set_keys.h for the nodes. Elements are numbered from 1 in the order in which they come.
///
/// The pixel data of the data set itself go to a stream: native ones as they are, fragments with the item tags and
/// lengths around them and the delimiter behind them. Group lengths are left out: they tell the size of an encoding
/// that will not be written again (PS3.5 section 7.2). Of an implicit VR syntax, the VRs are those of stored_vr.h.
///
/// Throws StoreError for what has no place in those nodes: an element that comes twice in one item, and elements
/// inside of group 0002; and when the store cannot write.
class StoringSink : public ContentSink {
 public:
  /// Nothing may be stored under `id` yet. Throws StoreError for an id that is empty or longer than kLongestId.
  StoringSink(StoreTransaction& transaction, const std::string& id);

  void StartContent(std::string_view transfer_syntax) override;
  void EndContent() override;
  void StartElement(std::uint32_t tag, std::string_view vr, std::uint32_t length) override;
  void EndElement(std::uint32_t tag) override;
  void Data(std::uint32_t tag, std::uint32_t chunk, std::string_view bytes) override;
  void StartSequence() override {}
  void EndSequence() override {}
  void StartItem(std::uint32_t tag, std::uint32_t length) override;
  void EndItem(std::uint32_t tag, std::uint32_t length) override;

  /// Elements stored so far, those of group 0002 not counted.
  std::int64_t Elements() const { return last_node_; }

 private:
  /// Where the value of an element goes.
  enum class Place { kNodes, kPixels, kMeta, kNowhere };

  struct OpenElement {
    std::int64_t node;  ///< of kMeta: the tag
    Place place;
    std::int64_t items;
    std::int64_t chunks;
    std::uint32_t highest_tag;  ///< of the item at hand
    bool has_undefined_length;
    bool has_fragments;
    bool is_delimited;
  };

  Place PlaceOf(std::uint32_t tag, std::string_view vr) const;
  void StartStoredElement(std::uint32_t tag, std::string_view vr, std::uint32_t length);
  void LinkToParent(std::uint32_t tag, std::int64_t node);
  void StoreVr(std::uint32_t tag, std::string_view vr, std::uint32_t length, std::int64_t node);
  void StartPixels();
  void StartFragment(std::uint32_t tag, std::uint32_t length);
  void Keep(std::string_view bytes);
  void KeepPixels(std::string_view bytes);
  void KeepChunk(std::string_view bytes);

  StoreTransaction& transaction_;
  std::shared_ptr<Globals> nodes_;
  DataSetKeys keys_;
  PlaceholderVrs placeholders_;
  std::string transfer_syntax_;
  bool is_implicit_ = false;
  std::int64_t last_node_ = 0;
  std::vector<OpenElement> open_;  ///< the data set itself first
  std::shared_ptr<StreamObject> pixels_;
};

}  // namespace emulator
