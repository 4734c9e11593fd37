#pragma once

#include "emulator/call_watcher.h"

namespace emulator::tool {

/// Prints each call and each callback on standard error as they happen, a line each, with the seconds it took:
///
///     zfDecomposeStream i:1 s:"1.2.840.10008.1.2.1" i:2 i:0
///       PushMethod 1 "Peek" 1 <0.000001>
///       PushInteger 8000 <0.000000>
///       InvokeMethod 1 <0.000012>
///       ConvertResult 3 -> 8000 bytes <0.000001>
///     = 0 i:0 <0.000123>
class TracePrinter : public CallWatcher {
 public:
  void OnCall(const CallOut& call) override;
  void OnCallback(const Callback& callback) override;
  void OnReturn(const CallOut& call, std::int32_t returned, std::chrono::nanoseconds took) override;

 private:
  std::size_t depth_ = 0;
};

}  // namespace emulator::tool
