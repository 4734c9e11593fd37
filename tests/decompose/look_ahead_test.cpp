#include "tests/decompose/decomposition.h"

// Where a look-ahead ends, no event may show.

namespace {

using dicom_bytes::DataSetBytes;
using dicom_bytes::Item;
using dicom_bytes::UndefinedItem;

std::string Everything(const DataSetBytes& form) {
  const std::string element = form.Element(0x00100010, "PN", "abcdef");
  const std::string inner = form.Sequence(0x300A00B0, Item(element + element) + UndefinedItem(element));
  return element + form.UndefinedSequence(0x00081140, UndefinedItem(inner) + Item(inner)) +
         form.Element(0x00081150, "UI", "") + form.Element(0x7FE00010, "OW", "0123456789");
}

class LookAhead : public Decomposition, public testing::WithParamInterface<const DataSetBytes*> {
 protected:
  /// From a host that hands out that many bytes at a time.
  Lines EventsInPortions(const std::string& bytes, const char* syntax, std::int64_t portion) {
    auto served = std::make_shared<emulator::MemoryStream>(bytes);
    served->HandOutAtMost(portion);
    log_->Clear();
    vessa::CVessaBinaryInputStream stream(Add(served));
    stream.Open();
    vessa::CContentHandler handler(log_oref_);
    EXPECT_EQ(vessa::StreamDecomposer(stream, handler, client_oref_, false).DecomposeStream(syntax),
              vessa::kSuccess);
    return log_->Lines();
  }
};

TEST_P(LookAhead, EndsAnywhereWithoutAnEventToShowIt) {
  const DataSetBytes& form = *GetParam();
  const std::string bytes = Everything(form);
  ASSERT_EQ(Decompose(bytes, form.TransferSyntax()), kNoFailure);
  const Lines expected = log_->Lines();
  for (std::int64_t portion = 4; portion <= 64; ++portion) {
    EXPECT_EQ(EventsInPortions(bytes, form.TransferSyntax(), portion), expected) << portion;
  }
}

TEST_P(LookAhead, OfItsOwnLengthEndsAnywhereToo) {
  const DataSetBytes& form = *GetParam();
  const std::string bytes = Everything(form);
  ASSERT_EQ(Decompose(bytes, form.TransferSyntax()), kNoFailure);
  const Lines expected = log_->Lines();
  for (std::size_t size = 8000 - bytes.size() - 20; size < 8000; size += 2) {
    const std::string before = form.Element(0x00080005, "UT", SomeBytes(size));
    ASSERT_EQ(Decompose(before + bytes, form.TransferSyntax()), kNoFailure);
    Lines events = log_->Lines();
    events.erase(events.begin() + 1, events.begin() + 4);  // of the element before
    EXPECT_EQ(events, expected) << size;
  }
}

INSTANTIATE_TEST_SUITE_P(Explicit, LookAhead, testing::Values(&kExplicit));
INSTANTIATE_TEST_SUITE_P(Implicit, LookAhead, testing::Values(&kImplicit));

}  // namespace
