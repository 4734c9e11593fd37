#include <fmt/format.h>

#include <system_error>

#include "emulator/stream_object.h"
#include "emulator/vessa/commands.h"
#include "emulator/vessa/output_file.h"
#include "emulator/vessa/registered.h"
#include "emulator/vessa/watched_stream.h"
#include "emulator/vessa/writer_object.h"

namespace emulator::tool {
namespace {

std::shared_ptr<FileStream> OpenFile(const std::string& path) {
  try {
    return std::make_shared<FileStream>(path, FileStream::Mode::kRead);
  } catch (const std::system_error& error) {
    throw ToolError(kInputUnreadable, fmt::format("{}: {}", path, error.code().message()));
  }
}

/// One file into another through the library, in the format of zlib.
class PackCommand : public Command {
 public:
  void Define(CLI::App& app) override {
    app.add_option("IN", input_, "File to read")->required();
    app.add_option("OUT", output_, "File to write")->required();
  }

  void Run(Session& session) override {
    CallProgress& progress = session.Progress();
    progress.NameInput(input_);
    const Registered in(session.TheHost(), std::make_shared<WatchedStream>(OpenFile(input_), progress));
    OutputFile file(output_);
    const auto take = [&](std::string_view bytes) {
      CheckLimit(bytes.size());
      file.Write(bytes);
    };
    const Registered out(session.TheHost(), std::make_shared<WriterObject>(take, progress));
    try {
      Call(session, in.Oref(), out.Oref());
    } catch (const LibraryFailure& failure) {
      out->RethrowError();
      if (in->HasReadError())
        throw ToolError(kInputUnreadable, fmt::format("{}: the file cannot be read to its end", input_));
      throw LibraryFailure(fmt::format("{}: {}", input_, failure.what()));
    }
    out->RethrowError();
    file.Finish();
  }

 protected:
  virtual void Call(Session& session, std::uint32_t in, std::uint32_t out) = 0;
  /// Told of bytes before they are written; throws when they are too many.
  virtual void CheckLimit(std::size_t /*bytes*/) {}

 private:
  std::string input_;
  std::string output_;
};

class DeflateCommand : public PackCommand {
 public:
  const char* Name() const override { return "deflate"; }
  const char* Summary() const override { return "Compress a file in the format of zlib"; }
  const char* Examples() const override { return "vessa deflate --level 9 image.dcm image.zlib"; }

  void Define(CLI::App& app) override {
    PackCommand::Define(app);
    app.add_option("--level", level_, "From 0, no compression, to 9, the best; -1 for zlib's own choice")
        ->capture_default_str();
  }

 protected:
  void Call(Session& session, std::uint32_t in, std::uint32_t out) override {
    session.Call("zfDeflateStream", level_, in, out);
  }

 private:
  std::int32_t level_ = -1;
};

class InflateCommand : public PackCommand {
 public:
  const char* Name() const override { return "inflate"; }
  const char* Summary() const override { return "Decompress a file in the format of zlib"; }
  const char* Examples() const override { return "vessa inflate --max-output 64M image.zlib image.dcm"; }

  void Define(CLI::App& app) override {
    PackCommand::Define(app);
    app.add_option("--max-output", most_output_, "Most bytes to write, such as 64M")
        ->transform(CLI::AsSizeValue(false))
        ->capture_default_str();
  }

 protected:
  void Call(Session& session, std::uint32_t in, std::uint32_t out) override {
    session.Call("zfInflateStream", static_cast<std::int32_t>(in), out, 0);
  }

  void CheckLimit(std::size_t bytes) override {
    written_ += bytes;
    if (written_ > most_output_) {
      throw ToolError(
          kInputUnreadable,
          fmt::format("it inflates to more than {} bytes, the limit of --max-output", most_output_));
    }
  }

 private:
  std::uint64_t most_output_ = std::uint64_t{1} << 32U;
  std::uint64_t written_ = 0;
};

}  // namespace

std::unique_ptr<Command> MakeDeflateCommand() { return std::make_unique<DeflateCommand>(); }
std::unique_ptr<Command> MakeInflateCommand() { return std::make_unique<InflateCommand>(); }

}  // namespace emulator::tool
