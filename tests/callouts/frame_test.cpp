#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include "tests/callouts/loaded_library.h"

namespace emulator {
namespace {

class Frame : public LoadedLibrary {};

struct ArgumentCase {
  const char* name;
  int least_count;
  const char16_t* message;
};

constexpr ArgumentCase kArgumentCases[] = {
    {"zfTagInfo", 1, u" VessaDCM::zfTagInfo: tag argument missing"},
    {"zfNameTag", 1, u" VessaDCM::zfNameTag: tag name argument missing"},
    {"zfDecomposeStream", 4,
     u" VessaDCM::zfDecomposeStream: Expected input stream, transfer syntax, content handler oref and client "
     u"oref "
     u"arguments"},
    {"zfParsePropertyReference", 1,
     u"VessaDCM::zfParsePropertyReference: Expected property reference argument -  fetching arguments list "
     u"from CBA"},
    {"zfParsePropertySubscriptReference", 1,
     u"VessaDCM::zfParsePropertySubscriptReference: Expected property subscript reference argument -  "
     u"fetching "
     u"arguments list from CBA"},
    {"zfQueryStream", 3,
     u" VessaDCM::zfQueryStream: Expected input stream, key, transfer syntax and vdoclist arguments"},
    {"zfGetNextSubscript", 3,
     u" VessaDCM::zfGetNextSubscript: Expected input stream, transfer syntax and vdoclist arguments"},
    {"zfComposeStream", 5,
     u" VessaDCM::zfComposeStream: Expected output stream, original transfer syntax, transfer syntax, pixel "
     u"data "
     u"stream arguments"},
    {"zfQueryFileOrDataSet", 4,
     u" VessaDCM::zfQueryStream: Expected input stream, key, transfer syntax and vdoclist arguments"},
};

TEST_F(Frame, NamesTheArgumentsThatAreMissing) {
  for (const ArgumentCase& one : kArgumentCases) {
    ListBuilder arguments;
    for (int count = 0; count < one.least_count; ++count) {
      SCOPED_TRACE(std::string(one.name) + " with " + std::to_string(count) + " arguments");
      ExpectFailure(Call(one.name, arguments), one.message);
      arguments.Integer(0);
    }
  }
}

TEST_F(Frame, MakesNoCallbackWhenArgumentsAreMissing) {
  for (const ArgumentCase& one : kArgumentCases) Call(one.name, ListBuilder());
  EXPECT_EQ(host_.CallbackCount(), 0U);
}

TEST_F(Frame, RefusesAMalformedListInEveryFunction) {
  for (const ArgumentCase& one : kArgumentCases) {
    SCOPED_TRACE(one.name);
    ExpectFailure(Call(one.name, ListBuilder().Raw("\x09\x01"
                                                   "cut")),
                  u"List Format Error -  fetching arguments list from CBA");
  }
}

TEST_F(Frame, NamesTheArgumentThatCannotBeFetched) {
  const std::string nine_bytes = "\x01\x02\x03\x04\x05\x06\x07\x08\x09";
  const int integer = static_cast<int>(ListType::kNonNegativeInteger);
  ExpectFailure(Call("zfTagInfo", ListBuilder().Item(integer, nine_bytes)),
                u"LONGLONG too large -  fetching argument 1");
  ExpectFailure(
      Call("zfDecomposeStream", ListBuilder().Integer(1).String("1.2").Integer(2).Item(integer, nine_bytes)),
      u"LONGLONG too large -  fetching argument 4");
  ExpectFailure(
      Call("zfComposeStream", ListBuilder().Integer(1).String("1.2").Item(3, "x").String("1.2").Integer(0)),
      u"List Format Error -  fetching argument 3");
}

TEST_F(Frame, FetchesArgumentsInOrderAndStopsAtTheFirstFailure) {
  ExpectFailure(Call("zfDecomposeStream", ListBuilder().Integer(1).Item(9, "").Item(9, "").Item(9, "")),
                u"List Format Error -  fetching argument 2");
}

TEST_F(Frame, ForgetsTheErrorOfTheCallBefore) {
  ExpectFailure(Call("zfTagInfo", ListBuilder().Raw("\x09")),
                u"List Format Error -  fetching arguments list from CBA");
  ExpectFailure(Call("zfTagInfo", ListBuilder()), u" VessaDCM::zfTagInfo: tag argument missing");
}

/// A reference whose property list has `bytes` bytes: BeamSequence in 6, each step in 8 or, with a larger item
/// number, in 9.
std::string ReferenceOfListSize(std::size_t bytes) {
  constexpr std::size_t kFirst = 6;
  constexpr std::size_t kStep = 8;
  const std::size_t larger_steps = (bytes - kFirst) % kStep;
  const std::size_t steps = (bytes - kFirst - larger_steps * (kStep + 1)) / kStep;
  std::string reference = "BeamSequence";
  for (std::size_t i = 0; i < steps; ++i) reference += "[1].KVP";
  for (std::size_t i = 0; i < larger_steps; ++i) reference += "[256].KVP";
  return reference;
}

TEST_F(Frame, ReturnsAResultOf32766Bytes) {
  constexpr std::size_t kStatusAndHeader = 2 + 4;
  vessa::HostString buffer;
  Fill(buffer, ListBuilder().String(ReferenceOfListSize(32766 - kStatusAndHeader)).Bytes());
  EXPECT_EQ(TheLibrary().Call("zfParsePropertyReference", buffer), 0);
  EXPECT_EQ(buffer.count, 32766);
  const std::vector<ListValue> items = ReadList(Contents(buffer));
  ASSERT_EQ(items.size(), 2U);
  EXPECT_EQ(AsInteger(items[0].value), 0);
}

TEST_F(Frame, TurnsAResultOf32767BytesIntoAFailure) {
  constexpr std::size_t kStatusAndHeader = 2 + 4;
  ExpectFailure(
      Call("zfParsePropertyReference", ListBuilder().String(ReferenceOfListSize(32767 - kStatusAndHeader))),
      u"Return value exceeded Maximum String Length -  parsing property reference");
}

TEST_F(Frame, TurnsAFailureTextThatIsTooLongIntoOneThatSaysSo) {
  ExpectFailure(Call("zfParsePropertyReference", ListBuilder().String(std::string(20000, 'A'))),
                u"Return value exceeded Maximum String Length -  parsing property reference");
}

TEST_F(Frame, ClearsTheArgumentsOutOfTheBuffer) {
  vessa::HostString buffer;
  std::fill_n(buffer.bytes, vessa::HostString::kCapacity, static_cast<unsigned char>(0xEE));
  const std::string arguments = ListBuilder().Integer(0x00100010).String(std::string(200, 'x')).Bytes();
  std::copy(arguments.begin(), arguments.end(), buffer.bytes);
  buffer.count = static_cast<std::uint16_t>(arguments.size());
  TheLibrary().Call("zfNameTag", buffer);
  for (std::size_t i = buffer.count; i < arguments.size(); ++i) EXPECT_EQ(buffer.bytes[i], 0) << i;
  EXPECT_EQ(buffer.bytes[arguments.size()], 0xEE);
}

/// A buffer whose count says more than it holds, and behind it a guard as long as any count reaches.
class OvercountedBuffer {
 public:
  OvercountedBuffer(std::uint16_t count, unsigned char filling) {
    std::memset(&memory_, kGuard, sizeof memory_);  // the byte of padding behind the array, too
    std::memset(memory_.buffer.bytes, filling, vessa::HostString::kCapacity);
    memory_.buffer.count = count;
  }

