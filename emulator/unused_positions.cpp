#include "emulator/unused_positions.h"

#include <cstdio>
#include <cstdlib>

namespace emulator {
namespace {

using vessa::HostServices;

void NotOffered() {
  static_cast<void>(std::fputs(
      "The library called a position of the callback table that the host does not offer.\n", stderr));
  std::abort();
}

template <std::size_t kCount>
void Fill(HostServices::Unused (&positions)[kCount]) {
  for (HostServices::Unused& position : positions) position = NotOffered;
}

}  // namespace

void FillUnusedPositions(HostServices& table) {
  Fill(table.unused_0);
  Fill(table.unused_11);
  Fill(table.unused_18);
  Fill(table.unused_28);
  Fill(table.unused_33);
  Fill(table.unused_35);
  Fill(table.unused_41);
  Fill(table.unused_46);
  Fill(table.unused_50);
  Fill(table.unused_52);
  Fill(table.unused_54);
  Fill(table.unused_60);
  Fill(table.unused_73);
  Fill(table.unused_96);
  Fill(table.unused_101);
  Fill(table.unused_104);
}

}  // namespace emulator
