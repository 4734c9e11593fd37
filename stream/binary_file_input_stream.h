#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <span>
#include <string>

#include "stream/input_stream.h"

namespace vessa {

/// A local file, with offsets of 64 bits. It answers as the C library's file functions do, position by
/// position; a window of our own in front of them makes the many small reads of a data set cheap.
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
  /// @throws Status  E_INVALIDARG: the file lost its position
  bool PassOver(std::uint64_t count) override;

 private:
  struct CloseFile {
    void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
  };

  static constexpr std::size_t kWindowBytes = 8192;

  std::int64_t Offset() const { return window_offset_ + (next_ - window_.data()); }
  std::size_t Available() const { return AtHand().size(); }
  std::size_t TakeFromWindow(std::span<std::uint8_t> destination);
  Status Fill();
  Status PeekStatus(std::size_t found, std::size_t wanted, bool& at_end) const;
  Status PeekPastWindow(std::span<std::uint8_t> destination, bool& at_end);
  bool MoveTo(std::int64_t offset);
  void EmptyWindow(std::int64_t offset);
  std::int64_t FindEnd();

  std::string name_;
  std::unique_ptr<std::FILE, CloseFile> file_;     // its own position: behind what is at hand
  std::int64_t window_offset_ = 0;                 // of the window's first byte; -1 in what has no positions
  std::array<std::uint8_t, kWindowBytes> window_;  // what is filled of it and not handed out yet is at hand
};

}  // namespace vessa
