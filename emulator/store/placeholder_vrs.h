#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/store/stored_vr.h"

namespace emulator {

/// Elements whose VR is decided at the end of the data set only, by other elements of their item or of what encloses
/// it, which may come behind them. Needs memory for those elements alone.
class PlaceholderVrs {
 public:
  PlaceholderVrs() { Clear(); }

  void EnterItem();
  void LeaveItem();
  /// Takes note of an element's value, of which the first chunk is enough.
  void Observe(std::uint32_t tag, std::string_view value);
  /// Takes note of an element whose VR waits for the end.
  void Defer(std::uint32_t tag, std::string_view placeholder, std::uint32_t length, std::int64_t node);

  /// The data set has ended: names the VR of each element that was deferred, in their order, and forgets everything.
  void Resolve(const std::function<void(std::int64_t node, std::string_view vr)>& decide);

 private:
  struct Scope {
    std::size_t parent;
    PixelDescription description;
  };
  struct Deferred {
    std::uint32_t tag;
    std::uint32_t length;
    std::string placeholder;
    std::int64_t node;
    std::size_t scope;
  };

  void Clear();
  void InheritDescriptions();

  std::vector<Scope> scopes_;  // the data set first, each behind the one that encloses it
  std::vector<Deferred> deferred_;
  std::size_t open_ = 0;
};

}  // namespace emulator
