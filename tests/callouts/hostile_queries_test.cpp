#include <array>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <string>
#include <vector>

#include "tests/callouts/decomposing.h"
#include "tests/callouts/watched_call.h"

// References, property lists and data sets that make a query fail, miss or never return.

namespace emulator {
namespace {

using dicom_bytes::Hex;
using dicom_bytes::Item;
using dicom_bytes::kExplicitLittleEndian;
using dicom_bytes::kItem;
using dicom_bytes::kJpegBaseline;
using dicom_bytes::kPixelData;
using dicom_bytes::kUndefined;
using dicom_bytes::TagAndLength;
using testing::Contains;

constexpr std::uint32_t kName = 0x00100010;
constexpr std::uint32_t kPatientID = 0x00100020;
constexpr std::uint32_t kAge = 0x00101010;
constexpr std::uint32_t kImages = 0x00081140;
constexpr std::uint32_t kBeams = 0x300A00B0;  // a sequence

std::string Name() { return kExplicit.Element(kName, "PN", "ab"); }
std::string Number() { return kExplicit.Element(kPatientID, "LO", "4711"); }

std::string Beams() { return kExplicit.Sequence(kBeams, Item(Number())); }

/// An item that declares far more bytes than it has, or any of the data sets here behind it.
std::string EndlessSequence() {
  const std::string element = kExplicit.Element(0x00081155, "UI", "1.");
  return kExplicit.Header(kImages, "SQ", 208) + TagAndLength(kItem, 200) + element;
}

/// "VR value", or "nothing".
std::string TextOf(const ListResult& result) {
  ExpectSuccess(result);
  if (result.values.size() != 2) return result.values.empty() ? "nothing" : "a list of another length";
  return AsBytes(result.values[0].value) + " " + AsBytes(result.values[1].value);
}

ListBuilder Path(std::initializer_list<std::uint32_t> steps) {
  ListBuilder list;
  for (const std::uint32_t step : steps) list.Integer(step);
  return list;
}

class HostileQuery : public LoadedLibrary {
 protected:
  ListResult Ask(const std::string& data_set, std::initializer_list<std::uint32_t> path,
                 std::string_view syntax = kExplicitLittleEndian) {
    const std::uint32_t stream = host_.Add(std::make_shared<MemoryStream>(data_set));
    return Call("zfQueryStream", ListBuilder().Integer(stream).String(syntax).List(Path(path)));
  }

  static std::vector<ListValue> Parse(std::string_view reference) {
    const ListResult result = Call("zfParsePropertyReference", ListBuilder().String(reference));
    ExpectSuccess(result);
    return result.values.empty() ? std::vector<ListValue>() : ReadList(AsBytes(result.values[0].value));
  }
};

// --- References

TEST_F(HostileQuery, NamesAKeywordOfAnyLengthAndItsOffset) {
  const std::string keyword(8000, 'A');
  ExpectFailure(Call("zfParsePropertyReference", ListBuilder().String(keyword)),
                u"Tag name not found in dictionary: " + std::u16string(8000, u'A') +
                    u" at offset 8001 -  parsing property reference");
  // As a text of 16 bits the message of a longer one does not fit into a result.
  ExpectFailure(Call("zfParsePropertyReference", ListBuilder().String(std::string(32000, 'A'))),
                u"Return value exceeded Maximum String Length -  parsing property reference");
}

TEST_F(HostileQuery, EndsAReferenceAtItsFirstZeroByte) {
  const std::vector<ListValue> list = Parse(std::string_view("PatientName\0[1].x(", 18));
  ASSERT_EQ(list.size(), 1U);
  EXPECT_EQ(AsInteger(list[0].value), kName);
}

TEST_F(HostileQuery, TakesAReferenceOfThousandsOfSteps) {
  std::string reference = "BeamSequence";
  for (int i = 0; i < 3500; ++i) reference += "[1].KVP";
  EXPECT_EQ(Parse(reference).size(), 7001U);
  // With 5,000 the list is longer than a result may be.
  for (int i = 0; i < 1000; ++i) reference += "[1].KVP";
  ExpectFailure(Call("zfParsePropertyReference", ListBuilder().String(reference)),
                u"Return value exceeded Maximum String Length -  parsing property reference");
}

TEST_F(HostileQuery, TakesASubscriptBeyond32BitsForTheLargestNumber) {
  for (const char* const subscript : {"2147483648", "4294967297", "99999999999999999999999"}) {
    const std::vector<ListValue> list = Parse(std::string("BeamSequence[") + subscript + "].BeamName");
    ASSERT_EQ(list.size(), 3U);
    EXPECT_EQ(AsInteger(list[1].value), 2147483647);
  }
}

// --- Data sets

TEST_F(HostileQuery, OfEncapsulatedPixelDataAnswersWithTheFirstFragment) {
  const std::string fragments = kExplicit.Fragments("OB", Item("table.") + Item("first.") + Item("second"));
  EXPECT_EQ(TextOf(Ask(fragments, {kPixelData}, kJpegBaseline)), "OB table.");
}

TEST_F(HostileQuery, CountsAnElementBehindALargerTagAsAbsent) {
  EXPECT_EQ(TextOf(Ask(Number() + Name(), {kName})), "nothing");
  EXPECT_EQ(TextOf(Ask(Number() + Name(), {kPatientID})), "LO 4711");
}

TEST_F(HostileQuery, AnswersWithTheFirstOfTwoElementsOfOneTag) {
  EXPECT_EQ(TextOf(Ask(Name() + kExplicit.Element(kName, "PN", "other^"), {kName})), "PN ab");
}

TEST_F(HostileQuery, FindsWhatStandsBeforeDamageAndFailsOnWhatStandsBehindIt) {
  const std::string damaged =
      Name() + kExplicit.Element(0x00100030, "DA", "odd") + kExplicit.Element(kAge, "AS", "042Y");
  const char16_t* const odd =
      u"DecomposeElement reading VR and data length: Datalength is an odd number -  decomposing stream";
  EXPECT_EQ(TextOf(Ask(damaged, {kName})), "PN ab");
  ExpectFailure(Ask(damaged, {kAge}), odd);
  ExpectFailure(Ask(damaged, {kPatientID}), odd);  // absent, but that would only show behind the damage
  EXPECT_EQ(TextOf(Ask(kExplicit.Element(0x00080005, "CS", "") + EndlessSequence(), {0x00080005})), "CS ");
  EXPECT_EQ(TextOf(Ask(EndlessSequence(), {kImages, 1, 0x00081155})), "UI 1.");
}

/// A call for what sorts behind an item that is longer than the data set. What stands behind the item is read inside
/// it, so that it counts as absent, be it there or not.
struct EndlessQuestion {
  const char* function;
  std::vector<std::uint32_t> path;
  std::string behind;  ///< in the data set, behind the sequence

