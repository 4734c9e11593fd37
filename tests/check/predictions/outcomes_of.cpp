// outcomes_of LIBRARY [--spin]: what is predicted of a file, and what the loaded library then does with it.
//
// Questions come on standard input, a line each, with tabs between the fields:
//
//     PATH  SYNTAX  VARIANT     SYNTAX: empty for the one that the file names
//                               VARIANT: "whole", "cut BYTES" (that many are left), "flip OFFSET BIT"
//
// Each answer is two lines of the same form, the first with the prediction, the second with what happened:
//
//     OUTCOME  OFFSET  PATH  MESSAGE      MESSAGE: its bytes (first line) or UTF-16 units (second) in hexadecimal
//
// A call that is predicted not to return is not made, and the second line is "skipped", unless --spin is given: then
// "calling" is printed in front of it.
#include <array>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/check/file_check.h"
#include "emulator/client.h"
#include "emulator/content_events.h"
#include "emulator/hex_text.h"
#include "emulator/host.h"
#include "emulator/library.h"
#include "emulator/list.h"
#include "emulator/path_text.h"
#include "emulator/stream_object.h"
#include "emulator/tag_text.h"

namespace {

constexpr std::int64_t kMetaOffset = 132;
constexpr std::uint32_t kTransferSyntax = 0x00020010;

/// The elements that are open, as the events tell.
class OpenElements : public emulator::ContentSink {
 public:
  void StartContent(std::string_view) override { steps_.clear(); }
  void EndContent() override {}
  void StartElement(std::uint32_t tag, std::string_view, std::uint32_t) override {
    steps_.push_back({tag, 0, 0, 0});
  }
  void EndElement(std::uint32_t) override { steps_.pop_back(); }
  void Data(std::uint32_t tag, std::uint32_t chunk, std::string_view bytes) override {
    if (tag == kTransferSyntax && chunk == 1) transfer_syntax_ = bytes;
  }
  void StartSequence() override {}
  void EndSequence() override {}
  void StartItem(std::uint32_t, std::uint32_t length) override {
    steps_.back() = {steps_.back().tag, steps_.back().items + 1, 1, length};
  }
  void EndItem(std::uint32_t, std::uint32_t) override { steps_.back().item_is_open = 0; }

  bool IsTopLevel() const { return steps_.empty(); }
  std::string Path() const {
    return steps_.empty() ? std::string() : emulator::PathText(steps_, steps_.size(), steps_.back());
  }
  std::string TransferSyntax() const {
    return transfer_syntax_.substr(0, transfer_syntax_.find_last_not_of(std::string_view(" \0", 2)) + 1);
  }

 private:
  std::vector<emulator::PathStep> steps_;
  std::string transfer_syntax_;
};

class Handler : public emulator::Object {
 public:
  emulator::Value Call(std::string_view method, std::span<const emulator::Value> arguments) override {
    emulator::DispatchEvent(method, arguments, elements);
    return std::string();
  }
  OpenElements elements;
};

template <class Text>
std::string HexOf(const Text& text, std::size_t digits) {
  std::string hex;
  for (const auto unit : text)
    emulator::AppendHex(static_cast<std::make_unsigned_t<typename Text::value_type>>(unit), digits, hex);
  return hex;
}

class LoadedLibrary {
 public:
  explicit LoadedLibrary(const char* path) : library_(emulator::Library::Load(path)) {}

  std::string DictionaryVr(std::uint32_t tag) {
    const auto known = vrs_.find(tag);
    if (known != vrs_.end()) return known->second;
    emulator::Host host;
    const auto info = library_.CallList("zfTagInfo", emulator::ListBuilder().Integer(tag));
    const std::u16string vr = emulator::AsWideText(info.values.at(1).value);
    return vrs_[tag] = std::string(vr.begin(), vr.end());
  }

