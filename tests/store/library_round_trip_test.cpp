// What the library decomposes, the sink stores, the library composes and the library decomposes again.

#include <gtest/gtest.h>

#include "emulator/host.h"
#include "emulator/library.h"
#include "emulator/sink_object.h"
#include "emulator/store/data_set_comparison.h"
#include "emulator/store/data_set_replay.h"
#include "emulator/store/data_sets.h"
#include "emulator/store/memory_store.h"
#include "emulator/store/storing_sink.h"
#include "emulator/stream_object.h"
#include "tests/store/node_list.h"
#include "tests/support/dicom_bytes.h"
#include "tests/support/paths.h"

namespace emulator {
namespace {

namespace d = dicom_bytes;

const std::string kId = "1.2.3";

const Library& TheLibrary() {
  static const Library library = Library::Load(kLibraryPath);
  return library;
}

std::string MessageOf(const ListResult& result) { return {result.message.begin(), result.message.end()}; }

void Decompose(const std::string& bytes, const std::string& syntax, ContentSink& sink) {
  Host host;
  const ListResult result =
      TheLibrary().CallList("zfDecomposeStream", ListBuilder()
                                                     .Integer(host.Add(std::make_shared<MemoryStream>(bytes)))
                                                     .String(syntax)
                                                     .Integer(host.Add(std::make_shared<SinkObject>(sink)))
                                                     .Integer(0));
  ASSERT_TRUE(result.Succeeded()) << MessageOf(result);
}

std::string Composed(StoreTransaction& transaction, const std::string& syntax) {
  const auto facts = FindDataSet(*transaction.Nodes(), kId).value();
  Host host(transaction.Nodes());
  const auto output = std::make_shared<MemoryStream>();
  const std::uint32_t pixels = facts.pixels.empty() ? 0 : host.Add(transaction.OpenPixels(facts.pixels));
  const ListResult result = TheLibrary().CallList("zfComposeStream", ListBuilder()
                                                                         .Integer(host.Add(output))
                                                                         .String(kId)
                                                                         .String(syntax)
                                                                         .String(facts.transfer_syntax)
                                                                         .Integer(pixels));
  EXPECT_TRUE(result.Succeeded()) << MessageOf(result);
  return output->Bytes();
}

/// Sends bytes around and compares at every station.
void ExpectTheSame(const std::string& bytes, const std::string& syntax, const std::string& target) {
  SCOPED_TRACE(syntax + " to " + target);
  DataSetOutline source;
  Decompose(bytes, syntax, source);
  MemoryStore store;
  const auto transaction = store.Begin(Access::kWrite);
  StoringSink sink(*transaction, kId);
  Decompose(bytes, syntax, sink);
  DataSetOutline stored;
  ReplayDataSet(*transaction, kId, stored);
  EXPECT_EQ(FirstDifference(source, stored), std::nullopt);
  DataSetOutline written;
  Decompose(Composed(*transaction, target), target, written);
  EXPECT_EQ(FirstDifference(source, written), std::nullopt);
  EXPECT_GT(source.Entries().size(), 3U);
}

std::string NativeDataSet(d::VrForm form) {
  const d::DataSetBytes bytes(form);
  const std::string long_value(100'000, 'x');
  return bytes.Element(0x00080018, "UI", "1.2.3.45") +
         bytes.UndefinedSequence(
             0x00081140,
             d::UndefinedItem(
                 bytes.Element(0x00081150, "UI", "1.2 ") +
                 bytes.Sequence(0x00081140, d::Item("") + d::Item(bytes.Element(0x00081150, "UI", "")))) +
                 d::Item(bytes.Element(0x00081155, "UI", "1.3 "))) +
         bytes.Element(0x00090010, "LO", "CREATOR ") + bytes.Element(0x00091010, "UN", "secret") +
         bytes.Sequence(0x00101002, "") + bytes.Element(0x00280100, "US", d::Number16(16)) +
         bytes.Element(0x00280103, "US", d::Number16(1)) +
         bytes.Element(0x00280106, "SS", d::Number16(0xFFFF)) + bytes.Element(0x00420011, "OB", long_value) +
         bytes.Element(d::kPixelData, "OW", long_value);
}

TEST(LibraryRoundTrip, KeepsANativeDataSet) {
  for (const auto form : {d::VrForm::kExplicit, d::VrForm::kImplicit}) {
    for (const char* const target : {d::kExplicitLittleEndian, d::kImplicitLittleEndian}) {
      ExpectTheSame(NativeDataSet(form), d::DataSetBytes(form).TransferSyntax(), target);
    }
  }
}

TEST(LibraryRoundTrip, WritesRealVrsOfAnImplicitSource) {
  MemoryStore store;
  const auto transaction = store.Begin(Access::kWrite);
  StoringSink sink(*transaction, kId);
  Decompose(NativeDataSet(d::VrForm::kImplicit), d::kImplicitLittleEndian, sink);
  const std::string written = Composed(*transaction, d::kExplicitLittleEndian);
  const d::DataSetBytes bytes(d::VrForm::kExplicit);
  for (const std::string& element :
       {bytes.Element(0x00280106, "SS", d::Number16(0xFFFF)), bytes.Element(0x00090010, "LO", "CREATOR "),
        bytes.Element(0x00091010, "UN", "secret"), bytes.Header(d::kPixelData, "OW", 100'000)}) {
    EXPECT_NE(written.find(element), std::string::npos) << element.substr(0, 8);
  }
}

TEST(LibraryRoundTrip, KeepsFragmentsByteForByte) {
  const d::DataSetBytes bytes(d::VrForm::kExplicit);
  const std::string pixels =
      bytes.Fragments("OB", d::Item("") + d::Item(std::string(40'000, 'f')) + d::Item("ab") + d::Item(""));
  const std::string data_set = bytes.Element(0x00080018, "UI", "1.2.3.45") + pixels;
  ExpectTheSame(data_set, d::kJpegBaseline, d::kJpegBaseline);
  MemoryStore store;
  const auto transaction = store.Begin(Access::kWrite);
  StoringSink sink(*transaction, kId);
  Decompose(data_set, d::kJpegBaseline, sink);
  EXPECT_EQ(Composed(*transaction, d::kJpegBaseline), data_set);
}

TEST(LibraryRoundTrip, KeepsPixelDataWithoutAnyByte) {
  const d::DataSetBytes bytes(d::VrForm::kExplicit);
  const std::string data_set = bytes.Element(0x00080018, "UI", "1.2.3.45") +
                               bytes.Element(0x00080020, "DA", "") + bytes.Element(0x00100020, "LO", "") +
                               bytes.Element(d::kPixelData, "OW", "");
  ExpectTheSame(data_set, d::kExplicitLittleEndian, d::kExplicitLittleEndian);
}

TEST(LibraryRoundTrip, SurvivesDeepNesting) {
  constexpr int kLevels = 3000;
  const d::DataSetBytes bytes(d::VrForm::kExplicit);
  std::string data_set;
  for (int level = 0; level < kLevels; ++level) {
    data_set += bytes.Header(0x00081140, "SQ", d::kUndefined) + d::TagAndLength(d::kItem, d::kUndefined);
  }
  for (int level = 0; level < kLevels; ++level) data_set += d::ItemEnd() + d::SequenceEnd();
  ExpectTheSame(data_set, d::kExplicitLittleEndian, d::kExplicitLittleEndian);
}

}  // namespace
}  // namespace emulator
