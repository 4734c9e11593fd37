// make_seeds FOLDER: what the fuzzer begins with, a folder for each target. Nothing of it is collected: every byte is
// written here.

#include <zlib.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/list.h"
#include "tests/support/dicom_bytes.h"

namespace {

namespace d = dicom_bytes;
using d::VrForm;
using emulator::ListBuilder;
using emulator::ListForm;
using Seeds = std::vector<std::string>;

// The first byte of the targets that read data sets: SyntaxFor's choice.
constexpr char kExplicit = 0;
constexpr char kImplicit = 1;
constexpr char kEncapsulated = 2;

struct DataSet {
  char syntax;
  std::string bytes;
};

std::string Nested(const d::DataSetBytes& bytes, int levels, bool undefined) {
  std::string content = bytes.Element(0x00080100, "SH", "CODE");
  for (int level = 0; level < levels; ++level) {
    content = undefined ? bytes.UndefinedSequence(0x0040A730, d::UndefinedItem(content))
                        : bytes.Sequence(0x0040A730, d::Item(content));
  }
  return content;
}

std::string Patient(const d::DataSetBytes& bytes) {
  return bytes.Element(0x00080005, "CS", "ISO_IR 192") + bytes.Element(0x00100010, "PN", "Doe^John") +
         bytes.Element(0x00100020, "LO", "") + bytes.Element(0x00280100, "US", d::Number16(16)) +
         bytes.Element(0x00280106, "SS", d::Number16(0xFFFF));
}

std::string Beams(const d::DataSetBytes& bytes) {
  const auto beam = [&](const char* name) { return bytes.Element(0x300A00C2, "LO", name); };
  return bytes.Element(0x00080018, "UI", "1.2.3.45") +
         bytes.UndefinedSequence(0x300A00B0,
                                 d::Item(beam("left")) + d::UndefinedItem(beam("back")) + d::Item("")) +
         bytes.Sequence(0x300A0180,
                        d::Item(bytes.Sequence(0x300A01B4, d::Item(beam("in")) + d::Item(beam("in"))))) +
         bytes.Sequence(0x300A0206, "");
}

std::string Privates(const d::DataSetBytes& bytes) {
  return bytes.Element(0x00020010, "UI", "1.2.840.10008.1.2") +
         bytes.Element(0x00090000, "UL", d::Number32(8)) + bytes.Element(0x00090010, "LO", "CREATOR ") +
         bytes.Element(0x00091010, "UN", "secret") +
         bytes.Element(0x60003000, "OW", std::string(64, '\x55')) +
         bytes.Element(0xFFFCFFFC, "OB", "padding.");
}

/// Data sets that a decomposition reads to their end, and some that it does not.
std::vector<DataSet> DataSets() {
  std::vector<DataSet> all;
  for (const auto& [syntax, form] :
       {std::pair{kExplicit, VrForm::kExplicit}, {kImplicit, VrForm::kImplicit}}) {
    const d::DataSetBytes bytes(form);
    const std::string patient = Patient(bytes);
    all.push_back({syntax, ""});
    all.push_back({syntax, patient});
    all.push_back({syntax, Beams(bytes)});
    all.push_back({syntax, Privates(bytes)});
    all.push_back({syntax, Nested(bytes, 5, true) + patient});
    all.push_back({syntax, Nested(bytes, 5, false)});
    all.push_back({syntax, bytes.Element(0x00081150, "UT", std::string(33000, 'x'))});
    all.push_back({syntax, bytes.Element(0x7FE00010, "OW", std::string(9000, '\x7F'))});
    // Cut inside of an item of defined length, between two elements; and wrong in other ways.
    all.push_back({syntax, bytes.Header(0x0040A730, "SQ", 100) + d::TagAndLength(d::kItem, 90) + patient});
    all.push_back({syntax, patient.substr(0, patient.size() - 3)});
    all.push_back({syntax, patient + d::ItemEnd()});
    all.push_back(
        {syntax, bytes.UndefinedSequence(0x0040A730, d::UndefinedItem(patient)) + d::SequenceEnd()});
    all.push_back({syntax, std::string(32, '\0')});
  }
  const d::DataSetBytes bytes(VrForm::kExplicit);
  const std::string fragments =
      bytes.Fragments("OB", d::Item("") + d::Item("abcd") + d::Item("\xFE\xFF\xDD\xE0"));
  all.push_back({kEncapsulated, Patient(bytes) + fragments});
  all.push_back(
      {kEncapsulated, bytes.Fragments("OW", d::Item(d::Number32(0)) + d::Item(std::string(33000, 'f')))});
  all.push_back({kEncapsulated, bytes.Fragments("OB", "")});
  all.push_back({kEncapsulated, bytes.Element(d::kPixelData, "OW", "native")});
  all.push_back({kExplicit, fragments});
  return all;
}

std::string Prefix(std::initializer_list<int> bytes) {
  std::string prefix;
  for (const int byte : bytes) prefix += static_cast<char>(byte);
  return prefix;
}

/// Each data set behind its syntax and each of the given beginnings.
Seeds BehindSyntax(const Seeds& beginnings) {
  Seeds seeds;
  for (const DataSet& data_set : DataSets()) {
    for (const std::string& beginning : beginnings) {
      seeds.push_back(std::string(1, data_set.syntax) + beginning + data_set.bytes);
    }
  }
  return seeds;
}

Seeds Lists() {
  ListBuilder inner;
  inner.Integer(-1).String("inner");
  Seeds seeds;
  const auto add = [&](const ListBuilder& list) { seeds.push_back(list.Bytes()); };
  add(ListBuilder().Integer(0).Integer(255).Integer(-256).Integer(INT64_MAX).Integer(INT64_MIN));
  add(ListBuilder().Double(1.5).Double(-1e300).Decimal(1234, -2).Decimal(-5, 3).Absent());
  add(ListBuilder().String("12abc").String("1E999").String("-.5e3").WideString(u"1.5").WideString(u"\u4E2D"));
  add(ListBuilder().Item(1, "medium", ListForm::kMedium).Item(1, "long", ListForm::kLong).List(inner));
  add(ListBuilder().String(std::string(300, 'x')).Item(9, "").Item(8, "four"));
  add(ListBuilder().Raw(std::string(7, '\0')));
  return seeds;
}

Seeds CallArguments() {
  Seeds seeds;
  const std::string explicit_syntax = d::kExplicitLittleEndian;
  const std::string list = ListBuilder().Integer(0x00100010).Bytes();
  const auto add = [&](int row, const ListBuilder& arguments) {
    seeds.push_back(Prefix({row}) + arguments.Bytes());
  };
  add(1, ListBuilder().Integer(0x00100010));
  add(2, ListBuilder().String("PatientName"));
  add(7, ListBuilder().Integer(1).String(explicit_syntax).Integer(2).Integer(3));
  add(8, ListBuilder().String("BeamSequence[1].BeamName"));
  add(9, ListBuilder().String("BeamSequence[]"));
  add(10, ListBuilder().Integer(1).String(explicit_syntax).String(list).Integer(1));
  add(11, ListBuilder().Integer(1).String(explicit_syntax).String(list + ListBuilder().Integer(0).Bytes()));
  add(12, ListBuilder().Integer(4).String("id").String(explicit_syntax).String(explicit_syntax).Integer(1));
  add(13, ListBuilder().Integer(0).String("no such file").String(explicit_syntax).String(list));
  seeds.push_back(Prefix({14}) + "FFFFFFFFFFFFFFFFFFFF");
  seeds.push_back(Prefix({6, 2, 0, 0, 0}) + "abcdefgh");
  return seeds;
}

Seeds References() {
  Seeds seeds;
  for (const char* const text :
       {"PatientName", "(0010,0010)", "(7fe0,0010)", "BeamSequence[1].BeamName",
        "(300A,00B0)[12].(300A,00C2)[3].(0009,0010)", "BeamSequence[0].BeamName", ""}) {
    seeds.push_back(Prefix({0}) + text);
  }
  for (const char* const text :
       {"BeamSequence[]", "BeamSequence[\"\"]", "(300A,00B0)[2].ControlPointSequence[1]",
        "BeamSequence[99999999999]", "BeamSequence[].BeamSequence[1]"}) {
    seeds.push_back(Prefix({1}) + text);
  }
  return seeds;
}

std::string Deflated(const std::string& plain) {
  uLongf size = compressBound(static_cast<uLong>(plain.size()));
  std::string packed(size, '\0');
  compress(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(plain.data()),
           static_cast<uLong>(plain.size()));
  packed.resize(size);
  return packed;
}

Seeds PlainTexts() {
  return {"", "a", "the quick brown fox the quick brown fox", std::string(40000, 'z'),
          Patient(d::DataSetBytes(VrForm::kExplicit))};
}

Seeds Packed() {
  Seeds seeds;
  for (const std::string& plain : PlainTexts()) {
    seeds.push_back(Prefix({0}) + Deflated(plain));
    seeds.push_back(Prefix({7}) + Deflated(plain) + "behind");
    seeds.push_back(Prefix({1}) + Deflated(plain).substr(0, 6));
  }
  return seeds;
}

Seeds Unpacked() {
  Seeds seeds;
  for (const std::string& plain : PlainTexts()) {
    for (const int level : {0, 1, 7, 10}) seeds.push_back(Prefix({level, 0}) + plain);
  }
  return seeds;
}

/// Programs that fill a global: see the target.
Seeds Globals() {
  const auto text = [](const std::string& bytes) {
    return std::string(1, static_cast<char>(bytes.size())) + bytes;
  };
  const auto child = [&](const std::string& tag, int node) {
    return Prefix({0}) + text(tag) + Prefix({node});
  };
  const auto vr = [&](int node, const std::string& letters) { return Prefix({1, node}) + text(letters); };
  const auto value = [&](int node, const std::string& bytes) { return Prefix({2, node}) + text(bytes); };
  const auto nested = [&](int node, int item, const std::string& tag, int inner) {
    return Prefix({6, node, item}) + text(tag) + Prefix({inner});
  };
  const std::string patient = child("1048592", 1) + vr(1, "PN") + value(1, "Doe^John");
  const std::string beams =
      child("806027440", 2) + vr(2, "SQ") + nested(2, 1, "1048592", 1) + nested(2, 2, "1048608", 3);
  const std::string pixels = child("2145386512", 4) + vr(4, "OW");
  const std::string bits = child("2621696", 5) + vr(5, "US") + value(5, std::string("\x10\0", 2));
  const std::string chunks =
      Prefix({3, 1}) + text("1") + text("more") + Prefix({3, 1}) + text("2") + text("yet more");
  Seeds seeds;
  for (const int syntaxes : {0, 1, 2, 4, 13}) {
    const std::string start = Prefix({syntaxes, 0, 0});
    seeds.push_back(start + text("pixel data") + patient + beams + bits + pixels);
    seeds.push_back(start + text("") + patient + chunks + Prefix({4, 2}) + beams);
    seeds.push_back(start + text(d::Item("") + d::Item("frag")) + pixels + Prefix({4, 4}));
    seeds.push_back(start + text("") + child("806027440", 2) + vr(2, "SQ") + nested(2, 1, "806027440", 2));
  }
  return seeds;
}

void WriteSeeds(const std::filesystem::path& folder, const Seeds& seeds) {
  std::filesystem::create_directories(folder);
  for (std::size_t i = 0; i < seeds.size(); ++i) {
    std::ofstream(folder / ("seed_" + std::to_string(i)), std::ios::binary) << seeds[i];
  }
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) return 2;
  const std::filesystem::path folder(arguments[1]);
  WriteSeeds(folder / "value_list", Lists());
  WriteSeeds(folder / "call_arguments", CallArguments());
  WriteSeeds(folder / "property_reference", References());
  WriteSeeds(folder / "decompose", BehindSyntax({Prefix({0}), Prefix({255})}));
  WriteSeeds(folder / "query", BehindSyntax({Prefix({0, 0, 0}), Prefix({3, 5, 2})}));
  WriteSeeds(folder / "next_subscript", BehindSyntax({Prefix({1, 0, 0, 0}), Prefix({3, 0, 8, 0})}));
  WriteSeeds(folder / "round_trip", BehindSyntax({Prefix({0}), Prefix({1})}));
  WriteSeeds(folder / "hostile_host",
             BehindSyntax({Prefix({0, 0, 0, 0, 0, 0, 0, 0}), Prefix({1, 9, 5, 1, 20, 3, 1, 7}),
                           Prefix({2, 30, 5, 0, 0, 0, 0, 0}), Prefix({0, 0, 0, 4, 2, 2, 3, 4})}));
  WriteSeeds(folder / "compose", Globals());
  WriteSeeds(folder / "inflate", Packed());
  WriteSeeds(folder / "deflate", Unpacked());
  return 0;
}
