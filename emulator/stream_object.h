#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "emulator/object.h"

namespace emulator {

/// A stream of bytes as the library sees it:
///   Peek(n)       up to n bytes from the position on, which stays
///   Skip(n)       moves the position n bytes on, at most to the end
///   Read(n)       Peek and Skip in one
///   Write(bytes)  appends; the position stays
///   Position      property: number of the next byte, counted from 1
///   Size          property: the number of bytes + 1
/// A negative n, another number of arguments: kWrongParameters.
class StreamObject : public Object {
 public:
  Value Call(std::string_view method, std::span<const Value> arguments) override;
  Value Property(std::string_view name) override;

  /// Number of the next byte, counted from 1.
  std::int64_t Position() const { return position_; }
  /// Moves to any position from 1 to the number of bytes + 1; others become the nearest of these.
  void MoveTo(std::int64_t position);
  virtual std::int64_t ByteCount() const = 0;
  /// `count` bytes, which must be there, from the 0-based `offset` on; valid until the next call. Position and
  /// misbehaviour do not count here.
  virtual std::string_view BytesAt(std::int64_t offset, std::int64_t count) = 0;

  /// Size and Position as properties tell this much more than there is: streams above the range of 32 bits.
  void PretendLarger(std::int64_t bytes) { pretended_bytes_ = bytes; }

  // --- Misbehaviour, off at first. Peeks and reads are counted from 1, each on its own. ---

  /// No peek and no read hands out more than that; 0: as asked.
  void HandOutAtMost(std::int64_t bytes) { most_ = bytes; }
  /// The nth peek hands out nothing, although more follows.
  void EmptyPeekAt(std::uint64_t n) { empty_peek_ = n; }
  /// The nth read hands out nothing.
  void EmptyReadAt(std::uint64_t n) { empty_read_ = n; }
  /// Peeks hand out that many bytes more than asked for, as far as there are.
  void PeekBeyond(std::int64_t bytes) { beyond_ = bytes; }

  std::uint64_t Peeks() const { return peeks_; }
  std::uint64_t Reads() const { return reads_; }
  std::uint64_t Writes() const { return writes_; }
  /// Bytes that peeks and reads have handed out in all.
  std::uint64_t BytesHandedOut() const { return handed_out_; }

 protected:
  virtual void Append(std::string_view bytes) = 0;

 private:
  std::string Peek(std::int64_t count);
  std::string Read(std::int64_t count);
  void Skip(std::int64_t count);
  std::string HandOut(std::int64_t count);
  std::int64_t Rest() const { return ByteCount() + 1 - position_; }

  std::int64_t position_ = 1;
  std::int64_t pretended_bytes_ = 0;
  std::int64_t most_ = 0;
  std::int64_t beyond_ = 0;
  std::uint64_t empty_peek_ = 0;
  std::uint64_t empty_read_ = 0;
  std::uint64_t peeks_ = 0;
  std::uint64_t reads_ = 0;
  std::uint64_t writes_ = 0;
  std::uint64_t handed_out_ = 0;
};

/// A stream that holds its bytes.
class MemoryStream : public StreamObject {
 public:
  explicit MemoryStream(std::string bytes = {}) : bytes_(std::move(bytes)) {}

  const std::string& Bytes() const { return bytes_; }
  std::int64_t ByteCount() const override { return static_cast<std::int64_t>(bytes_.size()); }
  std::string_view BytesAt(std::int64_t offset, std::int64_t count) override;

 protected:
  void Append(std::string_view bytes) override { bytes_ += bytes; }

 private:
  std::string bytes_;
};

/// A stream over a file.
class FileStream : public StreamObject {
 public:
  enum class Mode { kRead, kCreate };

  /// @param path  in UTF-8
  /// @throws std::system_error  the file cannot be opened, or made anew in kCreate; a folder is no file
  FileStream(const std::string& path, Mode mode);
  ~FileStream() override;
  FileStream(const FileStream&) = delete;
  FileStream& operator=(const FileStream&) = delete;

  std::int64_t ByteCount() const override { return byte_count_; }
  std::string_view BytesAt(std::int64_t offset, std::int64_t count) override;
  /// Writes what the system has not taken yet.
  /// @throws HostError  kWriteError
  void Flush();

 protected:
  void Append(std::string_view bytes) override;

 private:
  struct File;
  std::unique_ptr<File> file_;
  std::int64_t byte_count_ = 0;
};

}  // namespace emulator