  /// What happens to a host that opens these bytes as PS3.10 has it.
  std::string OutcomeOf(const std::string& bytes, std::string syntax) {
    emulator::Host host;
    const auto stream = std::make_shared<emulator::MemoryStream>(bytes);
    const auto handler = std::make_shared<Handler>();
    emulator::ListResult result;
    if (bytes.size() >= 132 && bytes.compare(128, 4, "DICM") == 0) {
      stream->MoveTo(kMetaOffset + 1);
      const auto client = std::make_shared<emulator::StopAtTag>([&handler](std::uint32_t tag) {
        return handler->elements.IsTopLevel() && emulator::GroupOf(tag) != emulator::kMetaGroup;
      });
      result = Decompose(host, stream, "1.2.840.10008.1.2.1", handler, host.Add(client));
      if (syntax.empty()) syntax = handler->elements.TransferSyntax();
    }
    if (result.Succeeded()) result = Decompose(host, stream, syntax, handler, 0);
    return (result.Succeeded() ? "succeeds\t" : "fails\t") + std::to_string(stream->Position() - 1) + "\t" +
           handler->elements.Path() + "\t" + HexOf(result.message, 4);
  }

 private:
  emulator::ListResult Decompose(emulator::Host& host, const std::shared_ptr<emulator::MemoryStream>& stream,
                                 const std::string& syntax, const std::shared_ptr<Handler>& handler,
                                 std::uint32_t client) {
    return library_.CallList("zfDecomposeStream", emulator::ListBuilder()
                                                      .Integer(host.Add(stream))
                                                      .String(syntax)
                                                      .Integer(host.Add(handler))
                                                      .Integer(client));
  }

  emulator::Library library_;
  std::map<std::uint32_t, std::string> vrs_;
};

std::string PredictionText(const emulator::Prediction& prediction) {
  constexpr std::array<const char*, 4> kOutcomes = {"succeeds", "fails", "does not return", "unclear"};
  return std::string(kOutcomes[static_cast<std::size_t>(prediction.outcome)]) + "\t" +
         std::to_string(prediction.offset) + "\t" + prediction.path + "\t" + HexOf(prediction.message, 2);
}

const std::string& FileBytes(const std::string& path) {
  static std::map<std::string, std::string> files;
  std::string& bytes = files[path];
  if (bytes.empty()) {
    std::ifstream file(path, std::ios::binary);
    bytes.assign(std::istreambuf_iterator<char>(file), {});
  }
  return bytes;
}

std::string VariantOf(std::string bytes, const std::string& variant) {
  std::istringstream words(variant);
  std::string kind;
  std::size_t offset = 0;
  unsigned bit = 0;
  words >> kind >> offset >> bit;
  if (kind == "cut") bytes.resize(offset);
  if (kind == "flip")
    bytes.at(offset) = static_cast<char>(static_cast<unsigned char>(bytes.at(offset)) ^ 1U << bit);
  return bytes;
}

void Answer(LoadedLibrary& library, const std::string& question, bool spins) {
  std::istringstream fields(question);
  std::string path;
  std::string syntax;
  std::string variant;
  std::getline(fields, path, '\t');
  std::getline(fields, syntax, '\t');
  std::getline(fields, variant);
  const std::string bytes = VariantOf(FileBytes(path), variant);

  emulator::MemoryStream stream(bytes);
  const auto vr = [&library](std::uint32_t tag) { return library.DictionaryVr(tag); };
  const auto report = emulator::CheckFile(stream, {syntax, false, vr, nullptr});
  std::cout << PredictionText(report.prediction) << '\n';
  const auto outcome = report.prediction.outcome;
  const bool returns = outcome != emulator::Prediction::Outcome::kDoesNotReturn;
  if (!returns && spins) std::cout << "calling" << std::endl;
  const bool is_called = outcome != emulator::Prediction::Outcome::kUnclear && (returns || spins);
  std::cout << (is_called ? library.OutcomeOf(bytes, syntax) : "skipped") << std::endl;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::cerr << "usage: outcomes_of LIBRARY [--spin] < questions\n";
    return 2;
  }
  try {
    LoadedLibrary library(argv[1]);
    for (std::string line; std::getline(std::cin, line);) Answer(library, line, argc > 2);
  } catch (const std::exception& failure) {
    std::cerr << "outcomes_of: " << failure.what() << '\n';
    return 1;
  }
  return 0;
}
