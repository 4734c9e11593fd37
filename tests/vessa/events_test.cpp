#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/vessa/run_tool.h"
#include "tests/vessa/sample_data.h"

using testing::HasSubstr;
using testing::Not;

namespace {

ToolRun Events(const std::string& bytes, std::vector<std::string> options = {}) {
  options.insert(options.begin(), {"events", MakeFile("events.bin", bytes)});
  return RunTool(options);
}

std::string PixelData() {
  return kExplicit.Fragments("OB", dicom_bytes::Item("") + dicom_bytes::Item("abcd"));
}

TEST(Events, PrintsACallALine) {
  const ToolRun run = Events(SmallDataSet(), {"--syntax", "explicit"});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_EQ(run.output,
            "StartContent 1.2.840.10008.1.2.1\n"
            "StartElement 00081140 SQ 48\n"
            "StartSequence\n"
            "StartItem 00081140 16\n"
            "StartElement 00081150 UI 8\n"
            "Data 00081150 1 8 312E322E332E3400\n"
            "EndElement 00081150\n"
            "EndItem 00081140 16\n"
            "StartItem 00081140 16\n"
            "StartElement 00081150 UI 8\n"
            "Data 00081150 1 8 312E322E332E3400\n"
            "EndElement 00081150\n"
            "EndItem 00081140 16\n"
            "EndSequence\n"
            "EndElement 00081140\n"
            "StartElement 00100010 PN 8\n"
            "Data 00100010 1 8 446F655E4A6F686E\n"
            "EndElement 00100010\n"
            "EndContent\n");
}

TEST(Events, PrintsJsonLines) {
  const ToolRun run =
      Events(kExplicit.Element(0x00100010, "PN", "Doe^John"), {"--syntax", "explicit", "--json"});
  EXPECT_EQ(run.output, R"({"event":"StartContent","transferSyntax":"1.2.840.10008.1.2.1"})"
                        "\n"
                        R"({"event":"StartElement","tag":"00100010","vr":"PN","length":8})"
                        "\n"
                        R"({"event":"Data","tag":"00100010","chunk":1,"bytes":"446F655E4A6F686E"})"
                        "\n"
                        R"({"event":"EndElement","tag":"00100010"})"
                        "\n"
                        R"({"event":"EndContent"})"
                        "\n");
}

TEST(Events, DecomposesTheMetaInformationOnItsOwn) {
  const std::string file = DicomFile("1.2.840.10008.1.2", kImplicit.Element(0x00100010, "", "Doe^John"));
  EXPECT_EQ(Events(file).output,
            "StartContent 1.2.840.10008.1.2.1\n"
            "StartElement 00020010 UI 18\n"
            "Data 00020010 1 18 312E322E3834302E31303030382E312E3200\n"
            "EndElement 00020010\n"
            "EndContent\n"
            "StartContent 1.2.840.10008.1.2\n"
            "StartElement 00100010 PN 8\n"
            "Data 00100010 1 8 446F655E4A6F686E\n"
            "EndElement 00100010\n"
            "EndContent\n");
}

TEST(Events, StopsAtATagOrKeyword) {
  for (const char* const tag : {"0010,0010", "PatientName", "00100000"}) {
    const ToolRun run = Events(SmallDataSet(), {"--syntax", "explicit", "--stop-at", tag});
    EXPECT_EQ(run.exit_code, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("EndElement 00081140\nEndContent\n"));
  }
}

TEST(Events, DoesNotStopInsideAnItem) {
  const ToolRun run = Events(SmallDataSet(), {"--syntax", "explicit", "--stop-at", "0008,1150"});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_THAT(run.output, HasSubstr("EndElement 00081140\nEndContent\n"));
}

TEST(Events, MarksTheEndOfFragmentsUnlessFramesAreSimple) {
  const std::vector<std::string> options = {"--syntax", dicom_bytes::kJpegBaseline};
  EXPECT_THAT(Events(PixelData(), options).output,
              HasSubstr("StartItem FFFEE0DD 0\nData FFFEE0DD 1 0\nEndItem FFFEE0DD 0\n"));
  EXPECT_THAT(Events(PixelData(), {"--syntax", dicom_bytes::kJpegBaseline, "--simple-frames"}).output,
              Not(HasSubstr("FFFEE0DD")));
}

TEST(Events, CutsLongDataUnlessAskedForAll) {
  const std::string data_set = kExplicit.Element(0x00100020, "LO", std::string(40, 'a'));
  const std::string start = "Data 00100020 1 40 ";
  const auto hex = [](std::size_t bytes) {
    std::string text;
    for (; bytes > 0; --bytes) text += "61";
    return text;
  };
  EXPECT_THAT(Events(data_set, {"--syntax", "explicit"}).output, HasSubstr(start + hex(32) + "...\n"));
  EXPECT_THAT(Events(data_set, {"--syntax", "explicit", "--full"}).output, HasSubstr(start + hex(40) + "\n"));
}

}  // namespace
