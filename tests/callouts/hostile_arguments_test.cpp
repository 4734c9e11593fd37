#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "emulator/platform/shared_object.h"
#include "tests/callouts/decomposing.h"
#include "tests/support/paths.h"
#include "tests/support/small_thread.h"

// Argument lists that are malformed, values that fit nowhere, calls at the wrong time.

namespace emulator {
namespace {

using dicom_bytes::kExplicitLittleEndian;
using testing::AnyOf;

constexpr const char16_t* kBadList = u"List Format Error -  fetching arguments list from CBA";
constexpr const char16_t* kBadFirst = u"List Format Error -  fetching argument 1";

std::string Zeros(std::size_t count) { return std::string(count, '\0'); }

class HostileArguments : public LoadedLibrary {
 protected:
  /// What zfTagInfo says of a tag given in any form.
  static std::vector<std::u16string> TagInfo(const ListBuilder& tag) {
    const ListResult result = Call("zfTagInfo", tag);
    ExpectSuccess(result);
    std::vector<std::u16string> texts;
    for (const ListValue& value : result.values) texts.push_back(AsWideText(value.value));
    return texts;
  }
};

// --- Items

TEST_F(HostileArguments, WithAnItemCutAtTheEndAreNoList) {
  for (const std::string& bytes : {Zeros(1), Zeros(2), Zeros(3), Zeros(6), std::string("\x01\x02"),  //
                                   std::string("\x05\x01"
                                               "ab"),
                                   Zeros(1) + "\x04" + Zeros(1) +
                                       "\x01"
                                       "ab",
                                   Zeros(3) + "\x04" + Zeros(3) +
                                       "\x01"
                                       "ab"}) {
    ExpectFailure(Call("zfTagInfo", ListBuilder().Raw(bytes)), kBadList);
  }
}

TEST_F(HostileArguments, WithALongItemWithoutATypeAreRefusedWhereItIsFetched) {
  ExpectFailure(Call("zfTagInfo", ListBuilder().Raw(Zeros(7))), kBadFirst);
  ExpectFailure(Call("zfTagInfo", ListBuilder().Raw(Zeros(7) + "\x02\x04")), kBadFirst);
  // At the very end of a full buffer, where the type would stand behind the last byte.
  constexpr std::size_t kMediumHeader = 4;
  constexpr std::size_t kAbsentItem = 1;
  constexpr std::size_t kLongItem = 7;
  ListBuilder full;
  full.Integer(1);
  const std::size_t behind = kAbsentItem + kLongItem;
  full.String(std::string(vessa::HostString::kCapacity - full.Bytes().size() - kMediumHeader - behind, '1'));
  full.Absent().Raw(Zeros(kLongItem));
  ASSERT_EQ(full.Bytes().size(), vessa::HostString::kCapacity);
  ExpectFailure(Call("zfDecomposeStream", full), u"List Format Error -  fetching argument 4");
}

TEST_F(HostileArguments, WithLengthsOfNearlyFourGibibytesAreNoList) {
  for (const char* const length :
       {"\xFF\xFF\xFF\xFF", "\xF8\xFF\xFF\xFF", "\xF9\xFF\xFF\xFF", "\xFE\xFF\xFF\x7F"}) {
    ExpectFailure(Call("zfTagInfo", ListBuilder().Raw(Zeros(3) + length + "\x01xx")), kBadList);
    ExpectFailure(Call("zfTagInfo", ListBuilder().Integer(1).Raw(Zeros(3) + length + "\x01xx")), kBadList);
  }
}

TEST_F(HostileArguments, WithDataThatCannotBeOfTheirTypeAreRefused) {
  const int wide = static_cast<int>(ListType::kWideString);
  for (const std::size_t size : {std::size_t{0}, std::size_t{7}, std::size_t{9}, std::size_t{300}}) {
    const ListBuilder number = ListBuilder().Item(static_cast<int>(ListType::kDouble), Zeros(size));
    ExpectFailure(Call("zfTagInfo", number), kBadFirst);
    ExpectFailure(Call("zfNameTag", number), kBadFirst);
  }
  for (const ListType decimal : {ListType::kNonNegativeDecimal, ListType::kNegativeDecimal}) {
    const ListBuilder number = ListBuilder().Item(static_cast<int>(decimal), "");
    ExpectFailure(Call("zfTagInfo", number), kBadFirst);
    ExpectFailure(Call("zfNameTag", number), kBadFirst);
  }
  for (const char* const function : {"zfTagInfo", "zfNameTag", "zfParsePropertyReference"}) {
    ExpectFailure(Call(function, ListBuilder().Item(wide, "abc")), kBadFirst);
  }
}

TEST_F(HostileArguments, WithANumberBeyondAllIntegersGiveTheSmallest) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const std::vector<std::u16string> of_zero = TagInfo(ListBuilder().Integer(0));
  for (const double number : {std::nan(""), kInfinity, -kInfinity, 1e300, -1e300}) {
    EXPECT_EQ(TagInfo(ListBuilder().Double(number)), of_zero)
        << number;  // the low 32 bits of 0x8000000000000000
  }
  EXPECT_EQ(TagInfo(ListBuilder().Double(0x00100010))[2], u"PatientName");
}

TEST_F(HostileArguments, WhosePropertyListIsAnotherItemHaveItsDataWalkedAsAList) {
  const auto ask = [this](const char* function, const ListBuilder& list) {
    return Call(function, ListBuilder()
                              .Integer(host_.Add(std::make_shared<MemoryStream>()))
                              .String(kExplicitLittleEndian)
                              .Raw(list.Bytes()));
  };
  const char16_t* const no_list = u"List Format Error -  decomposing stream";
  for (const char* const function : {"zfQueryStream", "zfGetNextSubscript"}) {
    ExpectFailure(ask(function, ListBuilder().Integer(7)), no_list);
    ExpectFailure(ask(function, ListBuilder().Integer(0x00100010)), no_list);
    ExpectFailure(ask(function, ListBuilder().Double(2.5)), no_list);
    ExpectFailure(ask(function, ListBuilder().String("PatientName")), no_list);
  }
  for (const ListBuilder& nothing :
       {ListBuilder().Absent(), ListBuilder().Integer(0), ListBuilder().String("")}) {
    ExpectFailure(ask("zfQueryStream", nothing), u"Property list has an even length -  decomposing stream");
    ExpectFailure(ask("zfGetNextSubscript", nothing), u"Property list is empty -  decomposing stream");
  }
}

// --- Calls

TEST_F(HostileArguments, ACallFromInsideAnEventMayLeaveItsStepToTheOuterFailure) {
  const auto log = std::make_shared<EventLog>();
  log->OnEvent(
      [](std::string_view, std::span<const Value>) { Call("zfTagInfo", ListBuilder().Raw("\x09")); });
  const ListResult result =
      Call("zfDecomposeStream", ListBuilder()
                                    .Integer(host_.Add(std::make_shared<MemoryStream>("cut")))
                                    .String(kExplicitLittleEndian)
                                    .Integer(host_.Add(log))
                                    .Integer(0));
  EXPECT_EQ(result.status, 1);
  // The outer failure has a step and no text of its own.
  EXPECT_EQ(result.message, kBadList);
  EXPECT_EQ(log->Lines(), Lines{"StartContent 1.2.840.10008.1.2.1"});
}

TEST_F(HostileArguments, ATextOfItsOwnIsTheOuterFailuresWhateverWasCalledInside) {
  const auto log = std::make_shared<EventLog>();
  log->OnEvent([](std::string_view, std::span<const Value>) { Call("zfTagInfo", ListBuilder().Integer(1)); });
  const std::uint32_t stream =
      host_.Add(std::make_shared<MemoryStream>(kExplicit.Element(0x00100010, "PN", "odd")));
  const ListResult result =
      Call("zfDecomposeStream",
           ListBuilder().Integer(stream).String(kExplicitLittleEndian).Integer(host_.Add(log)).Integer(0));
  const std::u16string text = u"DecomposeElement reading VR and data length: Datalength is an odd number - ";
  EXPECT_THAT(result.message, AnyOf(text + u" decomposing stream", text + u" looking up tag"));
}

/// While it lives, the library has no callbacks, as after a host that handed it none.
class NoCallbackTable {
 public:
  NoCallbackTable() { Give(nullptr); }
  ~NoCallbackTable() { Give(Host::Table()); }
  NoCallbackTable(const NoCallbackTable&) = delete;
  NoCallbackTable& operator=(const NoCallbackTable&) = delete;

