#include "emulator/vessa/syntax_name.h"

#include "emulator/transfer_syntax.h"

namespace emulator::tool {

std::string SyntaxNamed(const std::string& name) {
  if (name == "implicit") return kImplicitLittleEndian;
  if (name == "explicit") return kExplicitLittleEndian;
  return name;
}

}  // namespace emulator::tool
