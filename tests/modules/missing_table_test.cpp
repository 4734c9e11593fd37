#include <gtest/gtest.h>

#include <string>

#include "emulator/library.h"
#include "emulator/list.h"
#include "modules/VessaDCM/call_out_table.h"

namespace vessa {
namespace {

std::u16string MessageOf(const char* function, const emulator::ListBuilder& arguments) {
  for (const CallOutRow* row = GetZFTable(nullptr, nullptr); row->name != nullptr; ++row) {
    if (std::string(row->name) != function) continue;
    HostString buffer;
    emulator::Fill(buffer, arguments.Bytes());
    EXPECT_EQ(row->entry.buffer(&buffer), 0);
    return emulator::AsWideText(emulator::ReadList(emulator::Contents(buffer)).at(1).value);
  }
  return u"no such function";
}

TEST(MissingCallbackTable, FailsEveryCallinAsTheInterfaceErrorMinusOne) {
  EXPECT_EQ(MessageOf("zfDecomposeStream",
                      emulator::ListBuilder().Integer(1).String("1.2.840.10008.1.2").Integer(2).Integer(0)),
            u"Callin error getting underlying stream position: -1 -  wrapping input stream");
}

TEST(MissingCallbackTable, DoesNotTouchWhatNeedsNoHost) {
  EXPECT_EQ(MessageOf("zfTagInfo", emulator::ListBuilder().Integer(0x00100010)), u"(0010,0010)");
}

TEST(MissingCallbackTable, FailsDeflateAndInflate) {
  const CallOutRow* rows = GetZFTable(nullptr, nullptr);
  EXPECT_EQ(rows[4].entry.three_integers(6, 1, 2), -1);
  EXPECT_EQ(rows[5].entry.three_integers(1, 2, 0), -1);
}

}  // namespace
}  // namespace vessa
