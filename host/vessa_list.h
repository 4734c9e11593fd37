#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "host/vessa_ro_list.h"

namespace vessa {

/// A host value list under construction. It owns its bytes, on the heap or in storage handed to it. A failed
/// growth throws std::bad_alloc and leaves the list as it was.
class VessaList : public VessaROList {
 public:
  /// Starts without room, on the heap.
  VessaList();
  /// Starts in `storage`, which must outlive the list; goes to the heap only when it outgrows it.
  explicit VessaList(std::span<std::uint8_t> storage);
  ~VessaList() override;
  VessaList(const VessaList&) = delete;
  VessaList& operator=(const VessaList&) = delete;

  /// Makes room for `bytes` bytes in all: the smallest of 32, 64, 128, 256 and 512 that holds them, above
  /// that the next multiple of 1024.
  virtual void Reserve(std::uint64_t bytes);
  std::uint64_t Capacity() const { return capacity_; }  ///< bytes that the list may take before it must grow

  // What is appended must not lie in the list itself.
  void AppendString(std::span<const std::uint8_t> text);
  void AppendString(std::string_view text);
  void AppendWString(std::u16string_view text);
  void AppendInt(std::int32_t value);
  /// Meant for non-negative values: a negative one is written as zero, and that is kept.
  void AppendInt64(std::int64_t value);
  void Clear();  ///< empties the list and keeps its room

 private:
  /// Makes room for one item at `offset` and writes its header and type.
  /// @param data_bytes  length of the item's data
  /// @return            where the data go
  std::span<std::uint8_t> Insert(std::uint64_t offset, ItemType type, std::uint64_t data_bytes);
  void AppendInteger(ItemType type, std::uint64_t bits, std::uint64_t data_bytes);

  std::uint8_t* buffer_ = nullptr;  // what bytes_ points at, writable
  std::uint64_t capacity_ = 0;
  bool on_heap_ = true;
};

}  // namespace vessa
