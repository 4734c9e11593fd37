#include "tests/decompose/decomposition.h"

// The client object, asked in front of every element.

namespace {

using dicom_bytes::Item;
using dicom_bytes::kUndefined;
using dicom_bytes::TagAndLength;
using dicom_bytes::UndefinedItem;
using testing::ElementsAre;

class ClientStop : public Decomposition {
 protected:
  const std::string name_ = kExplicit.Element(0x00100010, "PN", "ab");
  const std::string id_ = kExplicit.Element(0x00100020, "LO", "cd");
};

TEST_F(ClientStop, IsAskedAboutEveryTagDelimitationsIncluded) {
  const auto client = AskClient([](std::uint32_t) { return false; });
  EXPECT_EQ(Decompose(kExplicit.UndefinedSequence(0x00081140, UndefinedItem(name_) + Item(id_)) + name_),
            kNoFailure);
  EXPECT_THAT(client->Asked(), ElementsAre(0x00081140U, 0x00100010U, 0xFFFEE00DU, 0x00100020U, 0x00100010U));
}

TEST_F(ClientStop, AtTheTopLevelEndsTheDecompositionInFrontOfTheElement) {
  AskClient([](std::uint32_t tag) { return tag == 0x00100020; });
  EXPECT_EQ(Decompose(name_ + id_), kNoFailure);
  EXPECT_EQ(Events(), Script(R"(
    StartElement 00100010 PN 2
      Data 00100010 1 6162
    EndElement 00100010
    EndContent)"));
  EXPECT_EQ(Consumed(), 10);
}

TEST_F(ClientStop, AtTheFirstElementConsumesNothing) {
  AskClient([](std::uint32_t) { return true; });
  EXPECT_EQ(Decompose(name_), kNoFailure);
  EXPECT_EQ(Events(), Script("EndContent"));
  EXPECT_EQ(Consumed(), 0);
}

TEST_F(ClientStop, InsideAnItemFailsAtTheElementThatWasLeft) {
  AskClient([](std::uint32_t tag) { return tag == 0x00100020; });
  for (const std::string& item : {Item(name_ + id_), UndefinedItem(name_ + id_)}) {
    for (const std::string& bytes :
         {kExplicit.Sequence(0x00081140, item), kExplicit.UndefinedSequence(0x00081140, item)}) {
      EXPECT_EQ(Decompose(bytes),
                "DecomposeItem: Expected [Item] or [Sequence Delimitation Item], got: 00100020");
      EXPECT_TRUE(Events().back().starts_with("EndItem 00081140"));
    }
  }
}

// What 1 to 3 bytes behind the last element look like: a tag with whatever stood in the look-ahead before.
TEST_F(ClientStop, IsAskedAboutATagThatTheStreamDoesNotHold) {
  const auto client = AskClient([](std::uint32_t) { return false; });
  EXPECT_EQ(Decompose(std::string("\x08\x00\x18", 3)), kEndedTooEarly);
  EXPECT_THAT(client->Asked(), ElementsAre(0x00080018U));
}

TEST_F(ClientStop, AtATagThatTheStreamDoesNotHoldIsASuccess) {
  AskClient([](std::uint32_t) { return true; });
  EXPECT_EQ(Decompose(std::string("\x08\x00\x18", 3)), kNoFailure);
  EXPECT_EQ(Events(), Script("EndContent"));
  EXPECT_EQ(Consumed(), 0);
}

TEST_F(ClientStop, ThatFailsIsABareStatus) {
  for (const int status : {5, -5}) {
    const auto client = AskClient([](std::uint32_t) { return false; });
    client->FailAt(2, status);
    EXPECT_EQ(Decompose(name_ + id_), StatusText(status));
    EXPECT_EQ(Events().back(), "EndElement 00100010");
    EXPECT_EQ(Consumed(), 10);
    host_.ResetStack();
  }
}

TEST_F(ClientStop, WithoutAClientNobodyIsAsked) {
  const Lines calls = CallsOf([&] { Decompose(name_); });
  for (const std::string& call : calls) EXPECT_EQ(call.find("ShouldStop"), std::string::npos) << call;
}

TEST_F(ClientStop, AnUnknownClientIsABareStatus) {
  client_oref_ = 99;
  EXPECT_EQ(Decompose(name_), StatusText(119));
}

// An element read over the end of the stream inside a defined item spins without asking.
TEST_F(ClientStop, IsNotAskedAtTheEndOfTheStream) {
  const auto client = AskClient([](std::uint32_t) { return false; });
  EXPECT_EQ(DecomposePatiently(kExplicit.Header(0x00081140, "SQ", kUndefined) +
                               TagAndLength(dicom_bytes::kItem, 100)),
            kNeverReturns);
  EXPECT_THAT(client->Asked(), ElementsAre(0x00081140U));
}

}  // namespace
