#include "emulator/check/file_check.h"

#include <array>

#include "emulator/check/structure_walk.h"
#include "emulator/transfer_syntax.h"

namespace emulator {
namespace {

constexpr std::size_t kPreambleBytes = 128;
constexpr std::string_view kPrefix = "DICM";

std::string FirstBytes(StreamObject& stream) {
  stream.MoveTo(1);
  const std::array<Value, 1> count{static_cast<std::int64_t>(kPreambleBytes + kPrefix.size())};
  return AsBytes(stream.Call("Read", count));
}

bool HasPreamble(const std::string& first_bytes) {
  return first_bytes.size() > kPreambleBytes && first_bytes.substr(kPreambleBytes) == kPrefix;
}

std::string WithoutPadding(const std::string& uid) {
  const std::size_t last = uid.find_last_not_of(std::string_view(" \0", 2));
  return last == std::string::npos ? std::string() : uid.substr(0, last + 1);
}

class FileChecker {
 public:
  FileChecker(StreamObject& stream, const CheckRequest& request) : stream_(stream), request_(request) {}

  FileReport Check() {
    const std::string first_bytes = FirstBytes(stream_);
    report_.transfer_syntax = request_.transfer_syntax;
    if (HasPreamble(first_bytes)) CheckPreamble(first_bytes.substr(0, kPreambleBytes));
    if (request_.from_first_byte || report_.preamble == PreambleKind::kNone) {
      CheckBareDataSet(stream_.ByteCount() == 0);
    } else if (const std::uint64_t end = CheckMetaGroup(); Succeeds()) {
      CheckDataSet(end);
    }
    return std::move(report_);
  }

 private:
  bool Succeeds() const { return report_.prediction.outcome == Prediction::Outcome::kSucceeds; }

  void CheckPreamble(std::string_view preamble) {
    report_.preamble = KindOfPreamble(preamble);
    if (IsExecutable(report_.preamble))
      report_.findings.Note(FindingKind::kExecutablePreamble, 0, [] { return std::string(); });
  }

  void CheckBareDataSet(bool is_empty) {
    if (!report_.transfer_syntax.empty()) return CheckDataSet(0);
    report_.prediction.outcome = Prediction::Outcome::kUnclear;
    report_.prediction.message =
        is_empty
            ? "the file is empty"
            : "no preamble with \"DICM\": no DICOM file, or a bare data set, whose syntax --syntax names";
  }

  /// @return  the offset of the data set
  std::uint64_t CheckMetaGroup() {
    DataCursor cursor(stream_, kPreambleBytes + kPrefix.size());
    StructureWalk walk(cursor, kExplicitLittleEndian, StructureWalk::Extent::kMetaGroup, request_.dictionary,
                       report_.findings);
    report_.prediction = walk.Run();
    if (report_.transfer_syntax.empty()) report_.transfer_syntax = WithoutPadding(walk.TransferSyntaxValue());
    return cursor.Offset();
  }

  void CheckDataSet(std::uint64_t offset) {
    report_.is_inflated =
        report_.transfer_syntax == kDeflatedExplicitLittleEndian && request_.inflate != nullptr;
    if (!report_.is_inflated) return CheckElements(stream_, offset);
    stream_.MoveTo(static_cast<std::int64_t>(offset) + 1);
    const std::shared_ptr<StreamObject> inflated = request_.inflate(stream_);
    CheckElements(*inflated, 0);
  }

  void CheckElements(StreamObject& stream, std::uint64_t offset) {
    DataCursor cursor(stream, offset);
    if (cursor.IsAtEnd())
      report_.findings.Note(FindingKind::kEmptyDataSet, offset, [] { return std::string(); });
    StructureWalk walk(cursor, report_.transfer_syntax, StructureWalk::Extent::kAll, request_.dictionary,
                       report_.findings);
    report_.prediction = walk.Run();
  }

  StreamObject& stream_;
  const CheckRequest& request_;
  FileReport report_;
};

}  // namespace

FileReport CheckFile(StreamObject& stream, const CheckRequest& request) {
  return FileChecker(stream, request).Check();
}

}  // namespace emulator
