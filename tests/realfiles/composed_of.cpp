// composed_of LIBRARY: has the loaded library compose data sets and prints what it wrote.
//
// A data set comes on standard input, a line each, with tabs between the fields:
//
//     node HEX SUBSCRIPT...        a node of ^KevDICOM.Data("ID", ...); subscripts of digits are numbers
//     pixels HEX                   the stream of the pixel data
//     compose SYNTAX ORIGINAL      composes it; what was said before is forgotten
//
// Each answer is one line: 0 and what was written, in hexadecimal, or 1 and the message of a failure.
#include <algorithm>
#include <cstdint>
#include <exception>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "emulator/hex_text.h"
#include "emulator/host.h"
#include "emulator/library.h"
#include "emulator/list.h"
#include "emulator/stream_object.h"
#include "tests/support/dicom_bytes.h"

namespace {

using emulator::Value;

std::vector<std::string> Fields(const std::string& line) {
  std::istringstream stream(line);
  std::vector<std::string> fields;
  for (std::string field; std::getline(stream, field, '\t');) fields.push_back(field);
  return fields;
}

Value Subscript(const std::string& field) {
  const bool is_number = std::all_of(field.begin(), field.end(), [](char c) { return c >= '0' && c <= '9'; });
  return is_number ? Value(std::int64_t{std::stoll(field)}) : Value(field);
}

/// A data set in the making, in a host of its own.
class StoredOne {
 public:
  void SetNode(const std::vector<std::string>& fields) {
    std::vector<Value> subscripts{std::string("ID")};
    std::transform(fields.begin() + 2, fields.end(), std::back_inserter(subscripts), Subscript);
    host_.globals().Set("KevDICOM.Data", subscripts, dicom_bytes::Hex(fields.at(1)));
  }

  void SetPixels(const std::string& bytes) {
    pixels_oref_ = host_.Add(std::make_shared<emulator::MemoryStream>(bytes));
  }

  std::string Compose(const emulator::Library& library, const std::vector<std::string>& fields) {
    const auto output = std::make_shared<emulator::MemoryStream>();
    const emulator::ListResult result = library.CallList("zfComposeStream", emulator::ListBuilder()
                                                                                .Integer(host_.Add(output))
                                                                                .String("ID")
                                                                                .String(fields.at(1))
                                                                                .String(fields.at(2))
                                                                                .Integer(pixels_oref_));
    if (result.status != 0) return "1 " + std::string(result.message.begin(), result.message.end());
    return "0 " + emulator::HexText(output->Bytes());
  }

 private:
  emulator::Host host_;
  std::uint32_t pixels_oref_ = 0;
};

void Run(const emulator::Library& library) {
  auto data_set = std::make_unique<StoredOne>();
  for (std::string line; std::getline(std::cin, line);) {
    const std::vector<std::string> fields = Fields(line);
    if (fields.at(0) == "node") data_set->SetNode(fields);
    if (fields.at(0) == "pixels") data_set->SetPixels(dicom_bytes::Hex(fields.size() > 1 ? fields[1] : ""));
    if (fields.at(0) == "compose") {
      std::cout << data_set->Compose(library, fields) << '\n';
      data_set.reset();  // hosts end before the next one begins
      data_set = std::make_unique<StoredOne>();
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: composed_of LIBRARY < data sets\n";
    return 2;
  }
  try {
    Run(emulator::Library::Load(argv[1]));
  } catch (const std::exception& failure) {
    std::cerr << "composed_of: " << failure.what() << '\n';
    return 1;
  }
  return 0;
}
