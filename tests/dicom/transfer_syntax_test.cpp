#include "dicom/transfer_syntax.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vessa {
namespace {

/// "prefix.first" to "prefix.last".
void AppendRange(std::vector<std::string>& uids, const std::string& prefix, int first, int last) {
  for (int number = first; number <= last; ++number) uids.push_back(prefix + std::to_string(number));
}

std::vector<std::string> EncapsulatedUids() {
  std::vector<std::string> uids = {"1.2.840.10008.1.2.1.98", "1.2.840.10008.1.2.5", "1.2.840.10008.1.2.6.1",
                                   "1.2.840.10008.1.2.6.2"};
  AppendRange(uids, "1.2.840.10008.1.2.4.", 50, 66);
  AppendRange(uids, "1.2.840.10008.1.2.4.", 70, 70);
  AppendRange(uids, "1.2.840.10008.1.2.4.", 80, 81);
  AppendRange(uids, "1.2.840.10008.1.2.4.", 90, 95);
  AppendRange(uids, "1.2.840.10008.1.2.4.", 100, 108);
  AppendRange(uids, "1.2.840.10008.1.2.7.", 1, 3);
  return uids;
}

/// One name a bit, so that a failure names the wrong answer.
struct Answers {
  bool encapsulated;
  bool known;
  bool is_explicit;
  bool unsupported;
};

void ExpectAnswers(std::string_view uid, Answers expected) {
  EXPECT_EQ(IsEncapsulatedTransferSyntax(uid), expected.encapsulated) << uid;
  EXPECT_EQ(IsKnownTransferSyntax(uid), expected.known) << uid;
  EXPECT_EQ(IsExplicitVRTransferSyntax(uid), expected.is_explicit) << uid;
  EXPECT_EQ(IsUnsupportedTransferSyntax(uid), expected.unsupported) << uid;
}

constexpr Answers kImplicitNative = {false, true, false, false};
constexpr Answers kExplicitNative = {false, true, true, false};
constexpr Answers kBigEndian = {false, true, true, true};
constexpr Answers kEncapsulated = {true, true, true, false};
constexpr Answers kForeign = {false, false, false, true};

TEST(TransferSyntax, NativeSyntaxesAreSupported) {
  ExpectAnswers("1.2.840.10008.1.2", kImplicitNative);
  ExpectAnswers("1.2.840.10008.1.20", kImplicitNative);
  ExpectAnswers("1.2.840.10008.1.2.1", kExplicitNative);
  ExpectAnswers("1.2.840.10008.1.2.1.99", kExplicitNative);
}

TEST(TransferSyntax, BigEndianIsKnownYetUnsupported) { ExpectAnswers("1.2.840.10008.1.2.2", kBigEndian); }

TEST(TransferSyntax, FortyTwoAreEncapsulated) {
  ASSERT_EQ(EncapsulatedUids().size(), 42U);
  for (const std::string& uid : EncapsulatedUids()) ExpectAnswers(uid, kEncapsulated);
}

TEST(TransferSyntax, NumbersBetweenTheEncapsulatedOnesAreForeign) {
  std::vector<std::string> uids = {"1.2.840.10008.1.2.1.97", "1.2.840.10008.1.2.1.100",
                                   "1.2.840.10008.1.2.3",    "1.2.840.10008.1.2.4",
                                   "1.2.840.10008.1.2.6",    "1.2.840.10008.1.2.7"};
  AppendRange(uids, "1.2.840.10008.1.2.4.", 0, 49);
  AppendRange(uids, "1.2.840.10008.1.2.4.", 67, 69);
  AppendRange(uids, "1.2.840.10008.1.2.4.", 71, 79);
  AppendRange(uids, "1.2.840.10008.1.2.4.", 82, 89);
  AppendRange(uids, "1.2.840.10008.1.2.4.", 96, 99);
  AppendRange(uids, "1.2.840.10008.1.2.4.", 109, 300);
  AppendRange(uids, "1.2.840.10008.1.2.5.", 0, 9);
  AppendRange(uids, "1.2.840.10008.1.2.6.", 3, 9);
  AppendRange(uids, "1.2.840.10008.1.2.7.", 4, 9);
  for (const std::string& uid : uids) ExpectAnswers(uid, kForeign);
}

TEST(TransferSyntax, APaddingByteMakesAUidForeign) {
  std::vector<std::string> uids = EncapsulatedUids();
  uids.insert(uids.end(), {"1.2.840.10008.1.2", "1.2.840.10008.1.20", "1.2.840.10008.1.2.1",
                           "1.2.840.10008.1.2.1.99", "1.2.840.10008.1.2.2"});
  for (const std::string& uid : uids) {
    ExpectAnswers(uid + ' ', kForeign);
    ExpectAnswers(' ' + uid, kForeign);
    ExpectAnswers(uid + '\0', kForeign);
    ExpectAnswers(uid + ".", kForeign);
  }
}

TEST(TransferSyntax, EmptyAndOtherTextsAreForeign) {
  ExpectAnswers("", kForeign);
  ExpectAnswers("1.2.840.10008.1.1", kForeign);
  ExpectAnswers(std::string(32767, '1'), kForeign);
}

}  // namespace
}  // namespace vessa
