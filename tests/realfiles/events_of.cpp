// events_of LIBRARY: decomposes data sets through the loaded library and prints what the content handler saw.
//
// Questions come on standard input, a line each: OFFSET, ONLY_GROUP, SYNTAX and PATH with tabs between them.
// The data set lies from byte OFFSET of the file to its end; with an ONLY_GROUP that is not 0 a client object
// stops the call at the first tag of another group. Each answer is the event lines, then
//
//     Answer STATUS POSITION MESSAGE      POSITION: of the stream after the call, from 1
#include <cstdint>
#include <exception>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>

#include "emulator/client.h"
#include "emulator/event_log.h"
#include "emulator/host.h"
#include "emulator/library.h"
#include "emulator/list.h"
#include "emulator/stream_object.h"

namespace {

struct Question {
  std::int64_t offset = 0;
  std::uint32_t only_group = 0;
  std::string syntax;
  std::string path;
};

Question ParseQuestion(const std::string& line) {
  std::istringstream fields(line);
  Question question;
  fields >> question.offset >> question.only_group;
  fields.get();
  std::getline(fields, question.syntax, '\t');
  std::getline(fields, question.path);
  return question;
}

std::string Narrow(const std::u16string& text) {
  std::string narrow;
  for (const char16_t unit : text) narrow.push_back(unit < 0x100 ? static_cast<char>(unit) : '?');
  return narrow;
}

void Answer(const emulator::Library& library, const Question& question) {
  emulator::Host host;
  auto stream = std::make_shared<emulator::FileStream>(question.path, emulator::FileStream::Mode::kRead);
  stream->MoveTo(question.offset + 1);
  auto handler = std::make_shared<emulator::EventLog>();
  std::uint32_t client_oref = 0;
  if (question.only_group != 0) {
    client_oref = host.Add(std::make_shared<emulator::StopAtTag>(
        [&](std::uint32_t tag) { return tag >> 16U != question.only_group; }));
  }

  emulator::ListBuilder arguments;
  arguments.Integer(host.Add(stream));
  arguments.String(question.syntax);
  arguments.Integer(host.Add(handler));
  arguments.Integer(client_oref);
  const emulator::ListResult result = library.CallList("zfDecomposeStream", arguments);

  for (const std::string& line : handler->Lines()) std::cout << line << '\n';
  std::cout << "Answer " << result.status << ' ' << stream->Position() << ' ' << Narrow(result.message)
            << std::endl;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: events_of LIBRARY < questions\n";
    return 2;
  }
  try {
    const emulator::Library library = emulator::Library::Load(argv[1]);
    for (std::string line; std::getline(std::cin, line);) Answer(library, ParseQuestion(line));
  } catch (const std::exception& failure) {
    std::cerr << "events_of: " << failure.what() << '\n';
    return 1;
  }
  return 0;
}
