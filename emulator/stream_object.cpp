#include "emulator/stream_object.h"

#include <algorithm>

namespace emulator {
namespace {

void RequireOne(std::span<const Value> arguments) {
  if (arguments.size() != 1) throw HostError{kWrongParameters};
}

std::int64_t CountIn(std::span<const Value> arguments) {
  RequireOne(arguments);
  const std::int64_t count = AsInteger(arguments[0]);
  if (count < 0) throw HostError{kWrongParameters};
  return count;
}

}  // namespace

Value StreamObject::Call(std::string_view method, std::span<const Value> arguments) {
  if (method == "Peek") return Peek(CountIn(arguments));
  if (method == "Read") return Read(CountIn(arguments));
  if (method == "Skip") {
    Skip(CountIn(arguments));
    return {};
  }
  if (method == "Write") {
    RequireOne(arguments);
    ++writes_;
    Append(AsBytes(arguments[0]));
    return {};
  }
  return Object::Call(method, arguments);
}

Value StreamObject::Property(std::string_view name) {
  if (name == "Position") return position_ + pretended_bytes_;
  if (name == "Size") return ByteCount() + 1 + pretended_bytes_;
  return Object::Property(name);
}

void StreamObject::MoveTo(std::int64_t position) {
  position_ = std::clamp<std::int64_t>(position, 1, ByteCount() + 1);
}

std::string StreamObject::Peek(std::int64_t count) {
  if (++peeks_ == empty_peek_) return {};
  return HandOut(std::min(count, Rest()) + beyond_);
}

std::string StreamObject::Read(std::int64_t count) {
  if (++reads_ == empty_read_) return {};
  std::string bytes = HandOut(count);
  position_ += static_cast<std::int64_t>(bytes.size());
  return bytes;
}

void StreamObject::Skip(std::int64_t count) { position_ += std::min(count, Rest()); }

std::string StreamObject::HandOut(std::int64_t count) {
  if (most_ > 0) count = std::min(count, most_);
  std::string bytes(BytesAt(position_ - 1, std::min(count, Rest())));
  handed_out_ += bytes.size();
  return bytes;
}

}  // namespace emulator
