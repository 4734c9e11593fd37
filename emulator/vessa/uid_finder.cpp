#include "emulator/vessa/uid_finder.h"

#include <fmt/format.h>

#include "emulator/vessa/null_sink.h"
#include "emulator/vessa/printable_text.h"
#include "emulator/vessa/tag_text.h"

namespace emulator::tool {
namespace {

class UidSink : public NullSink {
 public:
  void StartItem(std::uint32_t, std::uint32_t) override { ++depth_; }
  void EndItem(std::uint32_t, std::uint32_t) override { --depth_; }
  void Data(std::uint32_t tag, std::uint32_t chunk, std::string_view bytes) override {
    if (depth_ > 0 || chunk != 1) return;
    if (tag == kSopInstanceUid) of_data_set_ = WithoutPadding(bytes);
    if (tag == kMediaStorageSopInstanceUid) of_file_ = WithoutPadding(bytes);
  }

  bool HasFoundThatOfDataSet() const { return !of_data_set_.empty(); }
  const std::string& Uid() const { return of_data_set_.empty() ? of_file_ : of_data_set_; }

 private:
  int depth_ = 0;
  std::string of_data_set_;
  std::string of_file_;
};

}  // namespace

std::string FindSopInstanceUid(Session& session, const std::string& name, const DicomFile& file) {
  UidSink sink;
  file.DecomposeInto(session, sink, [&sink](std::uint32_t) { return sink.HasFoundThatOfDataSet(); });
  if (sink.Uid().empty()) {
    throw ToolError(kWrongUsage,
                    fmt::format("{}: has no SOP instance UID; name the data set with --id", name));
  }
  return sink.Uid();
}

}  // namespace emulator::tool
