#include "emulator/vessa/call_progress.h"

#include <algorithm>

namespace emulator::tool {
namespace {

template <std::size_t kSize>
void StoreText(std::array<char, kSize>& place, std::string_view text) {
  const std::size_t kept = std::min(text.size(), kSize - 1);
  std::copy_n(text.data(), kept, place.data());
  place[kept] = '\0';
}

}  // namespace

void CallProgress::NameCall(std::string_view name) { StoreText(call_name, name); }

void CallProgress::NameInput(std::string_view name) { StoreText(input_name, name); }

}  // namespace emulator::tool
