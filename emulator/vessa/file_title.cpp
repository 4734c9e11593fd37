#include "emulator/vessa/file_title.h"

#include "emulator/vessa/json_value.h"
#include "emulator/vessa/printable_text.h"

namespace emulator::tool {

void PrintFileName(Output& output, const std::string& path, bool is_json) {
  const std::string name = PrintableUtf8(path);
  output.WriteLine(is_json ? "{\"file\": " + JsonString(name) + "}" : "==> " + name + " <==");
}

}  // namespace emulator::tool
