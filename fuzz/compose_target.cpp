// Any nodes in the global, and a host that may fail: composing comes to an end, and gives the same each time.

#include <memory>
#include <string>
#include <vector>

#include "emulator/host.h"
#include "emulator/memory_globals.h"
#include "fuzz/bounded_stream.h"
#include "fuzz/decomposition.h"
#include "fuzz/library.h"
#include "fuzz/target.h"

namespace fuzz {
namespace {

using emulator::Value;

constexpr const char* kGlobal = "KevDICOM.Data";
const std::string kId = "id";
// A node that several others name is written once for each of them, and so are those below it.
constexpr std::int64_t kMostBytes = 20000;

class GlobalProgram {
 public:
  GlobalProgram(FuzzInput& input, emulator::Globals& globals) : input_{input}, globals_{globals} {}

  void Run() {
    while (!input_.IsUsedUp()) SetNode();
  }

 private:
  /// One node, as the input says. They are few, so that they meet.
  void SetNode() {
    switch (input_.Choice(8)) {
      case 0: {
        const std::string tag = input_.Text();
        return Set({Number(0), "c", Number(0), tag}, Node());
      }
      case 1: {
        const Value node = Node();
        return Set({node, "v"}, input_.Text());
      }
      case 2: {
        const Value node = Node();
        return Set({node, "d"}, input_.Text());
      }
      case 3: {
        const Value node = Node();
        const std::string chunk = input_.Text();
        return Set({node, "d", chunk}, input_.Text());
      }
      case 4:
        return Set({Node(), "l"}, "1");
      case 5: {
        const Value node = Node();
        return Set({node, "c", Node()}, "");
      }
      case 6: {
        const Value node = Node();
        const Value item = Node();
        const std::string tag = input_.Text();
        return Set({node, "c", item, tag}, Node());
      }
      default: {
        const Value node = Node();
        return Set({node, "d"}, std::u16string(input_.Byte(), static_cast<char16_t>(input_.Number16())));
      }
    }
  }

  static Value Number(std::int64_t number) { return number; }
  Value Node() { return static_cast<std::int64_t>(input_.Choice(8)); }

  void Set(std::vector<Value> subscripts, const Value& value) {
    subscripts.insert(subscripts.begin(), kId);
    for (const Value& subscript : subscripts) {
      if (subscript == Value(std::string())) return;  // no node has such a subscript
    }
    globals_.Set(kGlobal, subscripts, value);
  }

  FuzzInput& input_;
  emulator::Globals& globals_;
};

struct Request {
  const char* syntax;
  const char* original_syntax;
  std::uint32_t fails_at;  ///< number of the callback; 0 for none
  bool fails_from_then_on;
  std::string pixels;
};

struct Composition {
  std::string message;
  std::string bytes;
  friend bool operator==(const Composition&, const Composition&) = default;
};

Composition Compose(const Request& request, const std::shared_ptr<emulator::Globals>& globals) {
  emulator::Host host(globals);
  const auto output = std::make_shared<BoundedStream>(kMostBytes);
  emulator::ListBuilder arguments;
  arguments.Integer(host.Add(output)).String(kId).String(request.syntax).String(request.original_syntax);
  const bool has_pixels = !request.pixels.empty();
  arguments.Integer(has_pixels ? host.Add(std::make_shared<emulator::MemoryStream>(request.pixels)) : 0);
  if (request.fails_at > 0) host.faults().FailNth(request.fails_at, 5, request.fails_from_then_on);
  const emulator::ListResult result = TheLibrary().CallList("zfComposeStream", arguments);
  Require(result.returned == 0, "a call returned other than 0");
  Require(!result.Succeeded() || host.StackDepth() == 0 || host.faults().Hits() > 0,
          "a success that left something on the host's stack");
  return {MessageOf(result), output->Bytes()};
}

}  // namespace

void RunInput(FuzzInput input) {
  Request request{};
  const std::size_t syntaxes = input.Byte();
  request.syntax = SyntaxFor(syntaxes);
  request.original_syntax = SyntaxFor(syntaxes / kSyntaxes);
  request.fails_at = input.Byte();
  request.fails_from_then_on = input.Choice(2) == 1;
  request.pixels = input.Text();

  const auto globals = std::make_shared<emulator::MemoryGlobals>();
  GlobalProgram(input, *globals).Run();
  const Composition composition = Compose(request, globals);
  Require(Compose(request, globals) == composition, "the same global gives something else");
}

}  // namespace fuzz
