#include "emulator/vessa/file_options.h"

#include "emulator/vessa/syntax_name.h"

namespace emulator::tool {
void FileOptions::Define(CLI::App& app) {
  app.add_option("FILE", path_, "File to read")->required();
  app.add_option(
      "--syntax", syntax_,
      "Transfer syntax of the data set, in place of the one that the file names: a UID, 'implicit' or "
      "'explicit' (both little endian)");
  app.add_option("--max-output", most_output_,
                 "Most bytes that a deflated data set may inflate to, such as 64M")
      ->transform(CLI::AsSizeValue(false))
      ->capture_default_str();
}

DicomFile FileOptions::Open() const { return DicomFile({path_, SyntaxNamed(syntax_), most_output_}); }

}  // namespace emulator::tool
