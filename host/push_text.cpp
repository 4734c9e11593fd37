#include "host/push_text.h"

#include <cstring>

namespace vessa::detail {
namespace {

template <class Unit>
void PushThroughArea(const TextRoute<Unit>& route, const void* text, int length) {
  const HostServices& host = Services();
  LongStringDescriptor descriptor{};
  void* const area = (host.*route.new_long)(&descriptor, length);
  if (area == nullptr) throw kFailedCallin;
  std::memcpy(area, text, static_cast<std::size_t>(length) * sizeof(Unit));
  RaiseCallin((host.*route.push_long)(&descriptor));
}

}  // namespace

void PushLongText(const TextRoute<unsigned char>& route, const void* text, int length) {
  PushThroughArea(route, text, length);
}

void PushLongText(const TextRoute<std::uint16_t>& route, const void* text, int length) {
  PushThroughArea(route, text, length);
}

void RaiseUnfitLength() { throw kUnexpected; }

}  // namespace vessa::detail
