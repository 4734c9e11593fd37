#include "modules/VessaDCM/call.h"

#include <algorithm>
#include <span>
#include <string_view>

#include "dicom/status.h"
#include "modules/VessaDCM/failure_text.h"

namespace vessa {
namespace {

constexpr const char* kStepOpening = " fetching arguments list from CBA";
constexpr const char* kStepsFetching[] = {
    " fetching argument 1", " fetching argument 2", " fetching argument 3",
    " fetching argument 4", " fetching argument 5", " fetching argument 6",
};
constexpr std::string_view kTooLong = "Return value exceeded Maximum String Length";

constexpr std::int32_t kResultSuccess = 0;
constexpr std::int32_t kResultFailure = 1;

}  // namespace

// The storage stays uninitialised on purpose: every byte of it that is read was appended before.
Call::Call(HostString& buffer)  // NOLINT(cppcoreguidelines-pro-type-member-init)
    : buffer_{buffer},
      entry_count_{std::min<std::size_t>(buffer.count, HostString::kCapacity)},
      arguments_{std::span<const std::uint8_t>(buffer.bytes, entry_count_)},
      results_{std::span<std::uint8_t>(storage_)} {
  TheFrameState().error_text.Clear();
}

void Call::OpenArguments(const ArgumentRule& rule) {
  Stage(kStepOpening);
  if (arguments_.Count() >= rule.least_count) return;
  if (rule.message == ArgumentRule::Message::kPrecedesStep) {
    TheFrameState().error_text.Assign(rule.missing_text);
  } else {
    Stage(rule.missing_text);
  }
  throw kMissingArgument;
}

void Call::SeekArgument(std::size_t position) {
  Stage(kStepsFetching[position - 1]);
  arguments_.Seek(position - 1);
}

std::int32_t Call::IntegerArgument(std::size_t position) {
  SeekArgument(position);
  return arguments_.GetInt();
}

std::int64_t Call::Integer64Argument(std::size_t position) {
  SeekArgument(position);
  return arguments_.GetInt64();
}

std::uint32_t Call::OrefArgument(std::size_t position) {
  return static_cast<std::uint32_t>(IntegerArgument(position));
}

std::string Call::TextArgument(std::size_t position) {
  SeekArgument(position);
  return arguments_.GetString();
}

VessaROList Call::ListArgument(std::size_t position) {
  SeekArgument(position);
  return arguments_.GetSublist();
}

VessaList& Call::Succeed() {
  results_.AppendInt(kResultSuccess);
  return results_;
}

void Call::Fail() noexcept {
  results_.Clear();
  FailureText text;
  text.Build(TheFrameState());
  results_.AppendInt(kResultFailure);
  results_.AppendWString(text.View());
}

void Call::WriteBack() noexcept {
  std::fill_n(buffer_.bytes, entry_count_, std::uint8_t{0});
  buffer_.count = HostString::kCapacity;
  if (results_.Bytes().size() >= HostString::kCapacity) {
    TheFrameState().error_text.Assign(kTooLong);
    Fail();
  }
  const std::span<const std::uint8_t> result = results_.Bytes();
  std::copy(result.begin(), result.end(), buffer_.bytes);
  buffer_.count = static_cast<std::uint16_t>(result.size());
}

}  // namespace vessa
