#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <utility>

#include "dicom/vr.h"

namespace vessa {

/// The node of a data set itself: the root of all its elements.
inline constexpr std::int32_t kRootNode = 0;

/// Where a source keeps one element, and what it knows of its VR.
struct ContentElement {
  std::int32_t node = 0;  ///< the source's own number of the element
  Vr vr;                  ///< empty where the source holds none
};

/// Hands out the elements of one data set in the order in which they are to be written. The walks take the
/// key of the last step, empty to start, put the next key in its place and say whether there was one; at the
/// end the key is empty. Keys of elements are tags as decimal numbers.
class CContentSource {
 public:
  virtual ~CContentSource() = default;

  /// Holds the second slot of the table of virtual operations; nothing calls it.
  virtual void Reset() = 0;
  /// The next element at the top level.
  virtual bool NextTagKey(std::string& key, ContentElement& element) = 0;
  /// Bytes of an element's value, all chunks together.
  virtual std::uint64_t GetDataLength(std::int32_t node) = 0;
  /// The next chunk of an element's value; at the end it is empty. The bytes are the source's until its next
  /// operation, and the caller may change them.
  virtual bool GetNextDataChunk(std::int32_t node, std::string& key, std::span<std::uint8_t>& chunk) = 0;
  /// The next item of a sequence.
  virtual bool NextSequenceItemKey(std::int32_t node, std::string& item_key) = 0;
  /// The next element inside an item of the sequence `node`.
  virtual bool NextSequenceTagKey(const std::string& item_key, std::string& key, std::int32_t node,
                                  ContentElement& element) = 0;
  /// True when the element is to be written with an undefined length.
  virtual bool HasUndefinedLength(std::int32_t node) = 0;

 protected:
  explicit CContentSource(std::string identifier) : identifier_{std::move(identifier)} {}
  CContentSource(const CContentSource&) = default;
  CContentSource& operator=(const CContentSource&) = default;

  const std::string& Identifier() const { return identifier_; }

 private:
  std::string identifier_;
};

}  // namespace vessa
