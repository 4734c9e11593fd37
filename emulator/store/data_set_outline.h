#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/content_sink.h"

namespace emulator {

/// Two independent sums over the bytes of a value. Values that differ by accident have different ones.
struct ValueDigest {
  std::uint64_t bytes = 0;
  std::uint64_t first = 0xCBF29CE484222325;
  std::uint64_t second = 0x9E3779B97F4A7C15;

  void Add(std::string_view part);
  friend bool operator==(const ValueDigest&, const ValueDigest&) = default;
};

/// The elements of a data set in their order and nesting, with the digests of their values: enough to tell whether
/// two data sets are the same, in memory that does not grow with the values. Group lengths and group 0002 are left
/// out, as are the forms of lengths.
class DataSetOutline : public ContentSink {
 public:
  enum class Kind { kElement, kItem, kFragment };

  struct Entry {
    Kind kind = Kind::kElement;
    std::uint32_t tag = 0;  ///< of kElement
    std::string vr;         ///< of kElement
    ValueDigest value;      ///< of elements without items, and of fragments
    std::size_t end = 0;    ///< index behind the last entry inside of this one
  };

  const std::vector<Entry>& Entries() const { return entries_; }
  const std::string& TransferSyntax() const { return transfer_syntax_; }

  /// Begins anew: of a file, the data set comes last.
  void StartContent(std::string_view transfer_syntax) override;
  void EndContent() override {}
  void StartElement(std::uint32_t tag, std::string_view vr, std::uint32_t length) override;
  void EndElement(std::uint32_t tag) override;
  void Data(std::uint32_t tag, std::uint32_t chunk, std::string_view bytes) override;
  void StartSequence() override {}
  void EndSequence() override {}
  void StartItem(std::uint32_t tag, std::uint32_t length) override;
  void EndItem(std::uint32_t tag, std::uint32_t length) override;

 private:
  void Open(Entry entry);
  void Close();

  std::string transfer_syntax_;
  std::vector<Entry> entries_;
  std::vector<std::size_t> open_;  ///< indices, outermost first
  std::size_t left_out_ = 0;       ///< depth inside of an element that is left out
};

}  // namespace emulator
