#include "compose/element_writer.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "compose/value_writer.h"
#include "tests/compose/compose_host.h"
#include "tests/support/dicom_bytes.h"

// The bytes of headers, PS3.5 sections 7.1.2, 7.1.3 and 7.3.

namespace vessa {
namespace {

using dicom_bytes::Hex;

std::string Written(const char* syntax, const std::function<void(ElementWriter&)>& write) {
  emulator::Host host;
  SetHostServices(emulator::Host::Table());
  const auto stream = std::make_shared<emulator::MemoryStream>();
  CVessaBinaryOutputStream output(host.Add(stream));
  ElementWriter writer(output, TargetSyntax(syntax, syntax));
  write(writer);
  output.Flush();
  return stream->Bytes();
}

void WriteText(ElementWriter& writer) {
  writer.WriteTag({0x0010, 0x0020});
  writer.WriteVrAndLength(Vr("LO"), 0x0102);
}

void WriteBytes(ElementWriter& writer) {
  writer.WriteTag({0x7FE0, 0x0010});
  writer.WriteVrAndLength(Vr("OW"), 0x01020304);
}

TEST(ElementWriter, WritesNumbersInTheByteOrderOfTheSyntax) {
  EXPECT_EQ(Written(kExplicitLittle, WriteText), Hex("1000 2000 4C4F 0201"));
  EXPECT_EQ(Written(kExplicitBig, WriteText), Hex("0010 0020 4C4F 0102"));
  EXPECT_EQ(Written(kExplicitLittle, WriteBytes), Hex("E07F 1000 4F57 0000 04030201"));
  EXPECT_EQ(Written(kExplicitBig, WriteBytes), Hex("7FE0 0010 4F57 0000 01020304"));
}

TEST(ElementWriter, WritesDelimitationsInTheByteOrderOfTheSyntax) {
  const auto item = [](ElementWriter& writer) {
    writer.WriteItemStart();
    writer.WriteItemEnd();
    writer.WriteSequenceEnd();
  };
  EXPECT_EQ(Written(kImplicitLittle, item), Hex("FEFF 00E0 FFFFFFFF FEFF 0DE0 00000000 FEFF DDE0 00000000"));
  EXPECT_EQ(Written(kExplicitBig, item), Hex("FFFE E000 FFFFFFFF FFFE E00D 00000000 FFFE E0DD 00000000"));
}

TEST(ValueWriter, AUnitMayLieAcrossTheEndsOfPieces) {
  const auto pieces = [](ElementWriter& writer) {
    ValueWriter value(writer, 2);
    for (std::string piece : {"a", "bcd", "e", "", "f", "g"}) {
      value.Write({reinterpret_cast<std::uint8_t*>(piece.data()), piece.size()});
    }
    value.Finish();
  };
  EXPECT_EQ(Written(kExplicitLittle, pieces), "badcfeg");
}

}  // namespace
}  // namespace vessa
