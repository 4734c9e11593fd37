#include <gmock/gmock.h>

#include <cstdint>
#include <string>

#include "tests/callouts/composing.h"

namespace emulator {
namespace {

using dicom_bytes::Hex;
using dicom_bytes::kImplicitLittleEndian;

constexpr const char* kTooLong = "ComposeElement writing VR writing value length";
constexpr const char* kOtherLength =
    "ComposeElement: Data of element 00100010 do not have the length that was written at reference "
    "^KevDICOM.Data(ID,1,\"d\")";

// --- Damaged content ---

TEST_F(ComposeStream, RefusesAValueThatIsLongerThanItsLengthFieldHolds) {
  data_.Top(0x00081160, 1, "IS", std::string(32767, '1'));
  data_.Chunk(1, 1, std::string(32767, '2'));
  data_.Chunk(1, 2, "3");
  ExpectSuccess(Compose());
  EXPECT_EQ(Written().substr(0, 8), Hex("0800 6011 4953 FFFF"));
  data_.Chunk(1, 2, "34");
  ExpectFails(Compose(), kTooLong, "0800 6011");
  ExpectSuccess(Compose(kImplicitLittleEndian));
  EXPECT_EQ(Written().substr(0, 8), Hex("0800 6011 00000100"));
}

TEST_F(ComposeStream, FailsWhenAValueChangesWhileItIsWritten) {
  data_.Top(0x00100010, 1, "PN", "AB");
  constexpr int kLengthIsKnown = 2;  // the second walk is that of the chunks for the length
  Behind(Operation::kGlobalOrder, kLengthIsKnown, [this] { data_.Value(1, "A"); });
  ExpectFails(Compose(), kOtherLength, "1000 1000 504E 0200 41");
  data_.Value(1, "AB");
  Behind(Operation::kGlobalOrder, kLengthIsKnown, [this] { data_.Chunk(1, 1, "CD"); });
  ExpectFails(Compose(), kOtherLength, "1000 1000 504E 0200 4142");
}

TEST_F(ComposeStream, FailsWhereAChunkHasNoValue) {
  data_.Top(0x00100010, 1, "PN", "AB");
  const auto leave_a_gap = [this] {
    data_.Set({std::int64_t{1}, std::string("d"), std::int64_t{1}, std::int64_t{5}}, std::string("below"));
  };
  Behind(Operation::kGlobalOrder, 2, leave_a_gap);
  ExpectFails(Compose(), "GetNextDataChunk: missing data node in some \"d\" record",
              "1000 1000 504E 0200 4142");
  host_.Observe({});
  ExpectFails(Compose(), "GetDataLength: missing data node in some \"d\" record", "1000 1000");
}

TEST_F(ComposeStream, FailsForAnElementWithoutAValueNode) {
  data_.LinkTop(std::int64_t{0x00100010}, std::int64_t{1});
  data_.Vr(1, "PN");
  ExpectFails(Compose(), "GetDataLength: Vessa' callin error: undefined", "1000 1000");
}

TEST_F(ComposeStream, FailsForAKeyWithoutANodeNumber) {
  data_.Set({std::int64_t{0}, std::string("c"), std::int64_t{0}, std::int64_t{1048592}, std::int64_t{1}},
            std::string("below"));
  ExpectFails(Compose(), "NextTagKey: No data at reference ^KevDICOM.Data(ID,0,\"c\",0,1048592)", "");
  data_.Set({std::int64_t{0}, std::string("c"), std::int64_t{0}, std::int64_t{1048592}}, std::int64_t{3});
  data_.Vr(3, "SQ");
  data_.Set({std::int64_t{3}, std::string("c"), std::int64_t{1}, std::int64_t{1048608}, std::int64_t{1}},
            std::string("below"));
  ExpectFails(Compose(), "NextSequenceTagKey: No data at reference ^KevDICOM.Data(ID,3,\"c\",1,1048608)",
              "1000 1000 5351 0000 FFFFFFFF FEFF 00E0 FFFFFFFF");
}

TEST_F(ComposeStream, FailsForAnUnknownTagWithoutAVr) {
  data_.Top(0x00100010, 1, "PN", "AB");
  data_.Top(0x0028ABCE, 2, "", "x");
  ExpectFails(Compose(), "ComposeStream: Unrecognized tag: 0028ABCE", "1000 1000 504E 0200 4142");
}

TEST_F(ComposeStream, ReportsOtherStatusesOfAVrThatCannotBeRead) {
  data_.Top(0x00100010, 1, "PN", "AB");
  host_.faults().FailNth(Operation::kGlobalGet, 1, 15);
  ExpectFails(Compose(), "NextTagKey: Vessa' callin error: store", "");
}

TEST_F(ComposeStream, RefusesASequenceThatIsItsOwnAncestor) {
  data_.TopSequence(0x00081140, 1);
  data_.SequenceInItem(1, 1, 0x00081199, 2);
  data_.SequenceInItem(2, 1, 0x00081140, 1);
  ExpectFails(Compose(),
              "ComposeSequence: Element 00081140 is its own ancestor at reference ^KevDICOM.Data(ID,1,\"c\")",
              "0800 4011 5351 0000 FFFFFFFF FEFF 00E0 FFFFFFFF"
              "0800 9911 5351 0000 FFFFFFFF FEFF 00E0 FFFFFFFF");
}

// --- Failures of the host ---

TEST_F(ComposeStream, NamesTheOperationWhoseAccessFailedAndKeepsWhatWasWritten) {
  data_.TopSequence(0x00081140, 1);
  data_.InItem(1, 1, 0x00081150, 2, "UI", "1.");
  data_.Top(0x00100010, 3, "PN", "AB");
  struct Fault {
    Operation operation;
    std::uint64_t n;
    const char* text;
    const char* written;
  };
  const std::string in_item = "0800 4011 5351 0000 FFFFFFFF FEFF 00E0 FFFFFFFF";
  const std::string item = in_item + "0800 5011 5549 0200 312E";
  const Fault faults[] = {
      {Operation::kGlobalOrder, 1, "NextTagKey: Vessa' callin error: max string", ""},
      {Operation::kGlobalOrder, 3, "NextSequenceTagKey: Vessa' callin error: max string", in_item.c_str()},
      {Operation::kGlobalGet, 2, "NextSequenceTagKey: Vessa' callin error: max string", in_item.c_str()},
      {Operation::kGlobalGet, 3, "GetDataLength: Vessa' callin error: max string", nullptr},
      {Operation::kGlobalOrder, 4, "GetDataLength: Vessa' callin error: max string", nullptr},
      {Operation::kGlobalGet, 4, "GetNextDataChunk: Vessa' callin error: max string", nullptr},
      {Operation::kGlobalOrder, 5, "GetNextDataChunk: Vessa' callin error: max string", item.c_str()},
  };
  for (const Fault& fault : faults) {
    host_.faults().FailNth(fault.operation, fault.n, 5);
    const ListResult result = Compose();
    const std::string message = std::string(fault.text) + " -  composing stream";
    ExpectFailure(result, std::u16string(message.begin(), message.end()));
    if (fault.written != nullptr) {
      EXPECT_EQ(Written(), Hex(fault.written)) << fault.text;
    }
    host_.faults().Clear();
    host_.ResetStack();
  }
  host_.faults().FailNth(Operation::kGlobalOrder, 2, 5);  // the walk over items has no text of its own
  ExpectFailure(Compose(), u" composing stream");
}

TEST_F(ComposeStream, SucceedsAlthoughTheLastBlockIsLost) {
  data_.Top(0x00189445, 1, "OB", std::string(15987, 'x'));  // 12 bytes before it, 7999 behind the first block
  host_.faults().FailNthMethod("Write", 2, 5);
  ExpectSuccess(Compose());
  EXPECT_EQ(Written().size(), 8000U);
}

TEST_F(ComposeStream, KeepsTheStreamsTextWhenAWriteFailsInTheMiddle) {
  data_.Top(0x00100010, 1, "PN", std::string(9000, 'x'));
  host_.faults().FailNthMethod("Write", 1, 5, true);
  ExpectFails(Compose(), "Callin error writing bytes: 5", "");
}

TEST_F(ComposeStream, WritesTheLastBlockAlsoBehindAFailure) {
  data_.Top(0x00100010, 1, "PN", std::string(9000, 'x'));
  data_.Top(0x0028ABCE, 2, "", "x");
  ExpectFailure(Compose(), u"ComposeStream: Unrecognized tag: 0028ABCE -  composing stream");
  EXPECT_EQ(Written().size(), 9008U);
}

}  // namespace
}  // namespace emulator
