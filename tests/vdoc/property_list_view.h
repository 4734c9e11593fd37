#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/vessa_ro_list.h"
#include "tests/vdoc/property_list_bytes.h"

/// A property list as a host hands it in: bytes of the test's own and the library's view of them.
class PropertyListView {
 public:
  explicit PropertyListView(const std::vector<std::uint32_t>& entries)
      : PropertyListView(PropertyListBytes(entries)) {}
  explicit PropertyListView(const PropertyListBytes& list)
      : bytes_(list.Bytes().begin(), list.Bytes().end()) {}

  vessa::VessaROList View() const { return vessa::VessaROList(bytes_); }

 private:
  std::vector<std::uint8_t> bytes_;
};
