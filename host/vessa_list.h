#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "host/vessa_ro_list.h"

namespace vessa {

/// A host value list under construction; owns its bytes (malloc, realloc, free). A failed growth throws
/// std::bad_alloc and leaves the list as it was.
class VessaList : public VessaROList {
 public:
  VessaList();
  ~VessaList() override;
  VessaList(const VessaList&) = delete;
  VessaList& operator=(const VessaList&) = delete;

  /// Makes room for `bytes` bytes in all: the smallest of 32, 64, 128, 256 and 512 that holds them, above that the
  /// next multiple of 1024.
  virtual void Reserve(std::uint64_t bytes);

  void AppendString(std::span<const std::uint8_t> text);
  void AppendString(std::string_view text);
  void AppendWString(std::u16string_view text);
  void AppendInt(std::int32_t value);
  /// Meant for non-negative values: a negative one is written as zero, and that is kept.
  void AppendInt64(std::int64_t value);
  void Clear();  ///< empties the list and keeps its room

 private:
  std::uint64_t capacity_ = 0;
};

}  // namespace vessa
