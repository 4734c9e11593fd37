#include "emulator/client.h"

namespace emulator {

StopAtTag::StopAtTag(std::uint32_t tag) : StopAtTag([tag](std::uint32_t asked) { return asked == tag; }) {}

StopAtTag::StopAtTag(std::function<bool(std::uint32_t)> predicate) : predicate_(std::move(predicate)) {}

Value StopAtTag::Call(std::string_view method, std::span<const Value> arguments) {
  if (method != "ShouldStopDecomposition") return Object::Call(method, arguments);
  if (arguments.size() != 1) throw HostError{kWrongParameters};
  const auto tag = static_cast<std::uint32_t>(AsInteger(arguments[0]));
  asked_.push_back(tag);
  if (fail_at_ > 0 && --fail_at_ == 0) throw HostError{fail_status_};
  return std::int64_t{predicate_(tag) ? 1 : 0};
}

void StopAtTag::FailAt(std::uint64_t n, int status) {
  fail_at_ = n;
  fail_status_ = status;
}

}  // namespace emulator
