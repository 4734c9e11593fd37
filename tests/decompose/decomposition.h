#pragma once

#include <gmock/gmock.h>

#include "decompose/content_handler.h"
#include "decompose/stream_decomposer.h"
#include "emulator/client.h"
#include "emulator/event_log.h"
#include "stream/binary_input_stream.h"
#include "tests/decompose/impatient_stream.h"
#include "tests/support/dicom_bytes.h"
#include "tests/support/emulated_host.h"
#include "tests/support/event_script.h"

inline const dicom_bytes::DataSetBytes kExplicit(dicom_bytes::VrForm::kExplicit);
inline const dicom_bytes::DataSetBytes kImplicit(dicom_bytes::VrForm::kImplicit);

inline const std::string kNoFailure = "no failure";
inline const std::string kNeverReturns = "never returns";
inline const std::string kEndedTooEarly = StatusText(vessa::E_FAIL);

/// Decomposes bytes from a host stream object into a host content handler object.
class Decomposition : public EmulatedHost {
 protected:
  Decomposition() : log_{std::make_shared<emulator::EventLog>()}, log_oref_{Add(log_)} {}

  /// @return  what it failed with, or kNoFailure
  std::string Decompose(const std::string& bytes,
                        const std::string& transfer_syntax = dicom_bytes::kExplicitLittleEndian) {
    const std::uint32_t oref = Serve(bytes);
    return FailureOf([&] {
      vessa::CVessaBinaryInputStream stream(oref);
      vessa::RaiseIfNegative(stream.Open());
      Run(stream, transfer_syntax);
    });
  }

  /// The same through a stream that loses its patience, for what may never return.
  /// @return  also kNeverReturns; the host was then left in peace
  std::string DecomposePatiently(const std::string& bytes,
                                 const std::string& transfer_syntax = dicom_bytes::kExplicitLittleEndian) {
    const std::uint32_t oref = Serve(bytes);
    try {
      return FailureOf([&] {
        vessa::CVessaBinaryInputStream stream(oref);
        vessa::RaiseIfNegative(stream.Open());
        ImpatientStream impatient(stream, [this] { return host_.CallbackCount(); });
        Run(impatient, transfer_syntax);
      });
    } catch (const NeverReturns& waiting) {
      EXPECT_EQ(waiting.callbacks_while_waiting, 0U);
      return kNeverReturns;
    }
  }

  /// The events behind StartContent, which always comes first. EndContent ends a whole decomposition.
  Lines Events() const {
    const Lines& lines = log_->Lines();
    if (lines.empty() || !lines.front().starts_with("StartContent ")) return {"no StartContent"};
    return {lines.begin() + 1, lines.end()};
  }

  /// Bytes that the host's stream stands behind.
  std::int64_t Consumed() const { return served_->Position() - 1; }

  /// Makes a client object that wants to stop at those tags.
  std::shared_ptr<emulator::StopAtTag> AskClient(std::function<bool(std::uint32_t)> stop) {
    auto client = std::make_shared<emulator::StopAtTag>(std::move(stop));
    client_oref_ = Add(client);
    return client;
  }

  std::shared_ptr<emulator::MemoryStream> served_;
  std::shared_ptr<emulator::EventLog> log_;
  std::uint32_t log_oref_;
  std::uint32_t client_oref_ = 0;
  bool simple_pixel_data_frames_ = false;

 private:
  std::uint32_t Serve(const std::string& bytes) {
    served_ = std::make_shared<emulator::MemoryStream>(bytes);
    log_->Clear();
    return Add(served_);
  }

  void Run(vessa::CVessaInputStream& stream, const std::string& transfer_syntax) {
    vessa::CContentHandler handler(log_oref_);
    vessa::StreamDecomposer decomposer(stream, handler, client_oref_, simple_pixel_data_frames_);
    EXPECT_EQ(decomposer.DecomposeStream(transfer_syntax), vessa::kSuccess);
    ExpectCleanStack();
  }
};