  friend std::ostream& operator<<(std::ostream& out, const EndlessQuestion& question) {
    return out << question.function << (question.behind.empty() ? " absent" : " present");
  }
};

class EndlessQuery : public LoadedLibrary, public testing::WithParamInterface<EndlessQuestion> {};

TEST_P(EndlessQuery, ForWhatSortsBehindAnItemThatIsTooLongNeverReturns) {
  const auto& [function, path, behind] = GetParam();
  const WatchedCall call = Watch([&](Host& host) {
    ListBuilder steps;
    for (const std::uint32_t step : path) steps.Integer(step);
    const std::uint32_t stream = host.Add(std::make_shared<MemoryStream>(EndlessSequence() + behind));
    TheLibrary().CallList(function, ListBuilder().Integer(stream).String(kExplicitLittleEndian).List(steps));
  });
  EXPECT_FALSE(call.returned);
  EXPECT_EQ(call.Names(), (std::vector<std::string>{"Position", "Peek", "Skip", "Peek"}));
  EXPECT_EQ(call.callbacks.back(), "PopString -> 0 bytes");  // the host has told the end
}

INSTANTIATE_TEST_SUITE_P(AbsentAndPresent, EndlessQuery,
                         testing::Values(EndlessQuestion{"zfQueryStream", {kName}, ""},
                                         EndlessQuestion{"zfQueryStream", {kName}, Name()},
                                         EndlessQuestion{"zfGetNextSubscript", {kBeams, 0}, ""},
                                         EndlessQuestion{"zfGetNextSubscript", {kBeams, 0}, Beams()}));

TEST_F(HostileQuery, ForWhatSortsBehindAnItemOfTheRightLengthFindsIt) {
  const std::string images = kExplicit.Sequence(kImages, Item(kExplicit.Element(0x00081155, "UI", "1.")));
  EXPECT_EQ(TextOf(Ask(images + Name(), {kName})), "PN ab");
  const std::uint32_t stream = host_.Add(std::make_shared<MemoryStream>(images + Beams()));
  const ListResult next =
      Call("zfGetNextSubscript",
           ListBuilder().Integer(stream).String(kExplicitLittleEndian).List(Path({kBeams, 0})));
  ExpectSuccess(next);
  EXPECT_EQ(AsInteger(next.values.at(0).value), 1);
}

// --- Files

class HostileFile : public HostileQuery {
 protected:
  ~HostileFile() override {
    std::error_code unheard;
    std::filesystem::remove(path_, unheard);
  }

  ListResult AskFile(const std::string& content, bool has_header, std::initializer_list<std::uint32_t> path) {
    std::ofstream(path_, std::ios::binary) << content;
    return AskNamed(path_, has_header, path);
  }
  static ListResult AskNamed(const std::string& name, bool has_header,
                             std::initializer_list<std::uint32_t> path) {
    return Call("zfQueryFileOrDataSet", ListBuilder()
                                            .Integer(has_header ? 1 : 0)
                                            .String(name)
                                            .String(kExplicitLittleEndian)
                                            .List(Path(path)));
  }

