#include "emulator/store/storing_sink.h"

#include <gmock/gmock.h>

#include "emulator/host_error.h"
#include "emulator/store/memory_store.h"
#include "emulator/store/store_error.h"
#include "emulator/tag_text.h"
#include "emulator/transfer_syntax.h"
#include "tests/store/node_list.h"

namespace emulator {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kJpeg = "1.2.840.10008.1.2.4.50";
constexpr std::uint32_t kPatientName = 0x00100010;
constexpr std::uint32_t kSequence = 0x00081140;
constexpr std::uint32_t kSmallestValue = 0x00280106;

/// Events put in by hand.
class StoringSinkTest : public testing::Test {
 protected:
  void Element(std::uint32_t tag, std::string_view vr, std::string_view value) {
    sink_.StartElement(tag, vr, static_cast<std::uint32_t>(value.size()));
    sink_.Data(tag, 1, value);
    sink_.EndElement(tag);
  }
  void Fragment(std::uint32_t tag, std::string_view bytes) {
    sink_.StartItem(tag, static_cast<std::uint32_t>(bytes.size()));
    sink_.Data(tag == kItem ? kPixelData : tag, 1, bytes);
    sink_.EndItem(tag, static_cast<std::uint32_t>(bytes.size()));
  }

  std::vector<std::string> Data() { return NodeList(*transaction_->Nodes(), "KevDICOM.Data"); }
  std::vector<std::string> Meta() { return NodeList(*transaction_->Nodes(), "KevDICOM.Meta"); }
  std::string Pixels() {
    const auto name = transaction_->Nodes()->Get("KevDICOM.Meta", {std::string("A"), std::string("pixels")});
    const auto stream = transaction_->OpenPixels(AsBytes(name.value()));
    return AsBytes(stream->Call("Read", std::array<Value, 1>{std::int64_t{1000}}));
  }

