#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "decompose/content_handler_interface.h"
#include "decompose/recent_vrs.h"
#include "dicom/byte_order.h"
#include "stream/input_stream.h"

namespace vessa {

/// Values reach handlers in chunks of at most so many bytes.
inline constexpr std::size_t kValueChunkBytes = 32648;

/// Parses a data set (PS3.5 section 7) from a stream's current position to its end and reports it as events.
/// Used once; owns neither stream nor handler.
///
/// Sequences nest as deep as the input says. What is open is therefore kept in a list of our own, 32 bytes a
/// level, and not on the machine's stack: a step that opens a sequence or an item returns, and the rest of the
/// level above is taken up when the inner one has ended.
class StreamDecomposer {
 public:
  /// @param client_oref  host object asked before each element whether to stop; 0 for none
  /// @param simple_pixel_data_frames  leaves out the events that mark the end of encapsulated pixel data
  StreamDecomposer(CVessaInputStream& stream, CContentHandlerInterface& handler,
                   const std::uint32_t& client_oref, bool simple_pixel_data_frames);

  /// A CSuccessException of the handler ends it early.
  /// @return  0; failures are thrown
  /// @throws CDecomposeException  the stream or the syntax cannot be parsed
  /// @throws Status  the stream or the handler failed, or the host when it was asked whether to stop
  Status DecomposeStream(std::string_view transfer_syntax);

 private:
  /// What a step did that may have to be taken up again.
  enum class Progress {
    kWhole,   ///< it has read what it was to read, and the level goes on
    kOpened,  ///< it stands inside a sequence or an item that it has opened
    kDone,    ///< it has met what ends the level; or the client wants to stop
    kAtEnd,   ///< it has met the end of the stream
  };
  enum class ElementLoop { kUntilEnd, kUntilItemDelimitation };
  enum class ItemLoop { kUntilPosition, kUntilSequenceDelimitation };

  struct VRAndLength {
    Vr vr;
    std::uint32_t length;
  };
  struct TagAndLength {
    Tag tag;
    std::uint32_t length;
  };
  struct OpenSequence {
    Tag tag;
    std::uint32_t length;
    std::int64_t end;           ///< position behind it, when its length is defined
    std::uint32_t item_length;  ///< of the open item
    bool in_item;               ///< false between two items
    std::int64_t item_end;      ///< position behind the open item, when its length is defined
  };

  void DecomposeDataSet();
  Progress DecomposeElements(ElementLoop mode);
  Progress DecomposeElementsUpTo(std::int64_t end);
  Progress DecomposeElement(ElementLoop mode);
  VRAndLength ReadVRAndLength(Tag tag);
  Progress StartSequence(Tag tag, std::uint32_t length);
  Progress DecomposeSequence();
  Progress DecomposeItem(OpenSequence& sequence, ItemLoop mode);
  void DecomposeElementsOfItem();
  void DeliverData(Tag tag, std::uint32_t length);
  void DeliverChunks(Tag tag, std::uint32_t length);
  void DecomposeData_UndefLength(Tag tag, Vr vr);
  std::uint32_t DeliverFragments(Tag tag);

  TagAndLength ReadTagAndLength();
  std::uint32_t ReadLength();

  CVessaInputStream& stream_;
  CContentHandlerInterface& handler_;
  const std::uint32_t& client_oref_;
  bool simple_pixel_data_frames_;

  // The transfer syntax, and what it decides.
  std::string_view transfer_syntax_;
  ByteOrder byte_order_ = ByteOrder::kLittleEndian;
  std::optional<RecentVrs> implicit_vrs_;  // none where the stream holds VRs

  std::vector<OpenSequence> open_;  // outermost first
};

}  // namespace vessa