  static std::string PathOf(std::string_view name) {
    return (std::filesystem::temp_directory_path() / name).string();
  }

  std::string path_ =
      PathOf(std::string("vessa_hostile_") + testing::UnitTest::GetInstance()->current_test_info()->name());
};

TEST_F(HostileFile, ThatEndsInsideAnItemOfDefinedLengthNeverReturnsAndCallsNobody) {
  std::ofstream(path_, std::ios::binary) << EndlessSequence();
  const WatchedCall call = Watch([this](Host&) { AskNamed(path_, false, {kName}); });
  EXPECT_FALSE(call.returned);
  EXPECT_TRUE(call.Names().empty());  // all that was asked for is the switch for pixel data frames
  EXPECT_EQ(call.callbacks.back(), "PopInteger -> 0");
}

TEST_F(HostileFile, WithTheRightItemLengthReturns) {
  const std::string element = kExplicit.Element(0x00081155, "UI", "1.");
  EXPECT_EQ(TextOf(AskFile(kExplicit.Sequence(kImages, Item(element)), false, {kName})), "nothing");
}

TEST_F(HostileFile, MayHaveAnythingInItsPreamble) {
  const std::array<std::string, 4> starts = {"MZ",
                                             "\x7F"
                                             "ELF",
                                             "II*", "#!/bin/sh\n"};
  for (const std::string& start : starts) {
    std::string preamble = start;
    preamble.resize(128, '\x5A');
    EXPECT_EQ(TextOf(AskFile(preamble + "DICM" + Name(), true, {kName})), "PN ab");
  }
}

TEST_F(HostileFile, WithoutAWholeHeaderFailsAtTheMarkItself) {
  for (const std::size_t size :
       {std::size_t{0}, std::size_t{1}, std::size_t{127}, std::size_t{128}, std::size_t{131}}) {
    ExpectFailure(AskFile((std::string(128, '\0') + "DICM").substr(0, size), true, {kName}),
                  u" checking DICM file header");
  }
  ExpectFailure(AskFile(std::string(128, '\0') + "DICX" + Name(), true, {kName}),
                u" checking DICM file header");
}

TEST_F(HostileFile, ThatIsAFolderOrMissingFailsWhereItIsOpened) {
  for (const bool has_header : {false, true}) {
    ExpectFailure(AskNamed(std::filesystem::temp_directory_path().string(), has_header, {kName}),
                  u" wrapping input file");
    ExpectFailure(AskNamed(path_ + ".missing", has_header, {kName}), u" wrapping input file");
    ExpectFailure(AskNamed("", has_header, {kName}), u" wrapping input file");
  }
}

TEST_F(HostileFile, WhoseNameHasCharactersOutsideTheCodePageIsNotFound) {
  // A name of 16-bit text becomes 8-bit text of the code page, where these are question marks.
  const std::string folder = std::filesystem::temp_directory_path().string();
  const std::u16string name = std::u16string(folder.begin(), folder.end()) + u"/\u4E2D\u6587";
  ExpectFailure(
      Call("zfQueryFileOrDataSet",
           ListBuilder().Integer(0).WideString(name).String(kExplicitLittleEndian).List(Path({kName}))),
      u" wrapping input file");
}

TEST_F(HostileFile, OfFragmentsSendsOnlyThoseOfTwoChunksToTheResultStream) {
  const std::string large(40000, 'x');
  std::string fragments = Item("table.") + Item("first.");
  for (int i = 0; i < 100; ++i) fragments += Item("small.");
  std::ofstream(path_, std::ios::binary)
      << kExplicit.Fragments("OB", fragments + Item(large) + Item("last.."));
  auto [output, output_oref] = Make<MemoryStream>();
  EXPECT_EQ(TextOf(Call("zfQueryFileOrDataSet", ListBuilder()
                                                    .Integer(0)
                                                    .String(path_)
                                                    .String(kJpegBaseline)
                                                    .List(Path({kPixelData}))
                                                    .Integer(0)
                                                    .Integer(output_oref))),
            "OB table.");
  EXPECT_TRUE(output->Bytes() == large);
}

TEST_F(HostileFile, AboveTwoGibibytesIsReadToItsEnd) {
  constexpr std::uint32_t kBytes = 0x80000010;  // of pixels, which no 32-bit offset can pass over
  {
    std::ofstream sparse(path_, std::ios::binary);
    sparse << Name() << kExplicit.Header(kPixelData, "OW", kBytes);
    sparse.seekp(kBytes, std::ios::cur);
    sparse << kExplicit.Element(0xFFFCFFFC, "OB", "padded");
    if (!sparse.flush()) GTEST_SKIP() << "this disk takes no file of 2 GiB";
  }
  ASSERT_GT(std::filesystem::file_size(path_), kBytes);
  EXPECT_EQ(TextOf(AskNamed(path_, false, {0xFFFCFFFC})), "OB padded");
  EXPECT_EQ(TextOf(AskNamed(path_, false, {kName})), "PN ab");
}

}  // namespace
}  // namespace emulator
