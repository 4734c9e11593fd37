#include "tests/callouts/decomposing.h"

// Where more than one thing is wrong, the first that is looked at is the one that is told.

namespace emulator {
namespace {

using dicom_bytes::Hex;
using OrderOfRefusals = Decomposing;

TEST_F(OrderOfRefusals, TheTransferSyntaxComesBeforeThePropertyList) {
  const std::string even_list = ListBuilder().Integer(0x00100010).Integer(1).Bytes();
  const auto ask = [&](const char* syntax) {
    return Call("zfQueryStream",
                ListBuilder().Integer(Make<MemoryStream>("").second).String(syntax).String(even_list));
  };
  ExpectFailure(ask("1.2.3"),
                u"DecomposeStream: Expected a supported transfer syntax, got: 1.2.3 -  decomposing stream");
  ExpectFailure(ask(dicom_bytes::kExplicitLittleEndian),
                u"Property list has an even length -  decomposing stream");
}

TEST_F(OrderOfRefusals, TheLengthOfAnElementComesBeforeWhatItsTagIs) {
  for (const char* tag : {"FE FF 00 E0", "FE FF 0D E0", "FE FF DD E0"}) {  // item, and the two delimitations
    SCOPED_TRACE(tag);
    ExpectFailure(
        Decompose(Hex(tag) + Hex("50 4E 03 00  61 62 63")),
        u"DecomposeElement reading VR and data length: Datalength is an odd number -  decomposing stream");
    ExpectFailure(
        Decompose(Hex(tag) + Hex("55 54 00 00 FF FF FF FF")),
        u"DecomposeElement reading VR and data length: Element specifies undefined length but VR 'UT' does "
        u"not allow it -  decomposing stream");
    EXPECT_TRUE(Events().empty());
  }
}

TEST_F(OrderOfRefusals, TheTagOfAFragmentComesBeforeItsLength) {
  const std::string pixels = Hex("E0 7F 10 00  4F 42 00 00  FF FF FF FF");
  ExpectFailure(
      Decompose(pixels + Hex("10 00 10 00  FF FF FF FF"), "1.2.840.10008.1.2.4.50"),
      u"DecomposeData_UndefLength: Expected [Item] or [Sequence Delimitation Item], got: 7FE00010 -  "
      u"decomposing stream");
}

}  // namespace
}  // namespace emulator
