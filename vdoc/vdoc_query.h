#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "decompose/content_handler_interface.h"
#include "host/vessa_list.h"
#include "stream/binary_output_stream.h"
#include "vdoc/document_path.h"

namespace vessa {

/// Finds one element of a data set and ends the decomposition, by CSuccessException, as soon as the answer is
/// complete or can no longer come. The answer is a VR and a value; none is no failure.
///
/// Without a result stream a value longer than one chunk is a failure (CVDocQueryException); with one, such a
/// value goes to the stream whole, while the results still hold its first chunk. What the stream's last block
/// holds is sent when the results are shown, or when the handler ends without having been asked for them.
class CVDocQuery : public CContentHandlerInterface {
 public:
  /// @param property_list  a view of tag, item number, tag, ..., tag; its bytes must outlive the handler
  /// @param sequence_answer  the sequence itself can be the answer: VR "SQ" and an empty value
  /// @param result_stream  receives long values; null for none
  explicit CVDocQuery(const VessaROList& property_list, bool sequence_answer = false,
                      std::unique_ptr<CVessaBinaryOutputStream> result_stream = nullptr);
  ~CVDocQuery() override;
  CVDocQuery(const CVDocQuery&) = delete;
  CVDocQuery& operator=(const CVDocQuery&) = delete;

  /// Sends what the result stream still holds and shows the answer: VR and value, or nothing.
  VessaROList Results();

  /// @throws CVDocQueryException  a property list of even length
  /// @throws std::exception  no list at all: the list codec's failures
  void Reset() override;
  Status StartContent(std::string_view) override { return kSuccess; }
  Status EndContent() override { return kSuccess; }
  Status StartItem(Tag tag, std::uint32_t length) override;
  Status EndItem(Tag, std::uint32_t) override { return kSuccess; }
  Status StartElement(Tag tag, Vr vr, std::uint32_t length) override;
  Status EndElement(Tag tag) override;
  Status Data(Tag tag, std::uint32_t chunk_number, std::span<const std::uint8_t> chunk) override;
  Status StartSequence(Tag tag) override;
  Status EndSequence() override;
  bool WantsEmptySequences() override { return sequence_answer_; }
  /// True for the answer, and for a value at which it shows that there is none.
  bool WantsValue(Tag tag) override;

 private:
  Status Deliver(std::uint32_t chunk_number, std::span<const std::uint8_t> chunk);
  Status DeliverToStream(std::uint32_t chunk_number, std::span<const std::uint8_t> chunk);
  void KeepAnswer(std::span<const std::uint8_t> chunk);

  static constexpr std::size_t kShortAnswerBytes = 128;  // most texts, with the VR

  VessaROList property_list_;
  bool sequence_answer_;
  CDocumentPath path_;
  Vr vr_;                           // of the element last started
  std::uint32_t value_length_ = 0;  // of the element, or of the pixel data fragment, last started
  std::array<std::uint8_t, kShortAnswerBytes> short_answer_;
  VessaList results_{short_answer_};  // goes to the heap for a longer one
  std::unique_ptr<CVessaBinaryOutputStream> result_stream_;
  bool results_shown_ = false;
  std::vector<std::uint8_t> pending_first_chunk_;  // while it is unknown whether more chunks follow
};

}  // namespace vessa
