#include "tests/callouts/next_call.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "emulator/event_log.h"
#include "emulator/stream_object.h"
#include "tests/callouts/loaded_library.h"
#include "tests/support/dicom_bytes.h"
#include "tests/support/event_script.h"
#include "tests/support/stored_data_set.h"

namespace emulator {
namespace {

using dicom_bytes::kExplicitLittleEndian;

std::string SmallDataSet() {
  const dicom_bytes::DataSetBytes form(dicom_bytes::VrForm::kExplicit);
  return form.UndefinedSequence(0x00081140, dicom_bytes::Item(form.Element(0x00081155, "UI", "1."))) +
         form.Element(0x00100010, "PN", "Doe^John");
}

const char* const kItsEvents = R"(
  StartContent 1.2.840.10008.1.2.1
  StartElement 00081140 SQ 4294967295
    StartSequence
      StartItem 00081140 10
        StartElement 00081155 UI 2
          Data 00081155 1 312E
        EndElement 00081155
      EndItem 00081140 10
    EndSequence
  EndElement 00081140
  StartElement 00100010 PN 8
    Data 00100010 1 446F655E4A6F686E
  EndElement 00100010
  EndContent)";

void ExpectADecomposition(Host& host) {
  const auto log = std::make_shared<EventLog>();
  const std::uint32_t stream = host.Add(std::make_shared<MemoryStream>(SmallDataSet()));
  ExpectSuccess(TheLibrary().CallList(
      "zfDecomposeStream",
      ListBuilder().Integer(stream).String(kExplicitLittleEndian).Integer(host.Add(log)).Integer(0)));
  EXPECT_EQ(log->Lines(), Script(kItsEvents));
}

void ExpectAnAnswer(Host& host) {
  const std::uint32_t stream = host.Add(std::make_shared<MemoryStream>(SmallDataSet()));
  const ListResult answer = TheLibrary().CallList(
      "zfQueryStream", ListBuilder()
                           .Integer(stream)
                           .String(kExplicitLittleEndian)
                           .List(ListBuilder().Integer(0x00081140).Integer(1).Integer(0x00081155)));
  ExpectSuccess(answer);
  ASSERT_EQ(answer.values.size(), 2U);
  EXPECT_EQ(AsBytes(answer.values[1].value), "1.");
}

void ExpectAComposition(Host& host) {
  StoredDataSet data(host);
  data.TopSequence(0x00081140, 1);
  data.InItem(1, 1, 0x00081155, 2, "UI", "1.");
  data.Top(0x00100010, 3, "PN", "Doe^John");
  const auto output = std::make_shared<MemoryStream>();
  ExpectSuccess(TheLibrary().CallList("zfComposeStream", ListBuilder()
                                                             .Integer(host.Add(output))
                                                             .String(StoredDataSet::kId)
                                                             .String(kExplicitLittleEndian)
                                                             .String(kExplicitLittleEndian)
                                                             .Integer(0)));
  const dicom_bytes::DataSetBytes form(dicom_bytes::VrForm::kExplicit);
  EXPECT_EQ(
      output->Bytes(),
      form.UndefinedSequence(0x00081140, dicom_bytes::UndefinedItem(form.Element(0x00081155, "UI", "1."))) +
          form.Element(0x00100010, "PN", "Doe^John"));
}

void ExpectAPacking(Host& host) {
  const auto packed = std::make_shared<MemoryStream>();
  const auto unpacked = std::make_shared<MemoryStream>();
  const auto add = [&host](std::shared_ptr<Object> object) {
    return static_cast<std::int32_t>(host.Add(std::move(object)));
  };
  const std::int32_t middle = add(packed);
  EXPECT_EQ(TheLibrary().Call("zfDeflateStream", 6, add(std::make_shared<MemoryStream>("abc")), middle), 0);
  EXPECT_EQ(TheLibrary().Call("zfInflateStream", middle, add(unpacked), 0), 0);
  EXPECT_EQ(unpacked->Bytes(), "abc");
}

}  // namespace

void ExpectTheNextCallsToWork() {
  SCOPED_TRACE("the next calls");
  Host host;
  ExpectADecomposition(host);
  ExpectAnAnswer(host);
  ExpectAComposition(host);
  ExpectAPacking(host);
  const ListResult name = TheLibrary().CallList("zfNameTag", ListBuilder().String("PatientName"));
  ExpectSuccess(name);
  EXPECT_EQ(AsInteger(name.values.at(0).value), 0x00100010);
  EXPECT_EQ(host.StackDepth(), 0U);
  EXPECT_EQ(host.OpenLongStrings(), 0U);
}

}  // namespace emulator
