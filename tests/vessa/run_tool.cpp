#include "tests/vessa/run_tool.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

namespace {

/// A folder that ends with the run.
class TestFolder {
 public:
  TestFolder()
      : path_(std::filesystem::temp_directory_path() /
              ("vessa_tool_test" + std::to_string(std::random_device()()))) {
    std::filesystem::create_directories(path_);
  }
  ~TestFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

}  // namespace

const char* const kFaultyLibraryPath = VESSA_FAULTY_LIBRARY_PATH;

std::string PathOf(const std::string& name) {
  static const TestFolder folder;
  return (folder.Path() / name).make_preferred().string();
}

ToolRun RunTool(const std::vector<std::string>& arguments, std::string_view input) {
  std::string command_line = Quoted(std::filesystem::path(VESSA_TOOL_PATH).make_preferred().string());
  for (const std::string& argument : arguments) command_line += " " + Quoted(argument);
  command_line += " <" + Quoted(MakeFile("input", input));
  command_line += " >" + Quoted(PathOf("output")) + " 2>" + Quoted(PathOf("errors"));
  // The shell is what users run the tool from.
  const int status =
      std::system(ForShell(command_line).c_str());  // NOLINT(cert-env33-c,concurrency-mt-unsafe)
  return {ExitCodeOf(status), ReadFile(PathOf("output")), ReadFile(PathOf("errors"))};
}

std::string MakeFile(const std::string& name, std::string_view bytes) {
  std::string path = PathOf(name);
  std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return path;
}
