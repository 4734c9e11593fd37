#include "tests/callouts/scenarios.h"

#include <cstdint>
#include <memory>
#include <utility>

#include "emulator/client.h"
#include "emulator/event_log.h"
#include "emulator/stream_object.h"
#include "tests/support/dicom_bytes.h"
#include "tests/support/packed_bytes.h"
#include "tests/support/scratch_file.h"
#include "tests/support/stored_data_set.h"

namespace emulator {
namespace {

using dicom_bytes::DataSetBytes;
using dicom_bytes::Item;
using dicom_bytes::kExplicitLittleEndian;
using dicom_bytes::kImplicitLittleEndian;
using dicom_bytes::kJpegBaseline;
using dicom_bytes::UndefinedItem;
using dicom_bytes::VrForm;

constexpr std::uint32_t kPatientName = 0x00100010;
constexpr std::uint32_t kBeamSequence = 0x300A00B0;
constexpr std::uint32_t kBeamName = 0x300A00C2;
constexpr std::uint32_t kPixelData = 0x7FE00010;
constexpr std::uint32_t kNoStop = 0x00000001;
constexpr std::size_t kLongValue = 70000;  // more than two chunks

template <class SomeObject, class... Arguments>
std::uint32_t Add(Host& host, Arguments&&... arguments) {
  return host.Add(std::make_shared<SomeObject>(std::forward<Arguments>(arguments)...));
}

// --- Data sets ---

std::string Plan(VrForm form) {
  const DataSetBytes bytes(form);
  return bytes.Element(kPatientName, "PN", "Doe^John") +
         bytes.UndefinedSequence(kBeamSequence, Item(bytes.Element(kBeamName, "LO", "left")) +
                                                    UndefinedItem(bytes.Element(kBeamName, "LO", "back")));
}

std::string Nested(int depth) {
  const DataSetBytes bytes(VrForm::kExplicit);
  std::string inner = bytes.Element(kBeamName, "LO", "left");
  for (int level = 0; level < depth; ++level) {
    inner = level % 2 == 0 ? bytes.Sequence(kBeamSequence, UndefinedItem(inner))
                           : bytes.UndefinedSequence(kBeamSequence, Item(inner));
  }
  return inner;
}

std::string LongValue() {
  const DataSetBytes bytes(VrForm::kExplicit);
  return bytes.Element(kPatientName, "PN", "Doe^John") +
         bytes.Element(kPixelData, "OW", std::string(kLongValue, 'x'));
}

std::string Fragments() {
  return DataSetBytes(VrForm::kExplicit)
      .Fragments("OB", Item("") + Item("abcd") + Item(std::string(9000, 'x')));
}

// --- Calls ---

Scenario Decompose(std::string name, std::string bytes, std::string syntax, bool with_client = false) {
  return {"decompose " + name, [=](Host& host, const Library& library) {
            const std::uint32_t stream = Add<MemoryStream>(host, bytes);
            const std::uint32_t log = Add<EventLog>(host);
            const std::uint32_t client = with_client ? Add<StopAtTag>(host, kNoStop) : std::uint32_t{0};
            return library.CallList(
                "zfDecomposeStream",
                ListBuilder().Integer(stream).String(syntax).Integer(log).Integer(client));
          }};
}

Scenario AskStream(std::string function, std::vector<std::uint32_t> property_list, std::string data_set) {
  return {function, [=](Host& host, const Library& library) {
            ListBuilder list;
            for (const std::uint32_t entry : property_list) list.Integer(entry);
            return library.CallList(function, ListBuilder()
                                                  .Integer(Add<MemoryStream>(host, data_set))
                                                  .String(kExplicitLittleEndian)
                                                  .List(list));
          }};
}

Scenario AskFile(std::string name, std::uint32_t tag, bool with_header, bool with_result_stream) {
  const auto file =
      std::make_shared<ScratchFile>((with_header ? std::string(128, '\0') + "DICM" : "") + LongValue());
  return {"zfQueryFileOrDataSet " + name, [=](Host& host, const Library& library) {
            ListBuilder arguments;
            arguments.Integer(with_header ? 1 : 0)
                .String(file->Name())
                .String(kExplicitLittleEndian)
                .List(ListBuilder().Integer(tag));
            if (with_result_stream) arguments.Integer(0).Integer(Add<MemoryStream>(host));
            return library.CallList("zfQueryFileOrDataSet", arguments);
          }};
}

Scenario Compose(std::string name, std::function<void(StoredDataSet&)> store, std::string syntax,
                 std::string original, std::string pixels = "") {
  return {"compose " + name, [=](Host& host, const Library& library) {
            StoredDataSet data_set(host);
            store(data_set);
            return library.CallList("zfComposeStream",
                                    ListBuilder()
                                        .Integer(Add<MemoryStream>(host))
                                        .String(StoredDataSet::kId)
                                        .String(syntax)
                                        .String(original)
                                        .Integer(pixels.empty() ? 0 : Add<MemoryStream>(host, pixels)));
          }};
}

void StorePlan(StoredDataSet& data_set) {
  data_set.Top(kPatientName, 2, "PN", "Doe^John");
  data_set.TopSequence(kBeamSequence, 1);
  data_set.InItem(1, 1, kBeamName, 3, "LO", "left");
  data_set.EmptyItem(1, 2);
  data_set.InItem(1, 3, kBeamName, 4, "LO", "back");
}

void StoreLongValue(StoredDataSet& data_set) {
  data_set.Top(0x00091001, 1, "OW", std::string(32000, 'a'));
  data_set.Chunk(1, 1, std::string(32000, 'b'));
  data_set.Chunk(1, 2, "cdef");
}

void StoreImage(StoredDataSet& data_set) {
  data_set.Top(0x00280100, 1, "US", std::string("\x10\0", 2));
  data_set.Top(kPixelData, 2, "OW", "");
}

void StoreFragments(StoredDataSet& data_set) {
  data_set.Top(kPixelData, 1, "OB", "");
  data_set.MarkUndefined(1);
}

ListResult WholeNumberResult(std::int32_t returned) {
  ListResult result;
  result.status = returned == 0 ? 0 : 1;
  return result;
}

Scenario Deflate(std::string name, std::string bytes) {
  return {"zfDeflateStream " + name, [=](Host& host, const Library& library) {
            return WholeNumberResult(library.Call("zfDeflateStream", 6,
                                                  static_cast<std::int32_t>(Add<MemoryStream>(host, bytes)),
                                                  static_cast<std::int32_t>(Add<MemoryStream>(host))));
          }};
}

Scenario Inflate(std::string name, std::string bytes) {
  return {"zfInflateStream " + name, [=](Host& host, const Library& library) {
            return WholeNumberResult(library.Call(
                "zfInflateStream",
                static_cast<std::int32_t>(Add<MemoryStream>(host, packed_bytes::Packed(bytes, 6))),
                static_cast<std::int32_t>(Add<MemoryStream>(host)), 0));
          }};
}

Scenario LookUp(std::string function, ListBuilder arguments) {
  return {function, [=](Host&, const Library& library) { return library.CallList(function, arguments); }};
}

}  // namespace

std::vector<Scenario> Decompositions() {
  return {
      Decompose("nothing", "", kExplicitLittleEndian, true),
      Decompose("explicit VRs", Plan(VrForm::kExplicit), kExplicitLittleEndian),
      Decompose("implicit VRs", Plan(VrForm::kImplicit), kImplicitLittleEndian),
      Decompose("with a client", Plan(VrForm::kExplicit), kExplicitLittleEndian, true),
      Decompose("sequences forty deep", Nested(40), kExplicitLittleEndian),
      Decompose("a long value", LongValue(), kExplicitLittleEndian),
      Decompose("fragments", Fragments(), kJpegBaseline),
  };
}

std::vector<Scenario> Queries() {
  constexpr std::uint32_t kAbsent = 0xFFFCFFFC;
  return {
      AskStream("zfQueryStream", {kPatientName}, LongValue()),
      AskStream("zfQueryStream", {kAbsent}, LongValue()),
      AskStream("zfQueryStream", {kBeamSequence, 2, kBeamName}, Plan(VrForm::kExplicit)),
      AskStream("zfGetNextSubscript", {kBeamSequence, 1}, Plan(VrForm::kExplicit)),
      AskStream("zfGetNextSubscript", {kBeamSequence, 2}, Plan(VrForm::kExplicit)),
      AskFile("with a header", kPatientName, true, false),
      AskFile("for nothing", kAbsent, false, false),
      AskFile("for a long value", kPixelData, false, true),
  };
}

std::vector<Scenario> Compositions() {
  constexpr const char* kBigEndian = "1.2.840.10008.1.2.2";
  return {
      Compose("explicit VRs", StorePlan, kExplicitLittleEndian, kExplicitLittleEndian),
      Compose("implicit VRs", StorePlan, kImplicitLittleEndian, kExplicitLittleEndian),
      Compose("a long value to be swapped", StoreLongValue, kExplicitLittleEndian, kBigEndian),
      Compose("native pixel data", StoreImage, kExplicitLittleEndian, kExplicitLittleEndian,
              std::string(kLongValue, 'x')),
      Compose("fragments", StoreFragments, kJpegBaseline, kJpegBaseline, Item("") + Item("abcd")),
  };
}

std::vector<Scenario> Packings() {
  const std::string text = [] {
    std::string bytes;
    for (std::uint32_t i = 0; bytes.size() < kLongValue; ++i) bytes += std::to_string(i * i);
    return bytes;
  }();
  return {Deflate("nothing", ""), Deflate("three blocks", text), Inflate("nothing", ""),
          Inflate("three blocks", text)};
}

std::vector<Scenario> Lookups() {
  return {
      LookUp("zfTagInfo", ListBuilder().Integer(kPatientName)),
      LookUp("zfNameTag", ListBuilder().String("PatientName")),
      LookUp("zfParsePropertyReference", ListBuilder().String("BeamSequence[2].BeamName")),
      LookUp("zfParsePropertySubscriptReference", ListBuilder().String("BeamSequence[2]")),
  };
}

}  // namespace emulator
