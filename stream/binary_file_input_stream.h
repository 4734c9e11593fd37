#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "platform/file.h"
#include "stream/input_stream.h"

namespace vessa {

/// A local file, with offsets of 64 bits. It answers as the C library's file functions do, position by
/// position; but it reads a window at a time, which makes the many small reads of a data set cheap.
class CVessaBinaryFileInputStream final : public CVessaInputStream {
 public:
  /// @param name  in the system's code page
  explicit CVessaBinaryFileInputStream(std::string name);
  ~CVessaBinaryFileInputStream() override = default;
  CVessaBinaryFileInputStream(const CVessaBinaryFileInputStream&) = delete;
  CVessaBinaryFileInputStream& operator=(const CVessaBinaryFileInputStream&) = delete;

  /// @return  kReadFell: fewer bytes were left, or could be read
  Status Read(std::span<std::uint8_t> destination) override;
  /// @return  E_INVALIDARG: some of the bytes are left but not all, or the file could not be read
  Status Peek(std::span<std::uint8_t> destination, bool& at_end) override;
  /// May move back, and behind the end of the file.
  /// @return  E_INVALIDARG: no such position
  Status Skip(std::int64_t count) override;
  std::int64_t GetPosition() override { return Offset() + 1; }
  /// @return  E_INVALIDARG: the file does not tell
  std::int32_t GetSize() override;
  /// Reads the first bytes already.
  /// @return  E_INVALIDARG: no such file, or a directory
  Status Open() override;
  /// @throws Status  E_NOTIMPL, always: no host object stands behind a file
  std::uint32_t GetOref() override;
  bool PassOver(std::uint64_t count) override;

 private:
  static constexpr std::size_t kWindowBytes = 8192;
  static constexpr std::size_t kFirstBytes = 4096;  // most attributes that are asked for stand in them
  static constexpr std::int64_t kNoOffset = -1;     // in what has no positions: reading fails there

  std::int64_t Offset() const { return window_offset_ + (next_ - window_.data()); }
  std::size_t Available() const { return AtHand().size(); }
  std::size_t TakeFromWindow(std::span<std::uint8_t> destination);
  void Fill(std::size_t wanted = kWindowBytes);
  Status PeekStatus(std::size_t found, std::size_t wanted, bool& at_end) const;
  Status PeekPastWindow(std::span<std::uint8_t> destination, bool& at_end);
  void EmptyWindow(std::int64_t offset);

  std::string name_;
  File file_;
  std::int64_t window_offset_ = 0;                 // of the window's first byte, or kNoOffset
  std::array<std::uint8_t, kWindowBytes> window_;  // what is filled of it and not handed out yet is at hand
};

}  // namespace vessa
