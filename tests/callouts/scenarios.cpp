#include "tests/callouts/scenarios.h"

#include <gtest/gtest.h>

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

/// @param stop_at  what the client object wants to stop at; 0: there is none
Scenario Decompose(std::string name, std::string bytes, std::string syntax, std::uint32_t stop_at = 0) {
  return {"decompose " + name, [=](Host& host, const Library& library) {
            const std::uint32_t stream = Add<MemoryStream>(host, bytes);
            const std::uint32_t log = Add<EventLog>(host);
            const std::uint32_t client = stop_at != 0 ? Add<StopAtTag>(host, stop_at) : std::uint32_t{0};
            return library.CallList(
                "zfDecomposeStream",
                ListBuilder().Integer(stream).String(syntax).Integer(log).Integer(client));
          }};
}

Scenario AskStream(std::string function, std::string name, std::vector<std::uint32_t> property_list,
                   std::string data_set) {
  return {function + ' ' + name, [=](Host& host, const Library& library) {
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

struct Composition {
  std::string syntax = kExplicitLittleEndian;
  std::string original = kExplicitLittleEndian;
  std::string pixels;  ///< no stream where there are none
};

Scenario Compose(std::string name, Composition how, std::function<void(StoredDataSet&)> fill) {
  return {"zfComposeStream " + name,
          [how = std::move(how), fill = std::move(fill)](Host& host, const Library& library) {
            StoredDataSet data(host);
            fill(data);
            const std::uint32_t output = Add<MemoryStream>(host);
            const std::uint32_t pixels =
                how.pixels.empty() ? std::uint32_t{0} : Add<MemoryStream>(host, how.pixels);
            return library.CallList("zfComposeStream", ListBuilder()
                                                           .Integer(output)
                                                           .String(StoredDataSet::kId)
                                                           .String(how.syntax)
                                                           .String(how.original)
                                                           .Integer(pixels));
          }};
}

void FillSequences(StoredDataSet& data) {
  data.TopSequence(0x00081140, 1);
  data.InItem(1, 1, 0x00081150, 2, "UI", "1.");
  data.SequenceInItem(1, 1, 0x00081199, 3);
  data.InItem(3, 1, 0x00081155, 4, "UI", "2.");
  data.EmptyItem(1, 2);
}

void FillChunks(StoredDataSet& data) {
  data.Top(kPatientName, 1, "PN", std::string(9000, 'x'));
  data.Chunk(1, 1, std::string(8000, 'y'));
  data.Chunk(1, 2, "z");
}

void FillEverything(StoredDataSet& data) {
  FillSequences(data);
  data.Top(kPatientName, 5, "", std::string(9000, 'x'));
  data.Chunk(5, 1, "yz");
  data.Top(0x00280100, 6, "US", dicom_bytes::Hex("0010"));
  data.Top(kPixelData, 7, "OW", "");
}

/// One element at the top level.
std::function<void(StoredDataSet&)> FillOne(std::uint32_t tag, std::string vr, std::string value) {
  return [=](StoredDataSet& data) { data.Top(tag, 1, vr, value); };
}

using Pack = std::function<std::int32_t(const Library&, std::int32_t in, std::int32_t out)>;

/// A call-out that answers with 0 or -1 alone, which is told as status 0 or 1.
Scenario PackStream(std::string name, std::string bytes, Pack pack) {
  return {std::move(name),
          [bytes = std::move(bytes), pack = std::move(pack)](Host& host, const Library& library) {
            const auto in = static_cast<std::int32_t>(Add<MemoryStream>(host, bytes));
            const auto out = static_cast<std::int32_t>(Add<MemoryStream>(host));
            const std::int32_t returned = pack(library, in, out);
            EXPECT_TRUE(returned == 0 || returned == -1) << returned;
            ListResult result;
            result.status = returned == 0 ? 0 : 1;
            return result;
          },
          false};
}

Scenario Deflate(std::string name, std::string bytes, std::int32_t level) {
  return PackStream("zfDeflateStream " + name, std::move(bytes),
                    [level](const Library& library, std::int32_t in, std::int32_t out) {
                      return library.Call("zfDeflateStream", level, in, out);
                    });
}

Scenario Inflate(std::string name, const std::string& bytes) {
  return PackStream("zfInflateStream " + name, packed_bytes::Packed(bytes, 6),
                    [](const Library& library, std::int32_t in, std::int32_t out) {
                      return library.Call("zfInflateStream", in, out, 0);
                    });
}

Scenario LookUp(std::string function, ListBuilder arguments, const std::string& what = "") {
  return {function + what,
          [=](Host&, const Library& library) { return library.CallList(function, arguments); }};
}

/// A call-out that turns the bytes of its buffer into others, and leaves them as they are when it fails.
Scenario ConvertBytes(std::string name, std::string bytes,
                      std::function<std::int32_t(const Library&, vessa::HostString&)> convert) {
  return {std::move(name),
          [bytes = std::move(bytes), convert = std::move(convert)](Host&, const Library& library) {
            vessa::HostString buffer;
            Fill(buffer, bytes);
            ListResult result;
            result.status = convert(library, buffer);
            if (result.status == 0) result.values = ReadList(ListBuilder().String(Contents(buffer)).Bytes());
            EXPECT_TRUE(result.status == 0 || (result.status == 1 && Contents(buffer) == bytes));
            return result;
          },
          false};
}

std::int32_t Swap(const Library& library, vessa::HostString& buffer) {
  return library.Call("zfSwitchByteOrdering", buffer, 4);
}

std::int32_t ToDecimal(const Library& library, vessa::HostString& buffer) {
  return library.Call("zfBigHexToDecimal", buffer);
}

/// The same call on a host in which something is broken.
Scenario With(std::string what, Scenario scenario, std::function<void(FaultPlan&)> plan) {
  scenario.name += ", " + what;
  scenario.call = [call = std::move(scenario.call), plan = std::move(plan)](Host& host,
                                                                            const Library& library) {
    plan(host.faults());
    return call(host, library);
  };
  return scenario;
}

void FillCircle(StoredDataSet& data) {
  data.TopSequence(0x00081140, 1);
  data.SequenceInItem(1, 1, 0x00081140, 1);
}

}  // namespace

std::vector<Scenario> Decompositions() {
  return {
      Decompose("nothing", "", kExplicitLittleEndian, kNoStop),
      Decompose("explicit VRs", Plan(VrForm::kExplicit), kExplicitLittleEndian),
      Decompose("implicit VRs", Plan(VrForm::kImplicit), kImplicitLittleEndian),
      Decompose("with a client", Plan(VrForm::kExplicit), kExplicitLittleEndian, kNoStop),
      Decompose("up to where a client stops", Plan(VrForm::kExplicit), kExplicitLittleEndian, kBeamSequence),
      Decompose("up to where a client stops, in a long stream", LongValue(), kExplicitLittleEndian,
                kPixelData),
      Decompose("sequences forty deep", Nested(40), kExplicitLittleEndian),
      Decompose("a long value", LongValue(), kExplicitLittleEndian),
      Decompose("fragments", Fragments(), kJpegBaseline),
  };
}

std::vector<Scenario> Queries() {
  constexpr std::uint32_t kAbsent = 0xFFFCFFFC;
  return {
      AskStream("zfQueryStream", "for the first element", {kPatientName}, LongValue()),
      AskStream("zfQueryStream", "for nothing", {kAbsent}, LongValue()),
      AskStream("zfQueryStream", "in an item", {kBeamSequence, 2, kBeamName}, Plan(VrForm::kExplicit)),
      AskStream("zfGetNextSubscript", "for another", {kBeamSequence, 1}, Plan(VrForm::kExplicit)),
      AskStream("zfGetNextSubscript", "for no other", {kBeamSequence, 2}, Plan(VrForm::kExplicit)),
      AskFile("with a header", kPatientName, true, false),
      AskFile("for nothing", kAbsent, false, false),
      AskFile("for a long value", kPixelData, false, true),
  };
}

std::vector<Scenario> Compositions() {
  constexpr const char* kBigEndian = "1.2.840.10008.1.2.2";
  const std::string frames =
      dicom_bytes::Hex("FEFF00E0 00000000 FEFF00E0 04000000 01020304") + dicom_bytes::SequenceEnd();
  const Composition implicit{kImplicitLittleEndian, kExplicitLittleEndian, ""};
  const Composition swapped{kImplicitLittleEndian, kBigEndian, ""};
  return {
      Compose("one element", {}, FillOne(kPatientName, "PN", "Doe^John")),
      Compose("implicit", implicit, FillOne(kPatientName, "PN", "Doe^John")),
      Compose("no VR", {}, FillOne(kPatientName, "", "Doe^John")),
      Compose("sequences", {}, FillSequences),
      Compose("swapped", swapped, FillOne(0x00280010, "US", "abcd")),
      Compose("chunks", {}, FillChunks),
      Compose("native pixels", {kExplicitLittleEndian, kExplicitLittleEndian, std::string(40000, 'p')},
              FillOne(kPixelData, "OW", "")),
      Compose("swapped pixels", {kImplicitLittleEndian, kBigEndian, std::string(9001, 'p')},
              FillOne(kPixelData, "OW", "")),
      Compose("framed pixels", {kJpegBaseline, kJpegBaseline, frames}, FillOne(kPixelData, "OB", "")),
      Compose("marked pixels", {kJpegBaseline, kJpegBaseline, "abcd"},
              [](StoredDataSet& data) {
                data.Top(kPixelData, 1, "OB", "");
                data.MarkUndefined(1);
              }),
      Compose("everything", {kImplicitLittleEndian, kBigEndian, std::string(40000, 'p')}, FillEverything),
  };
}

std::vector<Scenario> Packings() {
  const std::string noise = packed_bytes::Noise(100000);
  const std::string much = packed_bytes::Pattern(300000);
  return {
      Deflate("nothing", "", 6), Deflate("a little", "abc", 9), Deflate("without compression", noise, 0),
      Deflate("much", much, 6),  Inflate("nothing", ""),        Inflate("a little", "abc"),
      Inflate("noise", noise),   Inflate("much", much),
  };
}

std::vector<Scenario> Lookups() {
  return {
      LookUp("zfTagInfo", ListBuilder().Integer(kPatientName)),
      LookUp("zfNameTag", ListBuilder().String("PatientName")),
      LookUp("zfParsePropertyReference", ListBuilder().String("BeamSequence[2].BeamName")),
      LookUp("zfParsePropertySubscriptReference", ListBuilder().String("BeamSequence[2]")),
      ConvertBytes("zfSwitchByteOrdering", "abcdefgh", Swap),
      ConvertBytes("zfBigHexToDecimal", "123456789ABCDEF0123456789ABCDEF0", ToDecimal),
  };
}

std::vector<Scenario> Failures() {
  const DataSetBytes bytes(VrForm::kExplicit);
  const Scenario plan = Decompose("sequences", Plan(VrForm::kExplicit), kExplicitLittleEndian);
  const Scenario chunks = Compose("chunks", {}, FillChunks);
  const auto fail = [](const char* method, bool from_then_on) {
    return [=](FaultPlan& faults) { faults.FailNthMethod(method, 1, 5, from_then_on); };
  };
  return {
      Decompose("an odd length", bytes.Element(kPatientName, "PN", "Doe"), kExplicitLittleEndian),
      Decompose("a cut value", bytes.Element(kPatientName, "PN", "Doe^John").substr(0, 12),
                kExplicitLittleEndian),
      Decompose("an unknown syntax", "", std::string(100, '1')),
      With("a failing event", plan, fail("Data", false)),
      With("everything failing from an event on", plan,
           [](FaultPlan& faults) { faults.FailNth(40, 5, true); }),
      With("a failing Peek", plan, fail("Peek", true)),
      AskStream("zfQueryStream", "for a value that is too long", {kPixelData}, LongValue()),
      AskStream("zfGetNextSubscript", "with an empty list", {}, LongValue()),
      LookUp("zfQueryFileOrDataSet",
             ListBuilder()
                 .Integer(0)
                 .String("no such file")
                 .String(kExplicitLittleEndian)
                 .List(ListBuilder().Integer(kPatientName)),
             " of no such file"),
      Compose("a sequence in itself", {}, FillCircle),
      Compose("an unknown tag", {}, FillOne(0x0028ABCE, "", "AB")),
      With("a failing Write", chunks, fail("Write", true)),
      LookUp("zfParsePropertyReference", ListBuilder().String(std::string(8000, 'A')), " with a long name"),
      LookUp("zfParsePropertyReference", ListBuilder().String(std::string(32000, 'A')),
             " with a name too long for a message"),
      LookUp("zfTagInfo", ListBuilder(), " without a tag"),
      PackStream("zfInflateStream what is not packed", "abcdefgh",
                 [](const Library& library, std::int32_t in, std::int32_t out) {
                   return library.Call("zfInflateStream", in, out, 0);
                 }),
      ConvertBytes("zfBigHexToDecimal with too many digits", std::string(100, 'F'), ToDecimal),
  };
}

}  // namespace emulator
