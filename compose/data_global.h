#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "compose/byte_text.h"
#include "host/callin.h"
#include "host/push_subscripts.h"

namespace vessa {

/// What one step of a walk came upon.
enum class Found { kEnd, kKeyAlone, kKeyAndValue };

/// The nodes of the host's global ^KevDICOM.Data under one identifier. Every operation raises the host's
/// Status.
class DataGlobal {
 public:
  explicit DataGlobal(const std::string& identifier) : identifier_{identifier} {}

  /// Asks for the value of a node; it is to be popped at once.
  template <class... Subscripts>
  void Get(const Subscripts&... subscripts) const {
    PushGlobalReferenceInNamespace(kName, kCurrentNamespace);
    GlobalGet(PushSubscripts(identifier_, subscripts...));
  }

  /// The value of a node. The characters are the host's, until the next callin.
  template <class... Subscripts>
  std::u16string_view Read(const Subscripts&... subscripts) const {
    Get(subscripts...);
    return PopWideString();
  }

  template <class... Subscripts>
  bool HoldsValueAt(const Subscripts&... subscripts) const {
    PushGlobalReferenceInNamespace(kName, kCurrentNamespace);
    GlobalDefined(PushSubscripts(identifier_, subscripts...));
    return HoldsValue(PopInteger());
  }

  /// Moves `key` to the next subscript below `level`; at the end it is empty. The bytes of the node's value, if there
  /// is one, are handed to `keep` while they are the host's.
  template <class Keep, class... Level>
  Found Step(std::string& key, Keep keep, const Level&... level) const {
    PushGlobalReference(kName);
    GlobalOrder(PushSubscripts(identifier_, level..., key), kForward, true);
    const bool has_value = PopInteger() != 0;
    if (has_value) keep(PopString());
    PopKey(key);
    if (key.empty()) return Found::kEnd;
    return has_value ? Found::kKeyAndValue : Found::kKeyAlone;
  }

  /// The same without the values. False at the end.
  template <class... Level>
  bool StepKey(std::string& key, const Level&... level) const {
    PushGlobalReference(kName);
    GlobalOrder(PushSubscripts(identifier_, level..., key), kForward, false);
    PopKey(key);
    return !key.empty();
  }

 private:
  static constexpr std::string_view kName = "KevDICOM.Data";
  static constexpr std::string_view kCurrentNamespace{"", 0};  // a text of no length, not a null pointer
  static constexpr int kForward = 1;

  static void PopKey(std::string& key) {
    const std::string_view text = AsText(PopString());
    key.resize(text.size());  // costs next to nothing, as the keys of one level have much the same length
    std::copy(text.begin(), text.end(), key.begin());
  }

  const std::string& identifier_;
};

}  // namespace vessa