 private:
  void Give(const vessa::HostServices* table) {
    const auto give = reinterpret_cast<vessa::GetZFTableFunction*>(object_.Find("GetZFTable"));
    EXPECT_EQ(give(nullptr, table), TheLibrary().Table());
  }

  SharedObject object_{kLibraryPath};  // the one that is loaded already
};

TEST_F(HostileArguments, WithoutACallbackTableEveryCallbackHasFailed) {
  TheLibrary();
  const NoCallbackTable no_callbacks;
  ExpectFailure(
      Call("zfDecomposeStream", ListBuilder().Integer(1).String(kExplicitLittleEndian).Integer(2).Integer(3)),
      u"Callin error getting underlying stream position: -1 -  wrapping input stream");
  EXPECT_EQ(
      Call("zfComposeStream", ListBuilder().Integer(1).String("ID").String("1.2").String("1.2").Integer(0))
          .status,
      1);
  EXPECT_EQ(TheLibrary().Call("zfDeflateStream", 6, 1, 2), -1);
  EXPECT_EQ(TheLibrary().Call("zfInflateStream", 1, 2, 0), -1);
  EXPECT_EQ(TagInfo(ListBuilder().Integer(0x00100010))[2], u"PatientName");  // needs none
}

TEST_F(HostileArguments, FromTwoThreadsAreServedOneAfterTheOther) {
  // This host's doing: the library keeps its error and step text for the whole process, without locks.
  const auto wrong_answers = [](const char* function, const std::u16string& message) {
    int wrong = 0;
    for (int i = 0; i < 2000; ++i) wrong += Call(function, ListBuilder()).message == message ? 0 : 1;
    return wrong;
  };
  int wrong_there = -1;
  int wrong_here = -1;
  {
    const SmallThread other(
        [&] { wrong_there = wrong_answers("zfTagInfo", u" VessaDCM::zfTagInfo: tag argument missing"); });
    wrong_here = wrong_answers("zfNameTag", u" VessaDCM::zfNameTag: tag name argument missing");
  }
  EXPECT_EQ(wrong_there, 0);
  EXPECT_EQ(wrong_here, 0);
}

/// Waits for it, at most that long.
void Await(const std::atomic<bool>& happened, std::chrono::milliseconds longest) {
  const auto end = std::chrono::steady_clock::now() + longest;
  while (!happened && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

/// Where among the callbacks these objects come first and last.
struct Span {
  std::size_t first;
  std::size_t last;
};

Span SpanOf(const Lines& callbacks, std::uint32_t first_oref, std::uint32_t last_oref) {
  Span span{callbacks.size(), 0};
  for (std::size_t at = 0; at < callbacks.size(); ++at) {
    for (std::uint32_t oref = first_oref; oref <= last_oref; ++oref) {
      const std::string object = " " + std::to_string(oref) + " ";
      if (!callbacks[at].starts_with("PushMethod" + object) &&
          !callbacks[at].starts_with("PushProperty" + object))
        continue;
      span = {std::min(span.first, at), at};
    }
  }
  return span;
}

TEST_F(HostileArguments, FromAnotherThreadWaitUntilACallThatIsInsideAnEventHasEnded) {
  constexpr std::chrono::seconds kLong{10};
  constexpr std::chrono::milliseconds kTimeToOvertake{300};
  std::atomic<bool> is_inside{false};
  std::atomic<bool> other_calls{false};
  std::atomic<bool> other_has_returned{false};
  const auto decompose = [](std::uint32_t stream) {  // its handler is the object behind it
    return Call("zfDecomposeStream",
                ListBuilder().Integer(stream).String(kExplicitLittleEndian).Integer(stream + 1).Integer(0));
  };
  const auto add_pair = [this](std::shared_ptr<EventLog> log) {
    const std::string name = kExplicit.Element(0x00100010, "PN", "ab");
    const std::uint32_t stream = host_.Add(std::make_shared<MemoryStream>(name));
    host_.Add(std::move(log));
    return stream;
  };
  const auto log = std::make_shared<EventLog>();
  log->OnEvent([&](std::string_view event, std::span<const Value>) {
    if (event != "StartElement") return;
    is_inside = true;
    Await(other_calls, kLong);
    Await(other_has_returned, kTimeToOvertake);
  });
  const std::uint32_t here = add_pair(log);
  const std::uint32_t there = add_pair(std::make_shared<EventLog>());
  host_.Record(true);
  ListResult result_there;
  {
    const SmallThread other([&] {
      Await(is_inside, kLong);
      other_calls = true;
      result_there = decompose(there);
      other_has_returned = true;
    });
    ExpectSuccess(decompose(here));
  }
  ExpectSuccess(result_there);
  EXPECT_LT(SpanOf(host_.Calls(), here, here + 1).last, SpanOf(host_.Calls(), there, there + 1).first);
}

}  // namespace
}  // namespace emulator
