#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace vessa {

/// A local file that is read at any offset; it has no position of its own. Offsets count bytes from 0 and have 64 bits.
class File {
 public:
  /// Why reads fall short of what the file holds.
  enum class Failure {
    kNone,
    kDirectory,    ///< some systems open one like a file
    kNoPositions,  ///< a pipe, say
    kOther,
  };

  File() = default;
  ~File() { Close(); }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  /// @param name  in the system's code page
  /// @return  false: there is no such file, or it must not be read
  bool Open(const std::string& name);
  void Close();

  /// Fills `destination` with the bytes from `offset` on. Reading at a negative offset fails.
  /// @return  bytes read; fewer than asked at the end of the file, or when it cannot be read further
  std::size_t ReadAt(std::int64_t offset, std::span<std::uint8_t> destination);

  /// Why a read fell short last, from the file's opening on; kNone when only ends were met.
  Failure LastFailure() const { return failure_; }

  /// Offset behind the last byte, -1 where the file does not tell.
  std::int64_t End() const;

 private:
  static constexpr std::intptr_t kClosed = -1;

  std::intptr_t handle_ = kClosed;  // the system's own name of the open file
  Failure failure_ = Failure::kNone;
};

}  // namespace vessa
