// answers_of LIBRARY: asks the loaded library for single elements and prints what it answered.
//
// Questions come on standard input, a line each: KIND, SYNTAX, PATH and PROPERTIES with tabs between them. The file is a
// data set from its first byte on; the properties are tags and item numbers in decimal, with commas between them.
//
//     stream     zfQueryStream                            VR and value in hexadecimal
//     file       zfQueryFileOrDataSet                     the same
//     whole      the same with a result stream            the value whole
//     headed     the same for a file with a header        the value whole
//     items      zfGetNextSubscript until it answers 0    the numbers
//     reference  zfParsePropertyReference of PROPERTIES   the properties
//
// Each answer is one line: STATUS, then the words above, or the message of a failure.
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

namespace {

using emulator::ListBuilder;
using emulator::ListResult;

struct Question {
  std::string kind;
  std::string syntax;
  std::string path;
  std::string reference;
  std::vector<std::int64_t> properties;
};

Question ParseQuestion(const std::string& line) {
  std::istringstream fields(line);
  Question question;
  std::getline(fields, question.kind, '\t');
  std::getline(fields, question.syntax, '\t');
  std::getline(fields, question.path, '\t');
  if (question.kind == "reference") {
    std::getline(fields, question.reference);
    return question;
  }
  for (std::string number; std::getline(fields, number, ',');)
    question.properties.push_back(std::stoll(number));
  return question;
}

std::string PropertyList(const Question& question) {
  ListBuilder list;
  for (const std::int64_t property : question.properties) list.Integer(property);
  return list.Bytes();
}

std::string Text(const ListResult& result, const std::string& long_value = {}) {
  if (result.status != 0) return "1 " + std::string(result.message.begin(), result.message.end());
  if (result.values.empty()) return "0";
  // The list holds the first chunk of a long value. Of fragments it holds the first one, whatever goes to the stream.
  const std::string value = emulator::AsBytes(result.values.at(1).value);
  const bool is_cut = !value.empty() && long_value.size() > value.size() && long_value.starts_with(value);
  return "0 " + emulator::AsBytes(result.values.at(0).value) + " " +
         emulator::HexText(is_cut ? long_value : value);
}

std::uint32_t AddFile(emulator::Host& host, const Question& question) {
  return host.Add(std::make_shared<emulator::FileStream>(question.path, emulator::FileStream::Mode::kRead));
}

std::string AskStream(const emulator::Library& library, const Question& question) {
  emulator::Host host;
  return Text(library.CallList(
      "zfQueryStream",
      ListBuilder().Integer(AddFile(host, question)).String(question.syntax).String(PropertyList(question))));
}

ListResult AskFile(const emulator::Library& library, const Question& question, std::uint32_t output_oref) {
  constexpr int kNoSequenceAnswer = 0;
  ListBuilder arguments;
  arguments.Integer(question.kind == "headed" ? 1 : 0).String(question.path).String(question.syntax);
  arguments.String(PropertyList(question)).Integer(kNoSequenceAnswer).Integer(output_oref);
  return library.CallList("zfQueryFileOrDataSet", arguments);
}

std::string AskFileForChunk(const emulator::Library& library, const Question& question) {
  const emulator::Host host;
  return Text(AskFile(library, question, 0));
}

std::string AskFileForWhole(const emulator::Library& library, const Question& question) {
  emulator::Host host;
  const auto output = std::make_shared<emulator::MemoryStream>();
  const ListResult result = AskFile(library, question, host.Add(output));
  return Text(result, output->Bytes());
}

std::string Parse(const emulator::Library& library, const Question& question) {
  const emulator::Host host;
  const ListResult result =
      library.CallList("zfParsePropertyReference", ListBuilder().String(question.reference));
  if (result.status != 0) return Text(result);
  std::string numbers = "0";
  for (const emulator::ListValue& value : emulator::ReadList(emulator::AsBytes(result.values.at(0).value))) {
    numbers += " " + emulator::AsBytes(value.value);
  }
  return numbers;
}

std::string ListItems(const emulator::Library& library, Question question) {
  std::string numbers = "0";
  for (;;) {
    emulator::Host host;
    const ListResult result = library.CallList("zfGetNextSubscript", ListBuilder()
                                                                         .Integer(AddFile(host, question))
                                                                         .String(question.syntax)
                                                                         .String(PropertyList(question)));
    if (result.status != 0) return Text(result);
    const std::int64_t next = emulator::AsInteger(result.values.at(0).value);
    if (next == 0) return numbers;
    numbers += " " + std::to_string(next);
    question.properties.back() = next;
  }
}

std::string Answer(const emulator::Library& library, const Question& question) {
  if (question.kind == "stream") return AskStream(library, question);
  if (question.kind == "file") return AskFileForChunk(library, question);
  if (question.kind == "whole" || question.kind == "headed") return AskFileForWhole(library, question);
  if (question.kind == "reference") return Parse(library, question);
  return ListItems(library, question);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: answers_of LIBRARY < questions\n";
    return 2;
  }
  try {
    const emulator::Library library = emulator::Library::Load(argv[1]);
    for (std::string line; std::getline(std::cin, line);) {
      std::cout << Answer(library, ParseQuestion(line)) << '\n';
    }
  } catch (const std::exception& failure) {
    std::cerr << "answers_of: " << failure.what() << '\n';
    return 1;
  }
  return 0;
}
