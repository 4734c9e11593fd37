#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "compose/compose_exception.h"
#include "compose/global_content_source.h"
#include "compose/stream_composer.h"
#include "dicom/dictionary.h"
#include "emulator/hex_text.h"
#include "emulator/host.h"
#include "emulator/stream_object.h"
#include "host/callin.h"
#include "stream/binary_output_stream.h"
#include "tests/support/dicom_bytes.h"
#include "tests/support/stored_data_set.h"

inline constexpr const char* kImplicitLittle = "1.2.840.10008.1.2";
inline constexpr const char* kExplicitLittle = "1.2.840.10008.1.2.1";
inline constexpr const char* kExplicitBig = "1.2.840.10008.1.2.2";
inline constexpr const char* kJpeg = "1.2.840.10008.1.2.4.50";

/// Runs something and says how it ended: "" for success, an exception's text, or "status n".
template <class Work>
std::string FailureOf(Work work) {
  try {
    work();
    return "";
  } catch (const vessa::CException& exception) {
    return exception.Text();
  } catch (const vessa::Status status) {
    return "status " + std::to_string(status);
  }
}

/// What has to be there before the data set that it holds.
struct OwnHost {
  emulator::Host host;
};

/// A host that keeps the data set "ID" in ^KevDICOM.Data and takes what is composed from it.
class ComposeHost : private OwnHost, public StoredDataSet {
 public:
  ComposeHost()
      : StoredDataSet{host},
        output_{std::make_shared<emulator::MemoryStream>()},
        output_oref_{host.Add(output_)} {
    vessa::SetHostServices(emulator::Host::Table());
    vessa::InitialiseDictionary();
  }

  emulator::Host& Host() { return host; }

  /// The stream from which top-level Pixel Data are taken from now on.
  emulator::MemoryStream& PixelData(const std::string& bytes) {
    const auto stream = std::make_shared<emulator::MemoryStream>(bytes);
    PixelStream(stream);
    return *stream;
  }
  void PixelStream(std::shared_ptr<emulator::MemoryStream> stream) {
    pixels_ = std::move(stream);
    pixels_oref_ = host.Add(pixels_);
  }

  /// How composing ended; see FailureOf.
  std::string Compose(std::string_view syntax, std::string_view original = kExplicitLittle,
                      bool simple_frames = false) {
    vessa::CGlobalContentSource source(kId);
    vessa::CVessaBinaryOutputStream output(output_oref_);
    vessa::StreamComposer composer(source, output, original, pixels_oref_, simple_frames);
    const std::string failure = FailureOf([&] { composer.ComposeStream(kId, syntax); });
    bits_allocated_ = composer.BitsAllocated();
    return failure;
  }

  /// What a further call writes, from the start of the pixel data.
  std::string ComposeAgain(std::string_view syntax, std::string_view original) {
    const std::size_t before = Written().size();
    if (pixels_ != nullptr) pixels_->MoveTo(1);
    EXPECT_EQ(Compose(syntax, original), "");
    return Written().substr(before);
  }

  const std::string& Written() const { return output_->Bytes(); }
  std::uint16_t BitsAllocated() const { return bits_allocated_; }

 private:
  std::shared_ptr<emulator::MemoryStream> output_;
  std::uint32_t output_oref_;
  std::shared_ptr<emulator::MemoryStream> pixels_;
  std::uint32_t pixels_oref_ = 0;
  std::uint16_t bits_allocated_ = 0;
};

using dicom_bytes::Hex;

/// Bytes as hexadecimal digits, for failure reports.
inline std::string Digits(std::string_view bytes) { return emulator::HexText(bytes); }
