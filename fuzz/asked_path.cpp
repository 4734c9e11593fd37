#include "fuzz/asked_path.h"

namespace fuzz {
namespace {

constexpr std::size_t kMostPaths = 64;

}  // namespace

Path ChoosePath(FuzzInput& input, const std::deque<Event>& events) {
  const std::size_t choice = input.Byte();
  const std::size_t change = input.Byte();
  const std::vector<Path> paths = ValuePaths(events, kMostPaths);
  Path path = paths.empty() ? Path{0x00100010} : paths[choice % paths.size()];
  std::uint32_t& entry = path[(change >> 2U) % path.size()];
  if ((change & 3U) == 1) ++entry;
  if ((change & 3U) == 2) --entry;
  return path;
}

emulator::ListBuilder PropertyList(const Path& path) {
  emulator::ListBuilder list;
  for (const std::uint32_t entry : path) list.Integer(static_cast<std::int32_t>(entry));
  return list;
}

}  // namespace fuzz
