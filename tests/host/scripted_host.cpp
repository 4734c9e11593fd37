#include "tests/host/scripted_host.h"

#include "host/callin.h"

namespace vessa {
namespace {

ScriptedHost* current = nullptr;

/// Text as its characters when it is short, else as its length.
template <class Unit>
std::string Shown(int length, const Unit* text) {
  constexpr int kShownUnits = 40;
  current->last_text = text;
  if (length > kShownUnits) return "of " + std::to_string(length);
  std::string shown = "'";
  for (int i = 0; i < length; ++i) shown += static_cast<char>(text[i]);
  return shown + "'";
}

void* NewArea(LongStringDescriptor* descriptor, int length, std::size_t unit_bytes, const char* name) {
  const bool zeroed = descriptor->length == 0 && descriptor->area == nullptr;
  const int status =
      current->Note(std::string(name) + (zeroed ? " zeroed " : " dirty ") + std::to_string(length));
  if (status != 0 || !current->gives_areas) return nullptr;
  current->area.assign(static_cast<std::size_t>(length) * unit_bytes, '\0');
  descriptor->length = static_cast<std::uint32_t>(length);
  descriptor->area = current->area.data();
  return descriptor->area;
}

int PushArea(const LongStringDescriptor* descriptor, const char* name) {
  const bool own = descriptor->area == current->area.data();
  return current->Note(std::string(name) + (own ? " " : " of another area ") +
                       std::to_string(descriptor->length));
}

int ConvertResult(int type, void* receiver) {
  const int status = current->Note("ConvertResult " + std::to_string(type));
  if (type == kConvertToInteger) {
    *static_cast<std::int32_t*>(receiver) = current->integer;
  } else {
    auto* const text = static_cast<HostString*>(receiver);
    current->calls.back() += " capacity " + std::to_string(text->count);
    text->count = current->counted_length;
  }
  return status;
}

HostServices MakeTable() {
  HostServices table{};
  table.convert_result = ConvertResult;
  table.push_integer = [](int value) { return current->Note("PushInteger " + std::to_string(value)); };
  table.push_unsigned = [](unsigned value) { return current->Note("PushUnsigned " + std::to_string(value)); };
  table.push_double = [](double value) { return current->Note("PushDouble " + std::to_string(value)); };
  table.push_object = [](unsigned oref) { return current->Note("PushObject " + std::to_string(oref)); };
  table.push_string = [](int length, const unsigned char* text) {
    return current->Note("PushString " + Shown(length, text));
  };
  table.push_wide_string = [](int length, const std::uint16_t* text) {
    return current->Note("PushWideString " + Shown(length, text));
  };
  table.push_wide_string_alt = [](int length, const std::uint16_t* text) {
    return current->Note("PushWideStringAlt " + Shown(length, text));
  };
  table.push_counted = [](int length, const unsigned char* text) {
    return current->Note("PushCounted " + Shown(length, text));
  };
  table.new_long_string = [](LongStringDescriptor* descriptor, int length) {
    return NewArea(descriptor, length, 1, "NewLongString");
  };
  table.new_long_wide_string = [](LongStringDescriptor* descriptor, int length) {
    return NewArea(descriptor, length, 2, "NewLongWideString");
  };
  table.push_long_string = [](LongStringDescriptor* descriptor) {
    return PushArea(descriptor, "PushLongString");
  };
  table.push_long_wide_string = [](LongStringDescriptor* descriptor) {
    return PushArea(descriptor, "PushLongWideString");
  };
  table.push_long_wide_string_alt = [](LongStringDescriptor* descriptor) {
    return PushArea(descriptor, "PushLongWideStringAlt");
  };
  table.push_global = [](int length, const unsigned char* name) {
    return current->Note("PushGlobal " + Shown(length, name));
  };
  table.push_global_in_namespace = [](int length, const unsigned char* name, int space_length,
                                      const unsigned char* space) {
    return current->Note("PushGlobalInNamespace " + Shown(length, name) + " " + Shown(space_length, space));
  };
  table.pop_integer = [](int* value) {
    *value = current->integer;
    return current->Note("PopInteger");
  };
  table.pop_string = [](int* length, unsigned char** bytes) {
    *length = current->length;
    *bytes = current->bytes;
    return current->Note("PopString");
  };
  table.pop_wide_string = [](int* length, std::uint16_t** units) {
    *length = current->length;
    *units = current->units;
    return current->Note("PopWideString");
  };
  table.global_get = [](int subscripts, int flag) {
    return current->Note("GlobalGet " + std::to_string(subscripts) + " " + std::to_string(flag));
  };
  table.global_defined = [](int subscripts, int flag) {
    return current->Note("GlobalDefined " + std::to_string(subscripts) + " " + std::to_string(flag));
  };
  table.global_order = [](int subscripts, int direction, int value_wanted) {
    return current->Note("GlobalOrder " + std::to_string(subscripts) + " " + std::to_string(direction) + " " +
                         std::to_string(value_wanted));
  };
  table.push_method = [](unsigned oref, int length, const unsigned char* name, int wanted) {
    return current->Note("PushMethod " + std::to_string(oref) + " " + Shown(length, name) + " " +
                         std::to_string(wanted));
  };
  table.invoke_method = [](int arguments) {
    return current->Note("InvokeMethod " + std::to_string(arguments));
  };
  table.push_property = [](unsigned oref, int length, const unsigned char* name) {
    return current->Note("PushProperty " + std::to_string(oref) + " " + Shown(length, name));
  };
  table.get_property = [] { return current->Note("GetProperty"); };
  return table;
}

}  // namespace

ScriptedHost::ScriptedHost() {
  static const HostServices kTable = MakeTable();
  current = this;
  SetHostServices(&kTable);
}

ScriptedHost::~ScriptedHost() {
  SetHostServices(nullptr);
  current = nullptr;
}

int ScriptedHost::Note(const std::string& line) {
  calls.push_back(line);
  return calls.size() == fail_at ? status : 0;
}

}  // namespace vessa
