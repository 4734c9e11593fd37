#include "bench/idle_host.h"

#include <algorithm>
#include <cstring>

namespace bench {
namespace {

// One stream, one pending method: as little state as a host can have.
std::string_view g_data;
std::size_t g_position = 0;
std::uint64_t g_served = 0;
int g_last_integer = 0;
enum class Pending { kOther, kPeek, kSkip, kRead } g_pending = Pending::kOther;

int ConvertResult(int type, void* receiver) {
  if (type == vessa::kConvertToInteger) {
    const std::int32_t position = static_cast<std::int32_t>(g_position) + 1;
    std::memcpy(receiver, &position, sizeof position);
  } else {
    static_cast<vessa::HostString*>(receiver)->count = 0;
  }
  return 0;
}
int PushMethod(unsigned int /*oref*/, int /*length*/, const unsigned char* name, int /*wanted*/) {
  g_pending = name[0] == 'P'   ? Pending::kPeek
              : name[0] == 'R' ? Pending::kRead
              : name[1] == 'k' ? Pending::kSkip
                               : Pending::kOther;
  return 0;
}
int InvokeMethod(int /*arguments*/) {
  if (g_pending == Pending::kSkip) g_position += static_cast<std::size_t>(g_last_integer);
  return 0;
}
int PopString(int* length, unsigned char** text) {
  const std::size_t left = g_data.size() - g_position;
  const std::size_t count = std::min(left, static_cast<std::size_t>(g_last_integer));
  *length = static_cast<int>(count);
  // The table's type is the host's; nobody writes through it.
  *text = const_cast<unsigned char*>(reinterpret_cast<const unsigned char*>(g_data.data() + g_position));
  g_served += count;
  if (g_pending == Pending::kRead) g_position += count;
  return 0;
}
int PopInteger(int* value) {
  *value = 0;
  return 0;
}
int PushInteger(int value) {
  g_last_integer = value;
  return 0;
}
int PushText(int /*length*/, const unsigned char* /*text*/) { return 0; }
int PushUnsigned(unsigned int /*value*/) { return 0; }
int PushProperty(unsigned int /*oref*/, int /*length*/, const unsigned char* /*name*/) { return 0; }
int Nothing() { return 0; }
int PushGlobalInNamespace(int /*length*/, const unsigned char* /*name*/, int /*namespace_length*/,
                          const unsigned char* /*name_space*/) {
  return 0;
}
int Defined(int /*subscripts*/, int /*flag*/) { return 0; }

constexpr vessa::HostServices MakeTable() {
  vessa::HostServices table{};
  table.convert_result = ConvertResult;
  table.push_integer = PushInteger;
  table.push_string = PushText;
  table.push_global = PushText;
  table.push_global_in_namespace = PushGlobalInNamespace;
  table.pop_integer = PopInteger;
  table.pop_string = PopString;
  table.push_method = PushMethod;
  table.invoke_method = InvokeMethod;
  table.push_property = PushProperty;
  table.get_property = Nothing;
  table.push_object = PushUnsigned;
  table.global_defined = Defined;
  table.push_unsigned = PushUnsigned;
  return table;
}

constexpr vessa::HostServices kTable = MakeTable();

}  // namespace

const vessa::HostServices* IdleHost() { return &kTable; }

void ServeStream(std::string_view data) {
  g_data = data;
  g_position = 0;
  g_served = 0;
}

std::uint64_t BytesServed() { return g_served; }

}  // namespace bench
