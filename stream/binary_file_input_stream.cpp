#include "stream/binary_file_input_stream.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace vessa {

CVessaBinaryFileInputStream::CVessaBinaryFileInputStream(std::string name) : name_{std::move(name)} {
  EmptyWindow(0);
}

Status CVessaBinaryFileInputStream::Open() {
  if (!file_.Open(name_)) return E_INVALIDARG;
  EmptyWindow(0);
  Fill(kFirstBytes);
  if (file_.LastFailure() == File::Failure::kNoPositions) EmptyWindow(kNoOffset);
  if (file_.LastFailure() != File::Failure::kDirectory) return kSuccess;
  file_.Close();
  return E_INVALIDARG;
}

Status CVessaBinaryFileInputStream::Read(std::span<std::uint8_t> destination) {
  std::span<std::uint8_t> rest = destination.subspan(TakeFromWindow(destination));
  if (rest.empty()) return kSuccess;
  if (rest.size() < kWindowBytes) {
    Fill();
    rest = rest.subspan(TakeFromWindow(rest));
  } else {
    const std::size_t got = file_.ReadAt(Offset(), rest);
    EmptyWindow(Offset() + static_cast<std::int64_t>(got));
    rest = rest.subspan(got);
  }
  return rest.empty() ? kSuccess : kReadFell;
}

Status CVessaBinaryFileInputStream::Peek(std::span<std::uint8_t> destination, bool& at_end) {
  at_end = false;
  if (destination.size() > kWindowBytes) return PeekPastWindow(destination, at_end);
  if (destination.size() > Available()) Fill();
  const std::size_t found = std::min(destination.size(), Available());
  std::copy_n(next_, found, destination.begin());
  return PeekStatus(found, destination.size(), at_end);
}

/// What a peek answers that found `found` of the `wanted` bytes.
Status CVessaBinaryFileInputStream::PeekStatus(std::size_t found, std::size_t wanted, bool& at_end) const {
  if (found == wanted) return kSuccess;
  if (found > 0 || file_.LastFailure() != File::Failure::kNone) return E_INVALIDARG;
  at_end = true;
  return kSuccess;
}

/// The rare peek that is longer than the window.
Status CVessaBinaryFileInputStream::PeekPastWindow(std::span<std::uint8_t> destination, bool& at_end) {
  return PeekStatus(file_.ReadAt(Offset(), destination), destination.size(), at_end);
}

Status CVessaBinaryFileInputStream::Skip(std::int64_t count) {
  if (count >= 0 && static_cast<std::uint64_t>(count) <= Available()) {
    Take(static_cast<std::size_t>(count));
    return kSuccess;
  }
  constexpr std::int64_t kFurthest = std::numeric_limits<std::int64_t>::max();
  if (window_offset_ == kNoOffset || count > kFurthest - Offset() || Offset() + count < 0)
    return E_INVALIDARG;
  EmptyWindow(Offset() + count);
  return kSuccess;
}

std::int32_t CVessaBinaryFileInputStream::GetSize() {
  const std::int64_t end = file_.End();
  return end < 0 ? E_INVALIDARG : static_cast<std::int32_t>(end + 1);
}

std::uint32_t CVessaBinaryFileInputStream::GetOref() { throw E_NOTIMPL; }

bool CVessaBinaryFileInputStream::PassOver(std::uint64_t count) {
  if (count <= Available()) {
    Take(static_cast<std::size_t>(count));
    return true;
  }
  const std::int64_t left = file_.End() - Offset();
  if (left < 0 || count > static_cast<std::uint64_t>(left)) return false;
  EmptyWindow(Offset() + static_cast<std::int64_t>(count));
  return true;
}

std::size_t CVessaBinaryFileInputStream::TakeFromWindow(std::span<std::uint8_t> destination) {
  const std::size_t take = std::min(destination.size(), Available());
  std::copy_n(next_, take, destination.begin());
  Take(take);
  return take;
}

/// Keeps what is at hand and adds bytes of the file to it until there are `wanted`.
void CVessaBinaryFileInputStream::Fill(std::size_t wanted) {
  std::size_t filled = Available();
  const std::int64_t offset = Offset();
  std::copy(next_, behind_, window_.data());
  filled += file_.ReadAt(offset + static_cast<std::int64_t>(filled),
                         std::span(window_).first(wanted).subspan(filled));
  EmptyWindow(offset);
  behind_ += filled;
}

/// Goes to an offset; what follows it has to be read.
void CVessaBinaryFileInputStream::EmptyWindow(std::int64_t offset) {
  window_offset_ = offset;
  next_ = behind_ = window_.data();
}

}  // namespace vessa