  vessa::HostString& Buffer() { return memory_.buffer; }

  bool HasAnUntouchedGuard() const {
    const auto* const all = reinterpret_cast<const unsigned char*>(&memory_);
    return std::all_of(all + offsetof(vessa::HostString, bytes) + vessa::HostString::kCapacity,
                       all + sizeof memory_, [](unsigned char byte) { return byte == kGuard; });
  }

 private:
  static constexpr unsigned char kGuard = 0xEE;

  struct {
    vessa::HostString buffer;
    unsigned char guard[65536];
  } memory_;
};

constexpr std::uint16_t kCountsAboveTheCapacity[] = {32768, 65535};

TEST_F(Frame, TakesACountAboveTheCapacityAsTheCapacity) {
  constexpr unsigned char kAbsentItem = 1;
  for (const char* const function : {"zfTagInfo", "zfNameTag"}) {
    for (const std::uint16_t count : kCountsAboveTheCapacity) {
      SCOPED_TRACE(std::string(function) + " with a count of " + std::to_string(count));
      OvercountedBuffer one(count, kAbsentItem);
      EXPECT_EQ(TheLibrary().Call(function, one.Buffer()), 0);
      EXPECT_EQ(AsInteger(ReadList(Contents(one.Buffer()))[0].value), 0);
      EXPECT_TRUE(one.HasAnUntouchedGuard());
    }
  }
}

TEST_F(Frame, TakesACountAboveTheCapacityAsTheCapacityWithoutAListAsWell) {
  for (const std::uint16_t count : kCountsAboveTheCapacity) {
    for (const std::int32_t unit_size : {1, 2, 4, 8}) {
      OvercountedBuffer units(count, 0);
      units.Buffer().bytes[0] = 'x';
      EXPECT_EQ(TheLibrary().Call("zfSwitchByteOrdering", units.Buffer(), unit_size), 0);
      EXPECT_EQ(units.Buffer().bytes[unit_size - 1], 'x') << unit_size;
      EXPECT_EQ(units.Buffer().count, count) << unit_size;
      EXPECT_TRUE(units.HasAnUntouchedGuard()) << unit_size;
    }
    OvercountedBuffer digits(count, '0');
    digits.Buffer().bytes[vessa::HostString::kCapacity - 1] = 'F';
    EXPECT_EQ(TheLibrary().Call("zfBigHexToDecimal", digits.Buffer()), 0);
    EXPECT_EQ(Contents(digits.Buffer()), "15");
    EXPECT_TRUE(digits.HasAnUntouchedGuard());
  }
}

TEST_F(Frame, AnswersEveryPrefixOfAnArgumentListWithoutHarm) {
  const std::string whole = ListBuilder()
                                .Integer(7)
                                .String("1.2.840.10008.1.2")
                                .Decimal(15, -1)
                                .Double(2.5)
                                .WideString(u"x")
                                .Bytes();
  for (const ArgumentCase& one : kArgumentCases) {
    for (std::size_t length = 0; length < whole.size(); ++length) {
      EXPECT_EQ(Call(one.name, ListBuilder().Raw(whole.substr(0, length))).returned, 0) << one.name << length;
    }
  }
}

}  // namespace
}  // namespace emulator
