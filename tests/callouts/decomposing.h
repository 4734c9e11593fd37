#pragma once

#include <gmock/gmock.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "emulator/client.h"
#include "emulator/event_log.h"
#include "emulator/stream_object.h"
#include "tests/callouts/loaded_library.h"
#include "tests/support/dicom_bytes.h"
#include "tests/support/event_script.h"

namespace emulator {

inline const dicom_bytes::DataSetBytes kExplicit(dicom_bytes::VrForm::kExplicit);
inline const dicom_bytes::DataSetBytes kImplicit(dicom_bytes::VrForm::kImplicit);

/// zfDecomposeStream from a stream object in memory into a content handler that keeps a log.
class Decomposing : public LoadedLibrary {
 protected:
  ListResult Decompose(const std::string& bytes,
                       std::string_view syntax = dicom_bytes::kExplicitLittleEndian) {
    return DecomposeFrom(std::make_shared<MemoryStream>(bytes), syntax);
  }

  ListResult DecomposeFrom(std::shared_ptr<MemoryStream> stream,
                           std::string_view syntax = dicom_bytes::kExplicitLittleEndian) {
    stream_ = std::move(stream);
    log_ = std::make_shared<EventLog>();
    if (prepare_log_) prepare_log_(*log_);
    return Call("zfDecomposeStream", ListBuilder()
                                         .Integer(host_.Add(stream_))
                                         .String(syntax)
                                         .Integer(host_.Add(log_))
                                         .Integer(client_oref_));
  }

  /// The events behind StartContent, which always comes first. EndContent ends a whole decomposition.
  Lines Events() const {
    const Lines& lines = log_->Lines();
    if (lines.empty() || !lines.front().starts_with("StartContent ")) return {"no StartContent"};
    return {lines.begin() + 1, lines.end()};
  }

  /// Bytes that the host's stream stands behind.
  std::int64_t Consumed() const { return stream_->Position() - 1; }

  /// From now on a client object is asked, which wants to stop at those tags.
  std::shared_ptr<StopAtTag> AskClient(std::function<bool(std::uint32_t)> stop) {
    auto [client, oref] = Make<StopAtTag>(std::move(stop));
    client_oref_ = oref;
    return client;
  }

  std::shared_ptr<MemoryStream> stream_;
  std::shared_ptr<EventLog> log_;
  std::uint32_t client_oref_ = 0;
  std::function<void(EventLog&)> prepare_log_;  ///< given each new log, before the call
};

}  // namespace emulator
