#include "host/callin_error_text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <set>

namespace vessa {
namespace {

constexpr const char* kUnknown = "Unknown callin error";

TEST(CallinErrorText, NamesInterfaceErrors) {
  EXPECT_EQ(CallinErrorText(-17), "invalid Vessa' instance (invalid shdir) (interface error)");
  EXPECT_EQ(
      CallinErrorText(-10),
      "the return buffer was too small so only part of the requested item was returned (interface error)");
  EXPECT_EQ(CallinErrorText(-6), "failed due to CTRL/C (special case of VessaError) (interface error)");
  EXPECT_EQ(CallinErrorText(-4), "connection was broken (interface error)");
  EXPECT_EQ(CallinErrorText(-1), "failure (code -1) (interface error)");
}

TEST(CallinErrorText, NamesSuccess) { EXPECT_EQ(CallinErrorText(0), "success (code 0)"); }

TEST(CallinErrorText, NamesTheErrorsOfTheHost) {
  EXPECT_EQ(CallinErrorText(1), "max number");
  EXPECT_EQ(CallinErrorText(5), "max string");
  EXPECT_EQ(CallinErrorText(9), "undefined");
  EXPECT_EQ(CallinErrorText(34), "block #");
  EXPECT_EQ(CallinErrorText(48), "ERNOMBX (code 48)");
  EXPECT_EQ(CallinErrorText(50), "ERNOWD  (code 50)");
  EXPECT_EQ(CallinErrorText(52), "<MAGTAPE>");
  EXPECT_EQ(CallinErrorText(54), "ERDOWN (code 54)");
  EXPECT_EQ(CallinErrorText(59), "<WAIT FOR M/xx INIT.. TO COMPLT>");
  EXPECT_EQ(CallinErrorText(103), "<ZOLE>");
  EXPECT_EQ(CallinErrorText(106), "<COLLATION NOT SUPPORTED>");
  EXPECT_EQ(CallinErrorText(120), "<METHOD DOES NOT EXIST>");
  EXPECT_EQ(CallinErrorText(121), "<PROPERTY DOES NOT EXIST>");
  EXPECT_EQ(CallinErrorText(140), "<TOO MANY CLASSES>");
  EXPECT_EQ(CallinErrorText(147), "<NETWORK DATA .... - CLIENT-SERVER MISMATCH>");
  EXPECT_EQ(CallinErrorText(157), "<NETWORK DATA UPDATE FAILED - NETGLOREF>");
  EXPECT_EQ(CallinErrorText(161), "<STORE> - malloc failed");
  EXPECT_EQ(CallinErrorText(169), "<Java Exception>");
  EXPECT_EQ(CallinErrorText(171), "<DDP JOB OVERFLOW>");
  EXPECT_EQ(CallinErrorText(173), "<TRANSACTION LEVEL>");
  EXPECT_EQ(CallinErrorText(179), "<MV WRAPUP>");
  EXPECT_EQ(CallinErrorText(181), "<PROTECT>");
  EXPECT_EQ(CallinErrorText(202), "<TCPWRITE>");
}

TEST(CallinErrorText, HasTheHostsWordsForEveryCode) {
  // FNV-1a, 64 bits, over the host's list of words for the codes -17 to 202, each with a line feed behind it.
  constexpr std::uint64_t kHashOfTheHostsList = 0x78AA738F4B6A04EB;
  std::uint64_t hash = 0xCBF29CE484222325;
  for (Status code = -17; code <= 202; ++code) {
    for (const char letter : CallinErrorText(code) + "\n") {
      hash = (hash ^ static_cast<unsigned char>(letter)) * 0x100000001B3;
    }
  }
  EXPECT_EQ(hash, kHashOfTheHostsList);
}

TEST(CallinErrorText, HasNoWordsForExactlyTheseCodes) {
  std::set<Status> without_words;
  for (Status code = -17; code <= 202; ++code) {
    if (CallinErrorText(code) == kUnknown) without_words.insert(code);
  }
  EXPECT_EQ(without_words, (std::set<Status>{-5, 53, 104, 105, 170, 172, 180}));
}

TEST(CallinErrorText, HasNoWordsOutsideTheTable) {
  for (const Status code :
       {-18, 203, 1000, std::numeric_limits<Status>::min(), std::numeric_limits<Status>::max()}) {
    EXPECT_EQ(CallinErrorText(code), kUnknown);
  }
}

TEST(CallinErrorText, TwoCodesShareTheInvalidOref) {
  EXPECT_EQ(CallinErrorText(119), "<INVALID OREF>");
  EXPECT_EQ(CallinErrorText(163), CallinErrorText(119));
}

TEST(CallinErrorMessage, PutsItsPrefixBeforeTheWords) {
  EXPECT_EQ(CallinErrorMessage(9), "Vessa' callin error: undefined");
  EXPECT_EQ(CallinErrorMessage(53), "Vessa' callin error: Unknown callin error");
}

}  // namespace
}  // namespace vessa
