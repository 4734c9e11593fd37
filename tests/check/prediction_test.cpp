#include "emulator/check/prediction.h"

#include <gtest/gtest.h>

#include "tests/check/checked.h"

using dicom_bytes::UndefinedItem;
using emulator::FileReport;
using emulator::Prediction;

namespace {

const std::string kName = kExplicit.Element(0x00100010, "PN", "Doe^John");

// What it says of real and of damaged files is compared with the library itself: see predictions/.

TEST(Prediction, IsUnclearWhereNobodyNamesTheSyntax) {
  const FileReport report = Checked(kName);
  EXPECT_EQ(report.prediction.outcome, Prediction::Outcome::kUnclear);
  EXPECT_FALSE(report.IsFine());
  EXPECT_EQ(Checked("").prediction.message, "the file is empty");
}

TEST(Prediction, NamesOffsetAndPathOfAFailure) {
  const std::string odd = kExplicit.Element(0x00100020, "LO", "123");
  const Prediction prediction =
      CheckedExplicit(kExplicit.UndefinedSequence(0x00081140, UndefinedItem(kName) + UndefinedItem(odd)))
          .prediction;
  EXPECT_EQ(prediction.outcome, Prediction::Outcome::kFails);
  EXPECT_EQ(prediction.message,
            "DecomposeElement reading VR and data length: Datalength is an odd number -  decomposing stream");
  EXPECT_EQ(prediction.offset, 60U);  // behind the header of the odd element
  EXPECT_EQ(prediction.path, "(0008,1140) item 2");
}

TEST(Prediction, TellsACallThatDoesNotReturn) {
  const std::string item = dicom_bytes::TagAndLength(dicom_bytes::kItem, 100) + kName;
  const Prediction prediction = CheckedExplicit(kExplicit.Header(0x00081140, "SQ", 108) + item).prediction;
  EXPECT_EQ(prediction.outcome, Prediction::Outcome::kDoesNotReturn);
  EXPECT_EQ(prediction.offset, 36U);
  EXPECT_TRUE(prediction.is_at_end);
  EXPECT_EQ(prediction.path, "(0008,1140) item 1");
}

TEST(Prediction, NeedsNoMachineStackForNesting) {
  constexpr std::size_t kLevels = 100000;
  std::string data_set;
  for (std::size_t level = 0; level < kLevels; ++level) {
    data_set += kExplicit.Header(0x00081140, "SQ", dicom_bytes::kUndefined) +
                dicom_bytes::TagAndLength(dicom_bytes::kItem, dicom_bytes::kUndefined);
  }
  const Prediction prediction = CheckedExplicit(data_set).prediction;
  EXPECT_EQ(prediction.outcome, Prediction::Outcome::kFails);
  EXPECT_TRUE(prediction.path.ends_with("... 99935 more levels ... > (0008,1140) after item 1"))
      << prediction.path;
}

TEST(Prediction, ReadsNoValues) {
  class CountingStream : public emulator::StreamObject {
   public:
    std::int64_t ByteCount() const override { return std::int64_t{12} + 0xFFFFFFFE; }
    std::int64_t BytesRead() const { return bytes_read_; }

   protected:
    std::string_view BytesAt(std::int64_t offset, std::int64_t count) override {
      bytes_read_ += count;
      bytes_.assign(static_cast<std::size_t>(count), '\0');
      if (offset == 0) bytes_.replace(0, 12, kExplicit.Header(dicom_bytes::kPixelData, "OW", 0xFFFFFFFE));
      return bytes_;
    }
    void Append(std::string_view) override {}

   private:
    std::string bytes_;
    std::int64_t bytes_read_ = 0;
  };
  CountingStream stream;
  const auto report =
      emulator::CheckFile(stream, {dicom_bytes::kExplicitLittleEndian, false, SmallDictionary, nullptr});
  EXPECT_LT(stream.BytesRead(), 20000);
  EXPECT_EQ(report.prediction.outcome, Prediction::Outcome::kSucceeds);
}

}  // namespace
