#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/stream_object.h"
#include "tests/callouts/loaded_library.h"
#include "tests/support/dicom_bytes.h"
#include "tests/support/stored_data_set.h"

namespace emulator {

inline constexpr const char* kExplicitBigEndian = "1.2.840.10008.1.2.2";

/// Composes the data set that a test has stored, into a stream.
class ComposeStream : public LoadedLibrary {
 protected:
  ListResult Compose(std::string_view syntax = dicom_bytes::kExplicitLittleEndian,
                     std::string_view original = dicom_bytes::kExplicitLittleEndian) {
    output_ = std::make_shared<MemoryStream>();
    return Call("zfComposeStream", ListBuilder()
                                       .Integer(host_.Add(output_))
                                       .String(StoredDataSet::kId)
                                       .String(syntax)
                                       .String(original)
                                       .Integer(pixels_oref_));
  }

  /// The stream from which top-level Pixel Data are taken from now on.
  MemoryStream& Pixels(std::shared_ptr<MemoryStream> stream) {
    pixels_oref_ = host_.Add(stream);
    return *stream;
  }
  MemoryStream& Pixels(const std::string& bytes) { return Pixels(std::make_shared<MemoryStream>(bytes)); }

  const std::string& Written() const { return output_->Bytes(); }

  void ExpectBytes(const ListResult& result, std::string_view digits) {
    ExpectSuccess(result);
    EXPECT_TRUE(result.values.empty());
    EXPECT_EQ(Written(), dicom_bytes::Hex(digits));
    EXPECT_EQ(host_.StackDepth(), 0U);
  }

  /// A failure while composing, with what was written before it.
  void ExpectFails(const ListResult& result, const std::string& text, std::string_view digits) {
    const std::string message = text + " -  composing stream";
    ExpectFailure(result, std::u16string(message.begin(), message.end()));
    EXPECT_EQ(Written(), dicom_bytes::Hex(digits));
  }

  /// Does something to the data set behind the nth use of an operation.
  template <class Action>
  void Behind(Operation operation, int n, Action action) {
    host_.Observe([operation, n, action, seen = 0](const Callback& callback) mutable {
      if (callback.operation == operation && ++seen == n) action();
    });
  }

  StoredDataSet data_{host_};
  std::shared_ptr<MemoryStream> output_;
  std::uint32_t pixels_oref_ = 0;
};

}  // namespace emulator
