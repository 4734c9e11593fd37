#include "emulator/library.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "emulator/event_log.h"
#include "emulator/host.h"
#include "emulator/stream_object.h"
#include "tests/support/paths.h"

namespace emulator {
namespace {

std::string LoadFailure(const std::string& path) {
  try {
    Library::Load(path);
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "";
}

TEST(Library, HandsOutItsTable) {
  const Library library = Library::Load(kLibraryPath);
  ASSERT_NE(library.Table(), nullptr);
  EXPECT_STREQ(library.Table()->name, "zfPLACEHOLDER");
  ASSERT_NE(library.Find("zfTagInfo"), nullptr);
  EXPECT_STREQ(library.Find("zfTagInfo")->argument_types, "Bz");
  EXPECT_EQ(library.Find("zfNothing"), nullptr);
}

TEST(Library, SaysWhyAFileCannotBeLoaded) {
  const std::string message = LoadFailure("no-such-folder/no-such-library");
  EXPECT_TRUE(message.starts_with("cannot load the library no-such-folder/no-such-library: ")) << message;
}

TEST(Library, SaysThatAFileIsNoLibrary) {
  const auto path = std::filesystem::temp_directory_path() / "emulator_no_library.txt";
  std::ofstream(path) << "no library";
  const std::string message = LoadFailure(path.string());
  std::filesystem::remove(path);
  EXPECT_TRUE(message.starts_with("cannot load the library ")) << message;
}

TEST(Library, RefusesCallsThatDoNotFitTheTable) {
  const Library library = Library::Load(kLibraryPath);
  vessa::HostString buffer{};
  EXPECT_THROW(library.Call("zfNothing", buffer), std::invalid_argument);
  EXPECT_THROW(library.Call("zfTagInfo", 1, 2, 3), std::invalid_argument);
  EXPECT_THROW(library.Call("zfDeflateStream", buffer), std::invalid_argument);
  EXPECT_THROW(library.Call("zfTagInfo"), std::invalid_argument);
  EXPECT_THROW(library.CallList("zfTagInfo", ListBuilder().String(std::string(32768, 'x'))),
               std::length_error);
}

TEST(Library, CallsWithEveryKindOfArguments) {
  const Host host;
  const Library library = Library::Load(kLibraryPath);
  vessa::HostString buffer{};
  EXPECT_EQ(library.Call("zfPLACEHOLDER", buffer), 0);
  EXPECT_EQ(library.Call("zfDICOMServer"), -1);
  Fill(buffer, "abcd");
  EXPECT_EQ(library.Call("zfSwitchByteOrdering", buffer, 2), 0);
  EXPECT_EQ(Contents(buffer), "badc");
  Fill(buffer, "FF");
  library.Call("zfBigHexToDecimal", buffer);
  EXPECT_EQ(Contents(buffer), "255");
  EXPECT_EQ(library.Call("zfDeflateStream", 6, 0, 0), -1) << "there is no such stream";
}

TEST(Library, ReadsTheResultListOfASuccess) {
  const Host host;
  const Library library = Library::Load(kLibraryPath);
  const ListResult result = library.CallList("zfTagInfo", ListBuilder().Integer(0x00100010));
  EXPECT_TRUE(result.Succeeded());
  EXPECT_EQ(result.message, u"");
  ASSERT_FALSE(result.values.empty());
}

TEST(Library, ReadsTheMessageOfAFailure) {
  const Host host;
  const Library library = Library::Load(kLibraryPath);
  const ListResult result = library.CallList("zfTagInfo", ListBuilder().Raw("\xFF"));
  EXPECT_FALSE(result.Succeeded());
  EXPECT_EQ(result.returned, 0);
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.message.find(u"List Format Error"), std::u16string::npos);
}

TEST(Library, DecomposesAStreamIntoAnEventLog) {
  Host host;
  const Library library = Library::Load(kLibraryPath);
  const auto log = std::make_shared<EventLog>();
  // (0010,0010) PN, 8 bytes, explicit VR little endian
  const auto stream =
      std::make_shared<MemoryStream>(std::string("\x10\x00\x10\x00PN\x08\x00", 8) + "Doe^John");
  const std::uint32_t stream_oref = host.Add(stream);
  const std::uint32_t log_oref = host.Add(log);
  const ListResult result = library.CallList(
      "zfDecomposeStream",
      ListBuilder().Integer(stream_oref).String("1.2.840.10008.1.2.1").Integer(log_oref).Integer(0));
  EXPECT_TRUE(result.Succeeded());
  EXPECT_EQ(log->Lines(), (std::vector<std::string>{
                              "StartContent 1.2.840.10008.1.2.1", "StartElement 00100010 PN 8",
                              "Data 00100010 1 446F655E4A6F686E", "EndElement 00100010", "EndContent"}));
  EXPECT_EQ(stream->Position(), 17);
  EXPECT_EQ(host.StackDepth(), 0U);
  EXPECT_EQ(host.OpenLongStrings(), 0U);
}

}  // namespace
}  // namespace emulator
