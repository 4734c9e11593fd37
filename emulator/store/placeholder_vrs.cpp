#include "emulator/store/placeholder_vrs.h"

#include "emulator/tag_text.h"

namespace emulator {
namespace {

std::optional<std::uint16_t> UnsignedShort(std::string_view value) {
  if (value.size() < 2) return std::nullopt;
  const auto low = static_cast<unsigned char>(value[0]);
  const auto high = static_cast<unsigned char>(value[1]);
  return static_cast<std::uint16_t>(low | high << 8U);
}

}  // namespace

void PlaceholderVrs::EnterItem() {
  scopes_.push_back({open_, {}});
  open_ = scopes_.size() - 1;
}

void PlaceholderVrs::LeaveItem() {
  if (open_ == 0) return;
  const std::size_t left = open_;
  open_ = scopes_[left].parent;
  const bool is_needed = !deferred_.empty() && deferred_.back().scope >= left;
  if (!is_needed) scopes_.resize(left);
}

void PlaceholderVrs::Observe(std::uint32_t tag, std::string_view value) {
  PixelDescription& description = scopes_[open_].description;
  if (tag == kPixelRepresentation) description.pixel_representation = UnsignedShort(value);
  if (tag == kBitsAllocated) description.bits_allocated = UnsignedShort(value);
  if (tag == kWaveformBitsAllocated) description.waveform_bits_allocated = UnsignedShort(value);
}

void PlaceholderVrs::Defer(std::uint32_t tag, std::string_view placeholder, std::uint32_t length,
                           std::int64_t node) {
  deferred_.push_back({tag, length, std::string(placeholder), node, open_});
}

void PlaceholderVrs::Resolve(const std::function<void(std::int64_t, std::string_view)>& decide) {
  InheritDescriptions();
  for (const Deferred& element : deferred_) {
    decide(element.node,
           ResolvedVr(element.tag, element.placeholder, element.length, scopes_[element.scope].description));
  }
  Clear();
}

void PlaceholderVrs::InheritDescriptions() {
  for (Scope& scope : scopes_) {
    const PixelDescription& outer = scopes_[scope.parent].description;
    PixelDescription& own = scope.description;
    if (!own.pixel_representation) own.pixel_representation = outer.pixel_representation;
    if (!own.bits_allocated) own.bits_allocated = outer.bits_allocated;
    if (!own.waveform_bits_allocated) own.waveform_bits_allocated = outer.waveform_bits_allocated;
  }
}

void PlaceholderVrs::Clear() {
  deferred_.clear();
  scopes_.assign(1, {0, {}});
  open_ = 0;
}

}  // namespace emulator
