#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "compose/content_source.h"
#include "compose/element_writer.h"
#include "compose/open_sequences.h"
#include "compose/pixel_element.h"
#include "dicom/tag.h"

namespace vessa {

class CVessaBinaryOutputStream;

/// Writes a data set (PS3.5 section 7) from a content source to a host stream. Used once; owns neither source
/// nor output.
class StreamComposer {
 public:
  /// @param original_transfer_syntax  the syntax in whose byte order the source holds the values
  /// @param pixel_data_oref  host stream that holds the value of the top-level Pixel Data; 0 for none
  /// @param simple_pixel_data_frames  takes the pixel data as not framed, whatever they are
  StreamComposer(CContentSource& source, CVessaBinaryOutputStream& output,
                 std::string_view original_transfer_syntax, std::uint32_t pixel_data_oref,
                 bool simple_pixel_data_frames);

  /// Writes the whole data set. The output is flushed at every exit; what was written before a failure stays.
  /// @param identifier  the data set's name in failure texts
  /// @throws CComposeException  the data set cannot be written in that syntax
  /// @throws CDecomposeException  a host stream failed
  /// @throws Status  the source failed, or the pixel data have a VR without a swap unit
  void ComposeStream(std::string_view identifier, std::string_view transfer_syntax);

  /// The value of Bits Allocated (0028,0100) met last; 0 for none.
  std::uint16_t BitsAllocated() const { return bits_allocated_; }

 private:
  void ComposeTopLevel(ElementWriter& writer, Tag tag, const ContentElement& element);
  void ComposePixelData(ElementWriter& writer, const ContentElement& element);

  void ComposeSequence(ElementWriter& writer, Tag tag, std::int32_t node);
  void OpenSequenceElement(ElementWriter& writer, Tag tag, std::int32_t node);
  void ContinueSequence(ElementWriter& writer);
  void ContinueItem(ElementWriter& writer);

  void ComposeElement(ElementWriter& writer, Tag tag, const ContentElement& element);
  std::uint64_t CopyValue(ElementWriter& writer, const ContentElement& element, std::uint64_t length);
  void KeepFirstBytes(std::uint64_t offset, std::span<const std::uint8_t> chunk);
  void CollectSpecialTagInfo(Tag tag, Vr vr, std::uint64_t length);

  /// "^KevDICOM.Data(identifier,node,"name")" for failure texts.
  std::string Reference(std::int32_t node, std::string_view name) const;

  CContentSource& source_;
  CVessaBinaryOutputStream& output_;
  std::string original_transfer_syntax_;
  PixelDataStream pixel_data_;
  std::uint16_t bits_allocated_ = 0;

  // Of the call of ComposeStream that is running.
  std::string identifier_;
  OpenSequences open_{kRootNode};
  std::array<std::uint8_t, 2> first_bytes_{};  // of the value copied last, as the source holds it
};

}  // namespace vessa
