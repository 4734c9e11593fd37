#pragma once

#include <functional>
#include <memory>
#include <string>

#include "emulator/check/findings.h"
#include "emulator/check/preamble_kind.h"
#include "emulator/check/prediction.h"
#include "emulator/stream_object.h"

namespace emulator {

struct CheckRequest {
  std::string
      transfer_syntax;  ///< of the data set, in place of the one that the file names; empty for that one
  bool from_first_byte = false;  ///< as if a host did not pass over preamble and group 0002
  DictionaryVr dictionary;
  /// Makes the bytes of a deflated data set, which begins where the stream stands. Without it they stay as they are.
  std::function<std::shared_ptr<StreamObject>(StreamObject& deflated)> inflate;
};

struct FileReport {
  PreambleKind preamble = PreambleKind::kNone;
  std::string transfer_syntax;
  bool is_inflated = false;  ///< offsets are those of the inflated data set
  Prediction prediction;
  FindingList findings;

  bool IsFine() const { return prediction.outcome == Prediction::Outcome::kSucceeds && findings.IsEmpty(); }
};

/// What the library will do with a file that a host opens as PS3.10 has it: preamble, "DICM" and group 0002 first,
/// then the data set in the syntax that the group names; any other file is a data set in the syntax of the request.
/// @throws HostError  the file cannot be read; what `dictionary` and `inflate` throw
FileReport CheckFile(StreamObject& stream, const CheckRequest& request);

}  // namespace emulator
