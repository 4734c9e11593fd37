#include <fmt/format.h>

#include "emulator/vessa/commands.h"
#include "emulator/vessa/printable_text.h"
#include "emulator/vessa/typed_arguments.h"

namespace emulator::tool {
namespace {

class CallCommand : public Command {
 public:
  const char* Name() const override { return "call"; }
  const char* Summary() const override {
    return "Call any call-out that takes a value list, and print its result list";
  }
  const char* Examples() const override {
    return "vessa call zfTagInfo i:0x00100010\n"
           "vessa call zfNameTag s:PatientName\n"
           "vessa call zfParsePropertyReference 's:BeamSequence[2].BeamName'";
  }

  void Define(CLI::App& app) override {
    app.add_option("NAME", name_, "Name of the call-out, as 'vessa table' lists it")->required();
    app.add_option("ARG", arguments_, std::string("Arguments, each with its type:\n") + kTypedArgumentsHelp);
  }

  void Run(Session& session) override {
    CheckName(session.TheLibrary());
    const ListBuilder arguments = ParseTypedArguments(arguments_);
    if (arguments.Bytes().size() > vessa::HostString::kCapacity) {
      throw ToolError(kWrongUsage,
                      fmt::format("more than {} bytes of arguments", vessa::HostString::kCapacity));
    }
    const ListResult result = session.CallList(name_, arguments);
    session.Out().WriteLine(fmt::format("integer  {}", result.status));
    for (const ListValue& item : result.values) session.Out().WriteLine(TypedText(item));
  }

 private:
  void CheckName(const Library& library) const {
    const vessa::CallOutRow* const row = library.Find(name_);
    const std::string name = PrintableUtf8(name_);
    if (row == nullptr) {
      throw ToolError(kWrongUsage, fmt::format("no call-out '{}'; 'vessa table' lists them", name));
    }
    if (std::string_view(row->argument_types) != "Bz") {
      throw ToolError(kWrongUsage,
                      fmt::format(R"({} takes arguments "{}", and 'vessa call' serves "Bz" only)", name,
                                  row->argument_types));
    }
  }

  std::string name_;
  std::vector<std::string> arguments_;
};

}  // namespace

std::unique_ptr<Command> MakeCallCommand() { return std::make_unique<CallCommand>(); }

}  // namespace emulator::tool
