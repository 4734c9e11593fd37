#include "bench/library_under_test.h"

#include <stdexcept>
#include <string>

#include "emulator/library.h"

namespace bench {
namespace {

constexpr std::int64_t kSomeOref = 1;
constexpr std::int64_t kNoClient = 0;

}  // namespace

LibraryUnderTest::LibraryUnderTest(const vessa::HostServices* services) : object_(VESSA_LIBRARY_PATH) {
  // The system's own form of what a name in a library stands for.
  auto* const get_table = reinterpret_cast<vessa::GetZFTableFunction*>(object_.Find("GetZFTable"));
  if (get_table == nullptr) throw std::runtime_error("no GetZFTable in " VESSA_LIBRARY_PATH);
  table_ = get_table(nullptr, services);
}

void LibraryUnderTest::Call(std::string_view name, const emulator::ListBuilder& arguments) {
  const vessa::CallOutRow* row = table_;
  while (row->name != name) ++row;
  emulator::Fill(buffer_, arguments.Bytes());
  row->entry.buffer(&buffer_);
  const std::vector<emulator::ListValue> results = emulator::ReadList(emulator::Contents(buffer_));
  if (emulator::AsInteger(results.at(0).value) != 0)
    throw std::runtime_error(emulator::AsBytes(results.at(1).value));
}

void LibraryUnderTest::DecomposeStream(std::string_view transfer_syntax) {
  Call("zfDecomposeStream", emulator::ListBuilder()
                                .Integer(kSomeOref)
                                .String(transfer_syntax)
                                .Integer(kSomeOref)
                                .Integer(kNoClient));
}

}  // namespace bench
