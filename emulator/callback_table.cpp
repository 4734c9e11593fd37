#include "emulator/callback_table.h"

#include <vector>

#include "emulator/callback_gate.h"
#include "emulator/callback_items.h"
#include "emulator/unused_positions.h"

namespace emulator {
namespace {

using vessa::HostServices;
using vessa::LongStringDescriptor;

// --- Pushes --------------------------------------------------------------------------------------------------

int PushInteger(int value) {
  return CallbackGate::Pass(
      Operation::kPushInteger, [=](Machine& machine) { machine.PushInteger(value); },
      [=](Callback& callback) { callback.arguments = {Number(value)}; });
}

int PushUnsigned(unsigned int value) {
  return CallbackGate::Pass(
      Operation::kPushUnsigned, [=](Machine& machine) { machine.PushInteger(value); },
      [=](Callback& callback) { callback.arguments = {Number(value)}; });
}

int PushDouble(double value) {
  return CallbackGate::Pass(
      Operation::kPushDouble, [=](Machine& machine) { machine.PushDouble(value); },
      [=](Callback& callback) { callback.arguments = {value}; });
}

int PushObject(unsigned int oref) {
  return CallbackGate::Pass(
      Operation::kPushObject, [=](Machine& machine) { machine.PushObject(oref); },
      [=](Callback& callback) { callback.arguments = {Number(oref)}; });
}

template <Operation kOperation>
int PushBytes(int length, const unsigned char* text) {
  return CallbackGate::Pass(
      kOperation, [=](Machine& machine) { machine.PushBytes(length, text); },
      [=](Callback& callback) { callback.arguments = {Text(length, text)}; });
}

template <Operation kOperation>
int PushUnits(int length, const std::uint16_t* text) {
  return CallbackGate::Pass(
      kOperation, [=](Machine& machine) { machine.PushUnits(length, text); },
      [=](Callback& callback) { callback.arguments = {Text(length, text)}; });
}

// --- Long strings --------------------------------------------------------------------------------------------

void* NewLongString(LongStringDescriptor* descriptor, int length) {
  void* area = nullptr;
  CallbackGate::Pass(
      Operation::kNewLongString, [&](Machine& machine) { area = machine.NewLongBytes(descriptor, length); },
      [=](Callback& callback) { callback.arguments = {Number(length)}; });
  return area;
}

void* NewLongWideString(LongStringDescriptor* descriptor, int length) {
  void* area = nullptr;
  CallbackGate::Pass(
      Operation::kNewLongWideString,
      [&](Machine& machine) { area = machine.NewLongUnits(descriptor, length); },
      [=](Callback& callback) { callback.arguments = {Number(length)}; });
  return area;
}

/// What the push takes away; nothing unless somebody watches.
template <class Unit>
std::vector<Unit> ContentsForWatchers(const LongStringDescriptor* descriptor) {
  return CallbackGate::IsWatched() ? ContentsOf<Unit>(descriptor) : std::vector<Unit>();
}

int PushLongString(LongStringDescriptor* descriptor) {
  const std::vector<char> text = ContentsForWatchers<char>(descriptor);
  return CallbackGate::Pass(
      Operation::kPushLongString, [=](Machine& machine) { machine.PushLongBytes(descriptor); },
      [&text](Callback& callback) { callback.arguments = {std::string_view(text.data(), text.size())}; });
}

template <Operation kOperation>
int PushLongUnits(LongStringDescriptor* descriptor) {
  const std::vector<std::uint16_t> text = ContentsForWatchers<std::uint16_t>(descriptor);
  return CallbackGate::Pass(
      kOperation, [=](Machine& machine) { machine.PushLongUnits(descriptor); },
      [&text](Callback& callback) { callback.arguments = {Text(text)}; });
}

// --- Objects -------------------------------------------------------------------------------------------------

int PushMethod(unsigned int oref, int length, const unsigned char* name, int result_wanted) {
  return CallbackGate::Pass(
      Operation::kPushMethod,
      [=](Machine& machine) { machine.PushMethod(oref, length, name, result_wanted); },
      [=](Callback& callback) {
        callback.arguments = {Number(oref), Text(length, name), Number(result_wanted)};
      });
}

int InvokeMethod(int arguments) {
  return CallbackGate::Pass(
      Operation::kInvokeMethod, [=](Machine& machine) { machine.InvokeMethod(arguments); },
      [=](Callback& callback) { callback.arguments = {Number(arguments)}; });
}

int PushProperty(unsigned int oref, int length, const unsigned char* name) {
  return CallbackGate::Pass(
      Operation::kPushProperty, [=](Machine& machine) { machine.PushProperty(oref, length, name); },
      [=](Callback& callback) {
        callback.arguments = {Number(oref), Text(length, name)};
      });
}

int GetProperty() {
  return CallbackGate::Pass(
      Operation::kGetProperty, [](Machine& machine) { machine.GetProperty(); }, [](Callback&) {});
}

// --- Globals -------------------------------------------------------------------------------------------------

int PushGlobal(int length, const unsigned char* name) {
  return CallbackGate::Pass(
      Operation::kPushGlobal, [=](Machine& machine) { machine.PushGlobal(length, name); },
      [=](Callback& callback) { callback.arguments = {Text(length, name)}; });
}

int PushGlobalInNamespace(int length, const unsigned char* name, int namespace_length,
                          const unsigned char* name_space) {
  return CallbackGate::Pass(
      Operation::kPushGlobalInNamespace,
      [=](Machine& machine) { machine.PushGlobalInNamespace(length, name, namespace_length, name_space); },
      [=](Callback& callback) {
        callback.arguments = {Text(length, name), Text(namespace_length, name_space)};
      });
}

int GlobalGet(int subscripts, int flag) {
  return CallbackGate::Pass(
      Operation::kGlobalGet, [=](Machine& machine) { machine.GlobalGet(subscripts, flag); },
      [=](Callback& callback) {
        callback.arguments = {Number(subscripts), Number(flag)};
      });
}

int GlobalDefined(int subscripts, int flag) {
  return CallbackGate::Pass(
      Operation::kGlobalDefined, [=](Machine& machine) { machine.GlobalDefined(subscripts, flag); },
      [=](Callback& callback) {
        callback.arguments = {Number(subscripts), Number(flag)};
      });
}

int GlobalOrder(int subscripts, int direction, int value_wanted) {
  return CallbackGate::Pass(
      Operation::kGlobalOrder,
      [=](Machine& machine) { machine.GlobalOrder(subscripts, direction, value_wanted); },
      [=](Callback& callback) {
        callback.arguments = {Number(subscripts), Number(direction), Number(value_wanted)};
      });
}

// --- Results -------------------------------------------------------------------------------------------------

void DescribeConversion(int type, const void* receiver, Callback& callback) {
  callback.arguments = {Number(type)};
  if (callback.status != 0) return;
  if (type == vessa::kConvertToInteger) {
    callback.result = Number(*static_cast<const std::int32_t*>(receiver));
    return;
  }
  const auto& string = *static_cast<const vessa::HostString*>(receiver);
  callback.result = Bytes(string.count);
  if (string.count > vessa::HostString::kCapacity) return;
  callback.bytes = {reinterpret_cast<const char*>(string.bytes), string.count};
}

int ConvertResult(int type, void* receiver) {
  return CallbackGate::Pass(
      Operation::kConvertResult,
      [=](Machine& machine) {
        machine.ConvertResult(type, receiver);
        if (type != vessa::kConvertToCountedString) return;
        if (CallbackGate::Lies(Lie::kCountAboveCapacity)) {
          static_cast<vessa::HostString*>(receiver)->count = UINT16_MAX;
        }
      },
      [=](Callback& callback) { DescribeConversion(type, receiver, callback); });
}

int PopInteger(int* value) {
  return CallbackGate::Pass(
      Operation::kPopInteger,
      [=](Machine& machine) {
        if (value == nullptr) throw HostError{kInvalidArgument};
        *value = machine.PopInteger();
      },
      [=](Callback& callback) {
        if (callback.status == 0) callback.result = Number(*value);
      });
}

/// Hands out what was popped, or what the fault plan has instead.
template <class Text, class Unit>
void HandOut(Text& popped, int* length, Unit** text) {
  *length = static_cast<int>(popped.size());
  *text = reinterpret_cast<Unit*>(popped.data());
  if (CallbackGate::Lies(Lie::kNegativeLength)) *length = -1;
  if (CallbackGate::Lies(Lie::kNoBytes)) {
    *length = *length > 0 ? *length : 1;
    *text = nullptr;
  }
}

int PopString(int* length, unsigned char** text) {
  return CallbackGate::Pass(
      Operation::kPopString,
      [=](Machine& machine) {
        if (length == nullptr || text == nullptr) throw HostError{kInvalidArgument};
        HandOut(machine.PopBytes(), length, text);
      },
      [=](Callback& callback) {
        if (callback.status != 0) return;
        callback.result = Bytes(*length);
        if (*length < 0 || *text == nullptr) return;
        callback.bytes = {reinterpret_cast<const char*>(*text), static_cast<std::size_t>(*length)};
      });
}

int PopWideString(int* length, std::uint16_t** text) {
  return CallbackGate::Pass(
      Operation::kPopWideString,
      [=](Machine& machine) {
        if (length == nullptr || text == nullptr) throw HostError{kInvalidArgument};
        HandOut(machine.PopUnits(), length, text);
      },
      [=](Callback& callback) {
        if (callback.status != 0) return;
        callback.result = Units(*length);
        if (*length < 0 || *text == nullptr) return;
        callback.units = {*text, static_cast<std::size_t>(*length)};
      });
}

// --- The table -----------------------------------------------------------------------------------------------

HostServices MakeTable() {
  HostServices table{};
  FillUnusedPositions(table);
  table.convert_result = ConvertResult;
  table.push_integer = PushInteger;
  table.push_double = PushDouble;
  table.push_string = PushBytes<Operation::kPushString>;
  table.push_wide_string = PushUnits<Operation::kPushWideString>;
  table.push_global = PushGlobal;
  table.push_global_in_namespace = PushGlobalInNamespace;
  table.pop_integer = PopInteger;
  table.pop_string = PopString;
  table.global_get = GlobalGet;
  table.push_method = PushMethod;
  table.invoke_method = InvokeMethod;
  table.push_property = PushProperty;
  table.get_property = GetProperty;
  table.push_object = PushObject;
  table.push_wide_string_alt = PushUnits<Operation::kPushWideStringAlt>;
  table.pop_wide_string = PopWideString;
  table.push_counted = PushBytes<Operation::kPushCounted>;
  table.global_order = GlobalOrder;
  table.global_defined = GlobalDefined;
  table.new_long_string = NewLongString;
  table.new_long_wide_string = NewLongWideString;
  table.push_long_string = PushLongString;
  table.push_long_wide_string = PushLongUnits<Operation::kPushLongWideString>;
  table.push_long_wide_string_alt = PushLongUnits<Operation::kPushLongWideStringAlt>;
  table.push_unsigned = PushUnsigned;
  return table;
}

}  // namespace

const HostServices& CallbackTable() {
  static const HostServices table = MakeTable();
  return table;
}

}  // namespace emulator
