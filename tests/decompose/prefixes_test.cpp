#include <set>

#include "tests/decompose/decomposition.h"

// A small data set with everything in it, cut at every byte.

namespace {

using dicom_bytes::DataSetBytes;
using dicom_bytes::Item;
using dicom_bytes::kItem;
using dicom_bytes::TagAndLength;
using dicom_bytes::UndefinedItem;

constexpr std::uint32_t kImages = 0x00081140;
constexpr std::uint32_t kBeams = 0x300A00B0;
constexpr std::uint32_t kName = 0x00100010;

using Prefixes = Decomposition;

struct Cut {
  std::string bytes;
  std::set<std::size_t> whole;     ///< prefixes that are data sets themselves
  std::set<std::size_t> waits_at;  ///< prefixes that end between the elements of an item of defined length
  std::size_t ends_item_at = 0;    ///< the prefix that ends in front of an element of an undefined item
};

// Sizes are those of the parts, so that the expectations need no parser.
Cut SmallDataSet(const DataSetBytes& form) {
  const std::string element = form.Element(kName, "PN", "ab");
  const std::string pixels = form.Element(dicom_bytes::kPixelData, "OW", "abcdef");
  const std::string two_elements = element + element;
  const std::string inner = form.Sequence(kBeams, Item(two_elements));
  const std::string inner_header = form.Header(kBeams, "SQ", 0) + TagAndLength(kItem, 0);
  const std::string undefined = form.UndefinedSequence(kImages, UndefinedItem(element) + Item(inner));
  const std::string undefined_item = form.Header(kImages, "SQ", 0) + UndefinedItem(element);

  Cut cut;
  cut.bytes = element;
  cut.whole = {0, element.size()};
  cut.bytes += undefined;
  cut.whole.insert(cut.bytes.size());
  cut.ends_item_at = element.size() + form.Header(kImages, "SQ", 0).size() + 8;
  const std::size_t outer_item = element.size() + undefined_item.size() + 8;
  const std::size_t inner_item = outer_item + inner_header.size();
  cut.waits_at = {outer_item, inner_item, inner_item + element.size()};
  // The end of the inner item is the end of the outer one: there a delimitation is missing, no element.
  cut.bytes += pixels;
  cut.whole.insert(cut.bytes.size());
  return cut;
}

class PrefixesOf : public Decomposition, public testing::WithParamInterface<const DataSetBytes*> {};

TEST_P(PrefixesOf, ASmallDataSetFailOrWaitAsPrescribed) {
  const DataSetBytes& form = *GetParam();
  const Cut cut = SmallDataSet(form);
  ASSERT_EQ(Decompose(cut.bytes, form.TransferSyntax()), kNoFailure);
  const Lines all_events = Events();
  for (std::size_t size = 0; size < cut.bytes.size(); ++size) {
    const std::string expected = cut.whole.contains(size)      ? kNoFailure
                                 : cut.waits_at.contains(size) ? kNeverReturns
                                                               : kEndedTooEarly;
    const std::string prefix = cut.bytes.substr(0, size);
    EXPECT_EQ(DecomposePatiently(prefix, form.TransferSyntax()), expected) << size;
    Lines events = Events();
    if (expected != kNeverReturns) {
      EXPECT_EQ(Decompose(prefix, form.TransferSyntax()), expected) << size;
      EXPECT_EQ(Events(), events);
    }
    if (expected == kNoFailure) events.pop_back();    // EndContent
    if (size == cut.ends_item_at) events.pop_back();  // EndItem: kept, the end of the stream ends it
    ASSERT_LE(events.size(), all_events.size());
    EXPECT_TRUE(std::equal(events.begin(), events.end(), all_events.begin())) << size;
    EXPECT_EQ(Consumed(), static_cast<std::int64_t>(size));
  }
}

INSTANTIATE_TEST_SUITE_P(Explicit, PrefixesOf, testing::Values(&kExplicit));
INSTANTIATE_TEST_SUITE_P(Implicit, PrefixesOf, testing::Values(&kImplicit));

TEST_F(Prefixes, OfEncapsulatedPixelDataFailWhereTheyEnd) {
  const std::string bytes = kExplicit.Fragments("OB", Item("") + Item("abcd"));
  for (std::size_t size = 1; size < bytes.size(); ++size) {
    EXPECT_EQ(Decompose(bytes.substr(0, size), dicom_bytes::kJpegBaseline), kEndedTooEarly) << size;
  }
}

}  // namespace
