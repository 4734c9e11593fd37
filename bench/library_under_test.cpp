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

void LibraryUnderTest::Call(std::string_view name, std::string_view arguments) {
  static const std::string success = emulator::ListBuilder().Integer(0).Bytes();
  emulator::Fill(buffer_, arguments);
  Row(name).entry.buffer(&buffer_);
  const std::string_view results = emulator::Contents(buffer_);
  if (!results.starts_with(success))
    throw std::runtime_error(emulator::AsBytes(emulator::ReadList(results).at(1).value));
}

void LibraryUnderTest::Call(std::string_view name, std::int32_t first, std::int32_t second,
                            std::int32_t third) {
  if (Row(name).entry.three_integers(first, second, third) != 0)
    throw std::runtime_error(std::string(name) + " failed");
}

const vessa::CallOutRow& LibraryUnderTest::Row(std::string_view name) const {
  const vessa::CallOutRow* row = table_;
  while (row->name != name) ++row;
  return *row;
}

std::vector<emulator::ListValue> LibraryUnderTest::Answer() const {
  std::vector<emulator::ListValue> items = emulator::ReadList(emulator::Contents(buffer_));
  items.erase(items.begin());
  return items;
}

void LibraryUnderTest::DecomposeStream(std::string_view transfer_syntax) {
  Call("zfDecomposeStream", emulator::ListBuilder()
                                .Integer(kSomeOref)
                                .String(transfer_syntax)
                                .Integer(kSomeOref)
                                .Integer(kNoClient)
                                .Bytes());
}

}  // namespace bench
