#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "emulator/vessa/base64.h"
#include "emulator/vessa/bulk_folder.h"
#include "emulator/vessa/content_sink.h"
#include "emulator/vessa/data_set_scopes.h"
#include "emulator/vessa/output.h"
#include "emulator/vessa/value_representation.h"

namespace emulator::tool {

/// Prints a data set in the DICOM JSON model (PS3.18 annex F), as the events come. Values of bytes are encoded as they
/// arrive, or go to files of their own; others are held whole, one at a time. Group 0002 and group lengths are no part of the model. Encapsulated
/// pixel data is one value of its items with their headers, as in the stream, without the delimiter behind them.
class JsonModel : public ContentSink {
 public:
  /// @param bulk  takes the values of bytes; null to print them
  explicit JsonModel(Output& output, BulkFolder* bulk = nullptr)
      : output_(output), bulk_(bulk), members_(1, 0) {}

  /// Before the first event and after the last; the model is complete only then.
  void Begin();
  void Finish();
  /// Ends what is open, after events that broke off, so that what came before them can be read.
  void CloseAll();

  /// Values with bytes that have no meaning in their character set; U+FFFD stands for those.
  std::uint64_t UnreadTexts() const { return unread_texts_; }

  void StartContent(std::string_view) override {}
  void EndContent() override {}
  void StartElement(std::uint32_t tag, std::string_view vr, std::uint32_t length) override;
  void EndElement(std::uint32_t tag) override;
  void Data(std::uint32_t tag, std::uint32_t chunk, std::string_view bytes) override;
  void StartSequence() override {}
  void EndSequence() override {}
  void StartItem(std::uint32_t tag, std::uint32_t length) override;
  void EndItem(std::uint32_t tag, std::uint32_t length) override;

 private:
  /// The element whose value is coming.
  struct Element {
    ValueRepresentation vr;
    std::string value;            ///< of a VR that is not encoded as it arrives
    bool has_open_value = false;  ///< the quote of an encoded value has been printed
    bool is_bulk = false;         ///< its bytes go to a file
    std::uint32_t tag = 0;
    Base64Encoder encoder;
  };

  bool IsLeftOut(std::uint32_t tag) const;
  void BeginBytes();
  void AppendBytes(std::string_view bytes);
  void CloseValue();
  void PrintValues();
  std::string Indentation() const;

  Output& output_;
  BulkFolder* bulk_;
  DataSetScopes scopes_;
  Element element_;
  std::vector<std::uint64_t> members_;  ///< members printed so far of each open data set, outermost first
  std::vector<std::uint64_t> items_;    ///< items printed so far of each open element, outermost first
  std::uint64_t left_out_ = 0;          ///< open elements that are not printed
  std::uint64_t unread_texts_ = 0;
};

}  // namespace emulator::tool
