#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "host/binary_interface.h"
#include "host/vessa_list.h"
#include "modules/VessaDCM/frame_state.h"

namespace vessa {

/// What a call-out demands of its argument list before it fetches the first argument.
struct ArgumentRule {
  /// Where the message for too few arguments goes: it stands alone as the step, or before the step that was
  /// current.
  enum class Message { kReplacesStep, kPrecedesStep };

  std::uint64_t least_count;
  const char* missing_text;
  Message message = Message::kReplacesStep;
};

/// One call with a value list in and a result list out, both in the host's buffer. The arguments are read in
/// place; the results are assembled in storage on the machine stack, so that no result and no failure needs
/// the heap.
class Call {
 public:
  explicit Call(HostString& buffer);

  /// Names the stage that runs next, for failure messages. `step` must outlive the library.
  static void Stage(const char* step) { TheFrameState().step_text = step; }

  /// Opens the argument list and checks its count.
  /// @throws Status  kMissingArgument  fewer arguments than the rule asks for
  /// @throws std::invalid_argument  the list is malformed
  void OpenArguments(const ArgumentRule& rule);

  std::uint64_t ArgumentCount() { return arguments_.Count(); }

  // Each fetches the argument at a position from 1, in a stage of its own. The list codec's exceptions pass.
  std::int32_t IntegerArgument(std::size_t position);
  std::int64_t Integer64Argument(std::size_t position);
  std::uint32_t OrefArgument(std::size_t position);
  std::string TextArgument(std::size_t position);
  VessaROList ListArgument(
      std::size_t position);  ///< a view of the argument's data, valid until the call ends

  /// Starts the result list of a success. The work appends its results to what this returns.
  VessaList& Succeed();

  /// Replaces the results by a failure made of the error text and the step text.
  void Fail() noexcept;

  /// Writes the result list into the host's buffer; one that is too long becomes a failure.
  void WriteBack() noexcept;

 private:
  /// Longest encodings of: the status, a header, a failure text; a result that is written back is shorter.
  static constexpr std::size_t kStatusBytes = 3;
  static constexpr std::size_t kItemHeaderBytes = 8;
  static constexpr std::size_t kResultStorageBytes =
      kStatusBytes + kItemHeaderBytes + kMaxFailureUnits * sizeof(char16_t);
  static_assert(kResultStorageBytes > HostString::kCapacity);

  void SeekArgument(std::size_t position);

  HostString& buffer_;
  std::size_t entry_count_;
  VessaROList arguments_;
  std::array<std::uint8_t, kResultStorageBytes> storage_;
  VessaList results_;
};

}  // namespace vessa