  MemoryStore store_;
  std::unique_ptr<StoreTransaction> transaction_ = store_.Begin(Access::kWrite);
  StoringSink sink_{*transaction_, "A"};
};

TEST_F(StoringSinkTest, StoresElementsOfTheDataSet) {
  sink_.StartContent(kExplicitLittleEndian);
  Element(kPatientName, "PN", "Doe^John");
  Element(0x00100020, "LO", "");
  sink_.EndContent();
  EXPECT_THAT(Data(), ElementsAre("A,0,c,0,1048592=1", "A,0,c,0,1048608=2", "A,1,d=Doe^John", "A,1,v=PN",
                                  "A,2,d=", "A,2,v=LO"));
  EXPECT_THAT(Meta(), ElementsAre("A,syntax=1.2.840.10008.1.2.1"));
}

TEST_F(StoringSinkTest, StoresAValueInChunks) {
  sink_.StartContent(kExplicitLittleEndian);
  sink_.StartElement(0x00420011, "OB", 6);
  sink_.Data(0x00420011, 1, std::string_view("\0a", 2));
  sink_.Data(0x00420011, 2, "bc");
  sink_.Data(0x00420011, 3, "de");
  sink_.EndElement(0x00420011);
  sink_.EndContent();
  EXPECT_THAT(Data(),
              ElementsAre("A,0,c,0,4325393=1", "A,1,d=\\x00a", "A,1,d,1=bc", "A,1,d,2=de", "A,1,v=OB"));
}

TEST_F(StoringSinkTest, StoresItemsOfSequencesInSequences) {
  sink_.StartContent(kExplicitLittleEndian);
  sink_.StartElement(kSequence, "SQ", kUndefinedLength);
  sink_.StartSequence();
  sink_.StartItem(kSequence, 20);
  sink_.StartElement(kSequence, "SQ", 8);
  sink_.StartSequence();
  sink_.StartItem(kSequence, 0);
  sink_.EndItem(kSequence, 0);
  sink_.EndSequence();
  sink_.EndElement(kSequence);
  sink_.EndItem(kSequence, 20);
  sink_.StartItem(kSequence, kUndefinedLength);
  Element(kPatientName, "PN", "X ");
  sink_.EndItem(kSequence, kUndefinedLength);
  sink_.EndSequence();
  sink_.EndElement(kSequence);
  sink_.EndContent();
  EXPECT_THAT(Data(),
              ElementsAre("A,0,c,0,528704=1", "A,1,c,1=", "A,1,c,1,528704=2", "A,1,c,2=", "A,1,c,2,1048592=3",
                          "A,1,l=1", "A,1,v=SQ", "A,2,c,1=", "A,2,v=SQ", "A,3,d=X ", "A,3,v=PN"));
}

TEST_F(StoringSinkTest, StoresAnEmptySequenceAsItsVrAlone) {
  sink_.StartContent(kExplicitLittleEndian);
  sink_.StartElement(kSequence, "SQ", 0);
  sink_.EndElement(kSequence);
  sink_.EndContent();
  EXPECT_THAT(Data(), ElementsAre("A,0,c,0,528704=1", "A,1,v=SQ"));
}

TEST_F(StoringSinkTest, WritesNativePixelDataToAStream) {
  sink_.StartContent(kExplicitLittleEndian);
  sink_.StartElement(kPixelData, "OW", 4);
  sink_.Data(kPixelData, 1, "ab");
  sink_.Data(kPixelData, 2, "cd");
  sink_.EndElement(kPixelData);
  sink_.EndContent();
  EXPECT_THAT(Data(), ElementsAre("A,0,c,0,2145386512=1", "A,1,v=OW"));
  EXPECT_THAT(Meta(), ElementsAre("A,pixels=1", "A,syntax=1.2.840.10008.1.2.1"));
  EXPECT_EQ(Pixels(), "abcd");
}

TEST_F(StoringSinkTest, FramesFragments) {
  sink_.StartContent(kJpeg);
  sink_.StartElement(kPixelData, "OB", kUndefinedLength);
  Fragment(kItem, "");
  Fragment(kItem, "abcd");
  Fragment(kSequenceDelimitation, "");
  sink_.EndElement(kPixelData);
  sink_.EndContent();
  EXPECT_THAT(Data(), ElementsAre("A,0,c,0,2145386512=1", "A,1,l=1", "A,1,v=OB"));
  EXPECT_THAT(Meta(), ElementsAre("A,framed=1", "A,pixels=1", "A,syntax=1.2.840.10008.1.2.4.50"));
  const std::string framed(
      "\xFE\xFF\x00\xE0\x00\x00\x00\x00\xFE\xFF\x00\xE0\x04\x00\x00\x00"
      "abcd\xFE\xFF\xDD\xE0\x00\x00\x00\x00",
      28);
  EXPECT_EQ(Pixels(), framed);
}

TEST_F(StoringSinkTest, DelimitsFragmentsWhoseEndIsNotTold) {
  sink_.StartContent(kJpeg);
  sink_.StartElement(kPixelData, "OB", kUndefinedLength);
  Fragment(kItem, "");
  sink_.EndElement(kPixelData);
  sink_.EndContent();
  EXPECT_EQ(Pixels(), std::string("\xFE\xFF\x00\xE0\x00\x00\x00\x00\xFE\xFF\xDD\xE0\x00\x00\x00\x00", 16));
}

TEST_F(StoringSinkTest, KeepsNestedPixelDataWithTheOtherValues) {
  sink_.StartContent(kJpeg);
  sink_.StartElement(kSequence, "SQ", kUndefinedLength);
  sink_.StartSequence();
  sink_.StartItem(kSequence, kUndefinedLength);
  sink_.StartElement(kPixelData, "OB", kUndefinedLength);
  Fragment(kItem, "ab");
  Fragment(kSequenceDelimitation, "");
  sink_.EndElement(kPixelData);
  sink_.EndItem(kSequence, kUndefinedLength);
  sink_.EndSequence();
  sink_.EndElement(kSequence);
  sink_.EndContent();
  EXPECT_THAT(Data(), ElementsAre("A,0,c,0,528704=1", "A,1,c,1=", "A,1,c,1,2145386512=2", "A,1,l=1",
                                  "A,1,v=SQ", "A,2,d=\\xFE\\xFF\\x00\\xE0\\x02\\x00\\x00\\x00", "A,2,d,1=ab",
                                  "A,2,d,2=\\xFE\\xFF\\xDD\\xE0\\x00\\x00\\x00\\x00", "A,2,l=1", "A,2,v=OB"));
  EXPECT_THAT(Meta(), ElementsAre("A,nested=1", "A,syntax=1.2.840.10008.1.2.4.50"));
}

TEST_F(StoringSinkTest, KeepsGroupTwoApart) {
  sink_.StartContent(kExplicitLittleEndian);
  Element(0x00020010, "UI", std::string_view("1.2.840.10008.1.2\0", 18));
  sink_.EndContent();
  sink_.StartContent(kImplicitLittleEndian);
  Element(kPatientName, "PN", "X ");
  sink_.EndContent();
  EXPECT_THAT(Data(), ElementsAre("A,0,c,0,1048592=1", "A,1,d=X ", "A,1,v=PN"));
  EXPECT_THAT(Meta(), ElementsAre("A,m,131088,d=1.2.840.10008.1.2\\x00", "A,m,131088,v=UI",
                                  "A,syntax=1.2.840.10008.1.2"));
}

TEST_F(StoringSinkTest, DecidesPlaceholdersAtTheEndOfTheDataSet) {
  sink_.StartContent(kImplicitLittleEndian);
  Element(0x00189810, "XS", std::string_view("\x01\x00", 2));  // before what decides about it
  sink_.StartElement(kSequence, "SQ", kUndefinedLength);
  sink_.StartSequence();
  sink_.StartItem(kSequence, kUndefinedLength);
  Element(kSmallestValue, "XS", std::string_view("\x01\x00", 2));  // inherits
  sink_.EndItem(kSequence, kUndefinedLength);
  sink_.StartItem(kSequence, kUndefinedLength);
  Element(kSmallestValue, "XS", std::string_view("\x01\x00", 2));
  Element(kPixelRepresentation, "US", std::string_view("\x00\x00", 2));  // says otherwise
  sink_.EndItem(kSequence, kUndefinedLength);
  sink_.EndSequence();
  sink_.EndElement(kSequence);
  Element(kBitsAllocated, "US", std::string_view("\x08\x00", 2));
  Element(kPixelRepresentation, "US", std::string_view("\x01\x00", 2));
  sink_.StartElement(kPixelData, "OX", 0);
  sink_.Data(kPixelData, 1, "");
  sink_.EndElement(kPixelData);
  sink_.EndContent();
  const auto vr = [this](std::int64_t node) {
    return AsBytes(
        transaction_->Nodes()->Get("KevDICOM.Data", {std::string("A"), node, std::string("v")}).value());
  };
  EXPECT_EQ(vr(1), "SS");
  EXPECT_EQ(vr(3), "SS");
  EXPECT_EQ(vr(4), "US");
  EXPECT_EQ(vr(8), "OB");
}

TEST_F(StoringSinkTest, LeavesVrsOfAnExplicitSyntaxAlone) {
  sink_.StartContent(kExplicitLittleEndian);
  Element(0x00091010, "SS", std::string_view("\x01\x00", 2));
  Element(0x00091011, "ZZ", "ab");
  Element(0x00091012, "", "ab");  // bytes that are no text
  sink_.EndContent();
  EXPECT_THAT(Data(), ElementsAre("A,0,c,0,593936=1", "A,0,c,0,593937=2", "A,0,c,0,593938=3",
                                  "A,1,d=\\x01\\x00", "A,1,v=SS", "A,2,d=ab", "A,2,v=ZZ", "A,3,d=ab"));
}

TEST_F(StoringSinkTest, LeavesGroupLengthsOut) {
  sink_.StartContent(kExplicitLittleEndian);
  Element(0x00080000, "UL", std::string_view("\x01\x00\x00\x00", 4));
  sink_.EndContent();
  EXPECT_THAT(Data(), IsEmpty());
}

TEST_F(StoringSinkTest, StoresElementsThatComeInAnyOrder) {
  sink_.StartContent(kExplicitLittleEndian);
  Element(kPatientName, "PN", "X ");
  Element(0x00080020, "DA", "");
  sink_.EndContent();
  EXPECT_THAT(Data(), ElementsAre("A,0,c,0,524320=2", "A,0,c,0,1048592=1", "A,1,d=X ", "A,1,v=PN",
                                  "A,2,d=", "A,2,v=DA"));
}

TEST_F(StoringSinkTest, RefusesASecondElementWithTheSameTag) {
  sink_.StartContent(kExplicitLittleEndian);
  Element(kPatientName, "PN", "X ");
  Element(0x00100020, "LO", "Y ");
  EXPECT_THROW(sink_.StartElement(kPatientName, "PN", 2), StoreError);
}

TEST_F(StoringSinkTest, TakesTheSameTagInAnotherItem) {
  sink_.StartContent(kExplicitLittleEndian);
  sink_.StartElement(kSequence, "SQ", kUndefinedLength);
  for (int item = 0; item < 2; ++item) {
    sink_.StartItem(kSequence, kUndefinedLength);
    Element(kPatientName, "PN", "X ");
    sink_.EndItem(kSequence, kUndefinedLength);
  }
  sink_.EndElement(kSequence);
  EXPECT_EQ(sink_.Elements(), 3);
}

TEST(StoringSinkName, MustBeThereAndNotTooLong) {
  MemoryStore store;
  const auto transaction = store.Begin(Access::kWrite);
  EXPECT_THROW(StoringSink(*transaction, ""), StoreError);
  EXPECT_THROW(StoringSink(*transaction, std::string(256, '1')), StoreError);
  EXPECT_NO_THROW(StoringSink(*transaction, std::string(255, '1')));
}

}  // namespace
}  // namespace emulator
