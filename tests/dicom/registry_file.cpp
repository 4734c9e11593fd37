#include "tests/dicom/registry_file.h"

#include <fstream>
#include <sstream>

#include "tests/support/paths.h"

namespace {

std::vector<RegistryLine> ReadLines() {
  std::ifstream file(std::string(kSourceFolder) + "/dicom/registry.tsv", std::ios::binary);
  std::vector<RegistryLine> lines;
  for (std::string text; std::getline(file, text);) {
    std::istringstream fields(text);
    RegistryLine line;
    std::getline(fields, line.tag_text, '\t');
    std::getline(fields, line.keyword, '\t');
    std::getline(fields, line.vr, '\t');
    std::getline(fields, line.vm);
    lines.push_back(line);
  }
  return lines;
}

}  // namespace

const std::vector<RegistryLine>& RegistryLines() {
  static const std::vector<RegistryLine> lines = ReadLines();
  return lines;
}
