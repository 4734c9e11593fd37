#include "emulator/library.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <stdexcept>
#include <utility>

#include "emulator/call_watcher.h"
#include "emulator/host.h"
#include "emulator/platform/only_call.h"
#include "emulator/platform/shared_object.h"
#include "emulator/turn.h"

namespace emulator {
namespace {

vessa::GetZFTableFunction* GetTableFunction(const SharedObject& object, const std::string& path) {
  const SharedObject::Function function = object.Find("GetZFTable");
  if (function == nullptr) throw std::runtime_error(path + ": not a call-out library, it has no GetZFTable");
  return reinterpret_cast<vessa::GetZFTableFunction*>(function);
}

ListResult ResultOf(std::int32_t returned, const vessa::HostString& buffer) {
  ListResult result;
  result.returned = returned;
  if (buffer.count == 0) return result;
  result.values = ReadList(Contents(buffer));
  if (result.values.front().type != static_cast<int>(ListType::kNonNegativeInteger)) {
    throw std::invalid_argument("no result list: it does not begin with a status");
  }
  result.status = AsInteger(result.values.front().value);
  result.values.erase(result.values.begin());
  if (result.status != 0 && !result.values.empty()) result.message = AsWideText(result.values.front().value);
  return result;
}

template <class Entry>
std::int32_t HandOver(const Entry& entry) {
  const Turn turn(Turn::Of::kLibrary);
  return entry();
}

}  // namespace

Library::Library(std::unique_ptr<SharedObject> object, const vessa::CallOutRow* table)
    : object_(std::move(object)), table_(table) {}

Library::Library(Library&&) noexcept = default;
Library& Library::operator=(Library&&) noexcept = default;
Library::~Library() = default;

Library Library::Load(const std::string& path) { return Load(path, Host::Table()); }

Library Library::Load(const std::string& path, const vessa::HostServices* callbacks) {
  auto object = std::make_unique<SharedObject>(path);
  const vessa::CallOutRow* table = GetTableFunction(*object, path)(nullptr, callbacks);
  if (table == nullptr) throw std::runtime_error(path + ": GetZFTable handed out no table");
  return {std::move(object), table};
}

Library Library::Linked(vessa::GetZFTableFunction* get_table) {
  return {nullptr, get_table(nullptr, Host::Table())};
}

const vessa::CallOutRow* Library::Find(std::string_view name) const {
  for (const vessa::CallOutRow* row = table_; row->name != nullptr; ++row) {
    if (row->name == name) return row;
  }
  return nullptr;
}

const vessa::CallOutRow& Library::Row(std::string_view name, std::string_view types) const {
  const vessa::CallOutRow* row = Find(name);
  if (row == nullptr) throw std::invalid_argument("the library has no call-out " + std::string(name));
  if (row->argument_types != types) {
    throw std::invalid_argument(std::string(name) + " takes \"" + row->argument_types + "\", not \"" +
                                std::string(types) + "\"");
  }
  return *row;
}

template <class Entry>
std::int32_t Library::Make(const CallOut& call, const Entry& entry) const {
  const OnlyCall only_call;
  if (watcher_ == nullptr) return HandOver(entry);
  watcher_->OnCall(call);
  const auto start = std::chrono::steady_clock::now();
  const std::int32_t returned = HandOver(entry);
  watcher_->OnReturn(call, returned, std::chrono::steady_clock::now() - start);
  return returned;
}

std::int32_t Library::Call(std::string_view name, vessa::HostString& buffer) const {
  const vessa::CallOutRow* row = Find(name);
  const bool plain = row != nullptr && std::string_view(row->argument_types) == "B";
  const auto entry = Row(name, plain ? "B" : "Bz").entry.buffer;
  return Make({name, &buffer, {}}, [&] { return entry(&buffer); });
}

std::int32_t Library::Call(std::string_view name, vessa::HostString& buffer, std::int32_t value) const {
  const auto entry = Row(name, "Bi").entry.buffer_and_integer;
  return Make({name, &buffer, {&value, 1}}, [&] { return entry(&buffer, value); });
}

std::int32_t Library::Call(std::string_view name, std::int32_t first, std::int32_t second,
                           std::int32_t third) const {
  const auto entry = Row(name, "ioo").entry.three_integers;
  const std::array<std::int32_t, 3> numbers{first, second, third};
  return Make({name, nullptr, numbers}, [&] { return entry(first, second, third); });
}

std::int32_t Library::Call(std::string_view name) const {
  const auto entry = Row(name, "coi").entry.arguments_unread;
  return Make({name, nullptr, {}}, [&] { return entry(); });
}

ListResult Library::CallList(std::string_view name, const ListBuilder& arguments) const {
  vessa::HostString buffer;
  Fill(buffer, arguments.Bytes());
  const std::int32_t returned = Call(name, buffer);
  return ResultOf(returned, buffer);
}

void Fill(vessa::HostString& buffer, std::string_view bytes) {
  if (bytes.size() > vessa::HostString::kCapacity)
    throw std::length_error("more bytes than a host string holds");
  std::copy(bytes.begin(), bytes.end(), buffer.bytes);
  buffer.count = static_cast<std::uint16_t>(bytes.size());
}

std::string_view Contents(const vessa::HostString& buffer) {
  if (buffer.count > vessa::HostString::kCapacity) throw std::invalid_argument("a count above 32767");
  return {reinterpret_cast<const char*>(buffer.bytes), buffer.count};
}

}  // namespace emulator
