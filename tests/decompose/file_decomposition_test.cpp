#include <filesystem>
#include <fstream>
#include <random>

#include "stream/binary_file_input_stream.h"
#include "tests/decompose/decomposition.h"

// Local files: the same events as from host streams, and values that nobody wants are passed over.

namespace {

using dicom_bytes::Item;
using vessa::CVessaBinaryFileInputStream;

namespace fs = std::filesystem;

/// An own handler that keeps lines, and may not want values.
class Notes : public vessa::CContentHandlerInterface {
 public:
  explicit Notes(std::function<bool(vessa::Tag)> wants_value) : wants_value_{std::move(wants_value)} {}

  vessa::Status StartContent(std::string_view) override { return Note("StartContent"); }
  vessa::Status EndContent() override { return Note("EndContent"); }
  vessa::Status StartItem(vessa::Tag tag, std::uint32_t) override {
    return Note("StartItem " + TagText(tag));
  }
  vessa::Status EndItem(vessa::Tag tag, std::uint32_t) override { return Note("EndItem " + TagText(tag)); }
  vessa::Status StartElement(vessa::Tag tag, vessa::Vr, std::uint32_t) override {
    return Note("StartElement " + TagText(tag));
  }
  vessa::Status EndElement(vessa::Tag tag) override { return Note("EndElement " + TagText(tag)); }
  vessa::Status Data(vessa::Tag tag, std::uint32_t chunk_number,
                     std::span<const std::uint8_t> chunk) override {
    return Note("Data " + TagText(tag) + " " + std::to_string(chunk_number) + " " +
                std::to_string(chunk.size()));
  }
  vessa::Status StartSequence(vessa::Tag tag) override { return Note("StartSequence " + TagText(tag)); }
  vessa::Status EndSequence() override { return Note("EndSequence"); }
  bool WantsValue(vessa::Tag tag) override { return wants_value_(tag); }

  Lines lines;

 private:
  vessa::Status Note(std::string line) {
    lines.push_back(std::move(line));
    return vessa::kSuccess;
  }

  std::function<bool(vessa::Tag)> wants_value_;
};

class FileDecomposition : public EmulatedHost {
 public:
  ~FileDecomposition() override {
    std::error_code ignored;
    fs::remove(path_, ignored);
  }

 protected:
  FileDecomposition()
      : path_{fs::temp_directory_path() / ("vessa_decompose_" + std::to_string(std::random_device()()))} {}

  std::string DecomposeFile(const std::string& bytes, Notes& notes,
                            const char* syntax = dicom_bytes::kExplicitLittleEndian) {
    Write(bytes);
    CVessaBinaryFileInputStream file(path_.string());
    EXPECT_EQ(file.Open(), vessa::kSuccess);
    return FailureOf([&] { Run(file, notes, syntax); });
  }

  bool FileNeverReturns(const std::string& bytes, Notes& notes) {
    Write(bytes);
    CVessaBinaryFileInputStream file(path_.string());
    EXPECT_EQ(file.Open(), vessa::kSuccess);
    ImpatientStream impatient(file, [this] { return host_.CallbackCount(); });
    try {
      Run(impatient, notes, dicom_bytes::kExplicitLittleEndian);
    } catch (const NeverReturns&) {
      return true;
    }
    return false;
  }

  std::string DecomposeHostStream(const std::string& bytes, Notes& notes, const char* syntax) {
    vessa::CVessaBinaryInputStream stream(Add(std::make_shared<emulator::MemoryStream>(bytes)));
    stream.Open();
    return FailureOf([&] { Run(stream, notes, syntax); });
  }

 private:
  void Write(const std::string& bytes) { std::ofstream(path_, std::ios::binary) << bytes; }

  static void Run(vessa::CVessaInputStream& stream, Notes& notes, const char* syntax) {
    const std::uint32_t no_client = 0;
    vessa::StreamDecomposer(stream, notes, no_client, false).DecomposeStream(syntax);
  }

