#include "emulator/vessa/handler_object.h"

#include "emulator/content_events.h"
#include "emulator/vessa/host_time.h"

namespace emulator::tool {
namespace {

/// Hands events on and keeps the path of open elements in step with them.
class PathFollower : public ContentSink {
 public:
  PathFollower(ContentSink& next, ElementPath& path) : next_(next), path_(path) {}

  void StartContent(std::string_view transfer_syntax) override {
    path_.Clear();
    next_.StartContent(transfer_syntax);
  }
  void EndContent() override { next_.EndContent(); }
  void StartElement(std::uint32_t tag, std::string_view vr, std::uint32_t length) override {
    path_.StartElement(tag);
    next_.StartElement(tag, vr, length);
  }
  void EndElement(std::uint32_t tag) override {
    next_.EndElement(tag);
    path_.EndElement();
  }
  void Data(std::uint32_t tag, std::uint32_t chunk, std::string_view bytes) override {
    next_.Data(tag, chunk, bytes);
  }
  void StartSequence() override { next_.StartSequence(); }
  void EndSequence() override { next_.EndSequence(); }
  void StartItem(std::uint32_t tag, std::uint32_t length) override {
    path_.StartItem(length);
    next_.StartItem(tag, length);
  }
  void EndItem(std::uint32_t tag, std::uint32_t length) override {
    next_.EndItem(tag, length);
    path_.EndItem();
  }

 private:
  ContentSink& next_;
  ElementPath& path_;
};

}  // namespace

Value HandlerObject::Call(std::string_view method, std::span<const Value> arguments) {
  const HostTime host_time(progress_);
  try {
    PathFollower follower(sink_, path_);
    DispatchEvent(method, arguments, follower);
  } catch (const HostError&) {
    throw;
  } catch (...) {
    error_ = std::current_exception();
    throw HostError{kWriteError};
  }
  return std::string();
}

void HandlerObject::RethrowError() const {
  if (error_) std::rethrow_exception(error_);
}

}  // namespace emulator::tool
