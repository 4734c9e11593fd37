#include "emulator/vessa/trace_summary.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "emulator/library.h"
#include "emulator/vessa/output.h"

namespace emulator::tool {
namespace {

/// Bytes of a text that passed one way or the other.
struct TextBytes {
  std::uint64_t operator()(std::string_view text) const { return text.size(); }
  std::uint64_t operator()(std::span<const std::uint16_t> text) const { return text.size_bytes(); }
  template <class Other>
  std::uint64_t operator()(const Other& /*item*/) const {
    return 0;
  }
};

std::uint64_t BytesOf(const Callback& callback) {
  std::uint64_t bytes = callback.bytes.size() + callback.units.size_bytes();
  for (const CallbackItem& argument : callback.arguments) bytes += std::visit(TextBytes(), argument);
  return bytes;
}

/// A value list that begins with status 1.
bool HoldsFailure(const vessa::HostString* buffer) {
  return buffer != nullptr && buffer->count <= vessa::HostString::kCapacity &&
         Contents(*buffer).starts_with("\x03\x04\x01");
}

double Seconds(std::chrono::nanoseconds time) { return std::chrono::duration<double>(time).count(); }

}  // namespace

void TraceSummary::OnCall(const CallOut& call) {
  open_.emplace_back();
  if (call.buffer != nullptr) rows_[std::string(call.name)].bytes += call.buffer->count;
}

void TraceSummary::OnCallback(const Callback& callback) {
  Row& row = rows_[std::string(OperationName(callback.operation))];
  ++row.calls;
  row.bytes += BytesOf(callback);
  if (callback.status != 0) ++row.errors;
  if (open_.empty()) return;
  row.time += callback.took - std::exchange(open_.back().calls_inside, {});
  open_.back().callbacks += callback.took;
}

void TraceSummary::OnReturn(const CallOut& call, std::int32_t returned, std::chrono::nanoseconds took) {
  Row& row = rows_[std::string(call.name)];
  ++row.calls;
  if (call.buffer != nullptr) row.bytes += call.buffer->count;
  if (returned != 0 || HoldsFailure(call.buffer)) ++row.errors;
  row.time += took - open_.back().callbacks;
  open_.pop_back();
  if (!open_.empty()) open_.back().calls_inside += took;
}

void TraceSummary::Print() const {
  std::vector<std::pair<std::string, Row>> rows(rows_.begin(), rows_.end());
  std::stable_sort(rows.begin(), rows.end(),
                   [](const auto& one, const auto& other) { return one.second.time > other.second.time; });
  std::chrono::nanoseconds total{0};
  for (const auto& [name, row] : rows) total += row.time;
  WriteError(fmt::format("{:<34} {:>9} {:>12} {:>7} {:>11} {:>6}", "callback", "calls", "bytes", "errors",
                         "seconds", "share"));
  for (const auto& [name, row] : rows) {
    const double share = total.count() == 0 ? 0 : 100 * Seconds(row.time) / Seconds(total);
    WriteError(fmt::format("{:<34} {:>9} {:>12} {:>7} {:>11.6f} {:>5.1f}%", name, row.calls, row.bytes,
                           row.errors, Seconds(row.time), share));
  }
  WriteError(fmt::format("{:<34} {:>9} {:>12} {:>7} {:>11.6f}", "total", "", "", "", Seconds(total)));
}

}  // namespace emulator::tool