  fs::path path_;
};

bool All(vessa::Tag) { return true; }
bool None(vessa::Tag) { return false; }

std::string WithoutData(const Lines& lines) {
  std::string rest;
  for (const std::string& line : lines) {
    if (!line.starts_with("Data ")) rest += line + "\n";
  }
  return rest;
}

std::string DataSetWith(const std::string& value) {
  return kExplicit.Element(0x00080005, "CS", "ab") + kExplicit.Element(0x00080010, "UT", value) +
         kExplicit.Sequence(0x00081140, Item(kExplicit.Element(0x00081150, "UT", value))) +
         kExplicit.Fragments("OB", Item("") + Item(value)) + kExplicit.Element(0xFFFCFFFC, "OB", "ab");
}

TEST_F(FileDecomposition, HasTheEventsOfAHostStream) {
  for (const std::size_t size : {2U, 8192U, 8190U, 100000U}) {
    Notes from_file(All);
    Notes from_host(All);
    const std::string bytes = DataSetWith(SomeBytes(size));
    EXPECT_EQ(DecomposeFile(bytes, from_file, dicom_bytes::kJpegBaseline), kNoFailure);
    EXPECT_EQ(DecomposeHostStream(bytes, from_host, dicom_bytes::kJpegBaseline), kNoFailure);
    EXPECT_EQ(from_file.lines, from_host.lines);
  }
}

TEST_F(FileDecomposition, LeavesOutLongDataThatNobodyWants) {
  for (const std::size_t size : {2U, 8192U, 100000U}) {
    Notes wanted(All);
    Notes unwanted(None);
    const std::string bytes = DataSetWith(SomeBytes(size));
    EXPECT_EQ(DecomposeFile(bytes, wanted, dicom_bytes::kJpegBaseline), kNoFailure);
    EXPECT_EQ(DecomposeFile(bytes, unwanted, dicom_bytes::kJpegBaseline), kNoFailure);
    EXPECT_EQ(WithoutData(unwanted.lines), WithoutData(wanted.lines));
    for (const std::string& line : unwanted.lines) EXPECT_FALSE(line.ends_with(" 32648")) << line;
  }
}

TEST_F(FileDecomposition, DeliversWhatIsWantedAmongWhatIsNot) {
  Notes notes([](vessa::Tag tag) { return tag == vessa::Tag{0x00081150}; });
  EXPECT_EQ(DecomposeFile(DataSetWith(SomeBytes(40000)), notes, dicom_bytes::kJpegBaseline), kNoFailure);
  Lines long_data;
  for (const std::string& line : notes.lines) {
    if (line.starts_with("Data ") && line.size() > std::string_view("Data 00081150 1 2").size()) {
      long_data.push_back(line);
    }
  }
  EXPECT_THAT(long_data, testing::ElementsAre("Data 00081150 1 32648", "Data 00081150 2 7352"));
}

TEST_F(FileDecomposition, HostStreamsAreReadWhetherTheirValuesAreWantedOrNot) {
  Notes unwanted(None);
  EXPECT_EQ(DecomposeHostStream(DataSetWith("abcd"), unwanted, dicom_bytes::kJpegBaseline), kNoFailure);
  EXPECT_THAT(unwanted.lines, testing::Contains("Data 00080010 1 4"));
}

TEST_F(FileDecomposition, ThatEndsInsideAValueFailsWantedOrNot) {
  const std::string bytes =
      kExplicit.Element(0x00080005, "CS", "ab") + kExplicit.Element(0x00080010, "UT", SomeBytes(100000));
  for (const std::size_t missing : {1U, 50000U, 99999U}) {
    Notes wanted(All);
    Notes unwanted(None);
    const std::string cut = bytes.substr(0, bytes.size() - missing);
    EXPECT_EQ(DecomposeFile(cut, wanted), StatusText(vessa::kReadFell));
    EXPECT_EQ(DecomposeFile(cut, unwanted), StatusText(vessa::kReadFell));
  }
}

TEST_F(FileDecomposition, ThatEndsInsideATagFails) {
  Notes notes(All);
  EXPECT_EQ(DecomposeFile(kExplicit.Element(0x00080005, "CS", "ab") + "xyz", notes),
            StatusText(vessa::E_INVALIDARG));
}

TEST_F(FileDecomposition, ThatEndsBetweenElementsOfADefinedItemNeverReturns) {
  Notes notes(None);
  EXPECT_TRUE(FileNeverReturns(kExplicit.Header(0x00081140, "SQ", 100) +
                                   dicom_bytes::TagAndLength(dicom_bytes::kItem, 92) +
                                   kExplicit.Element(0x00081150, "UI", "1."),
                               notes));
  EXPECT_EQ(notes.lines.back(), "EndElement 00081150");
}

TEST_F(FileDecomposition, EndsWithSuccessWhereTheHandlerHasItsAnswer) {
  class Satisfied : public Notes {
   public:
    using Notes::Notes;
    vessa::Status Data(vessa::Tag, std::uint32_t, std::span<const std::uint8_t>) override {
      throw vessa::CSuccessException();
    }
  };
  const std::string bytes =
      kExplicit.Element(0x00100010, "PN", "ab") + kExplicit.Element(0x00100020, "LO", "cd");
  for (const char* medium : {"file", "host stream"}) {
    Satisfied notes(All);
    const std::string failure = medium == std::string("file")
                                    ? DecomposeFile(bytes, notes)
                                    : DecomposeHostStream(bytes, notes, dicom_bytes::kExplicitLittleEndian);
    EXPECT_EQ(failure, kNoFailure) << medium;
    EXPECT_EQ(notes.lines, (Lines{"StartContent", "StartElement 00100010"})) << medium;
  }
}

}  // namespace
