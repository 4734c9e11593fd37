#include <windows.h>

#include <algorithm>

#include "platform/file.h"

namespace vessa {
namespace {

HANDLE AsHandle(std::intptr_t handle) { return reinterpret_cast<HANDLE>(handle); }

OVERLAPPED At(std::int64_t offset) {
  OVERLAPPED place{};
  place.Offset = static_cast<DWORD>(offset);
  place.OffsetHigh = static_cast<DWORD>(offset >> 32);
  return place;
}

}  // namespace

bool File::Open(const std::string& name) {
  Close();
  handle_ = reinterpret_cast<std::intptr_t>(CreateFileA(name.c_str(), GENERIC_READ,
                                                        FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  return handle_ != kClosed;
}

void File::Close() {
  if (handle_ != kClosed) static_cast<void>(CloseHandle(AsHandle(handle_)));
  handle_ = kClosed;
  failure_ = Failure::kNone;
}

std::size_t File::ReadAt(std::int64_t offset, std::span<std::uint8_t> destination) {
  if (GetFileType(AsHandle(handle_)) != FILE_TYPE_DISK) {
    failure_ = Failure::kNoPositions;
    return 0;
  }
  constexpr std::size_t kMostAtOnce = 1U << 30;
  std::size_t count = 0;
  while (count < destination.size()) {
    OVERLAPPED place = At(offset + static_cast<std::int64_t>(count));
    DWORD got = 0;
    const auto wanted = static_cast<DWORD>(std::min(destination.size() - count, kMostAtOnce));
    const bool is_read = ReadFile(AsHandle(handle_), destination.data() + count, wanted, &got, &place) != 0;
    if (!is_read && GetLastError() != ERROR_HANDLE_EOF) failure_ = Failure::kOther;
    if (!is_read || got == 0) break;
    count += got;
  }
  return count;
}

std::int64_t File::End() const {
  LARGE_INTEGER size{};
  return GetFileSizeEx(AsHandle(handle_), &size) != 0 ? size.QuadPart : -1;
}

}  // namespace vessa
