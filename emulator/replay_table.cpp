// The functions of the replaying host by position: each asks with its arguments and hands out what was recorded.

#include <algorithm>

#include "emulator/callback_items.h"
#include "emulator/host_error.h"
#include "emulator/replay_gate.h"
#include "emulator/unused_positions.h"

namespace emulator {
namespace {

using vessa::HostServices;
using vessa::LongStringDescriptor;

// --- Pushes, objects and globals: a status is all they answer ------------------------------------------------

template <Operation kOperation, class Argument>
int PushNumber(Argument value) {
  return ReplayGate::Ask(kOperation, {Number(value)}).status;
}

int PushDouble(double value) { return ReplayGate::Ask(Operation::kPushDouble, {value}).status; }

template <Operation kOperation, class Unit>
int PushText(int length, const Unit* text) {
  return ReplayGate::Ask(kOperation, {Text(length, text)}).status;
}

int PushMethod(unsigned int oref, int length, const unsigned char* name, int result_wanted) {
  return ReplayGate::Ask(Operation::kPushMethod, {Number(oref), Text(length, name), Number(result_wanted)})
      .status;
}

int PushProperty(unsigned int oref, int length, const unsigned char* name) {
  return ReplayGate::Ask(Operation::kPushProperty, {Number(oref), Text(length, name)}).status;
}

int GetProperty() { return ReplayGate::Ask(Operation::kGetProperty, {}).status; }

int PushGlobalInNamespace(int length, const unsigned char* name, int namespace_length,
                          const unsigned char* name_space) {
  return ReplayGate::Ask(Operation::kPushGlobalInNamespace,
                         {Text(length, name), Text(namespace_length, name_space)})
      .status;
}

template <Operation kOperation>
int ReadNode(int subscripts, int flag) {
  return ReplayGate::Ask(kOperation, {Number(subscripts), Number(flag)}).status;
}

int GlobalOrder(int subscripts, int direction, int value_wanted) {
  return ReplayGate::Ask(Operation::kGlobalOrder,
                         {Number(subscripts), Number(direction), Number(value_wanted)})
      .status;
}

// --- Long strings --------------------------------------------------------------------------------------------

void* NewLongString(LongStringDescriptor* descriptor, int length) {
  if (ReplayGate::Ask(Operation::kNewLongString, {Number(length)}).is_null) return nullptr;
  try {
    return ReplayGate::Areas().NewBytes(descriptor, length);
  } catch (const HostError&) {
    return nullptr;
  }
}

void* NewLongWideString(LongStringDescriptor* descriptor, int length) {
  if (ReplayGate::Ask(Operation::kNewLongWideString, {Number(length)}).is_null) return nullptr;
  try {
    return ReplayGate::Areas().NewUnits(descriptor, length);
  } catch (const HostError&) {
    return nullptr;
  }
}

int PushLongString(LongStringDescriptor* descriptor) {
  const std::vector<char> text = ContentsOf<char>(descriptor);
  return ReplayGate::Ask(Operation::kPushLongString, {Text(text)}).status;
}

template <Operation kOperation>
int PushLongUnits(LongStringDescriptor* descriptor) {
  const std::vector<std::uint16_t> text = ContentsOf<std::uint16_t>(descriptor);
  return ReplayGate::Ask(kOperation, {Text(text)}).status;
}

// --- Results -------------------------------------------------------------------------------------------------

void Fill(vessa::HostString& receiver, const RecordedAnswer& answer) {
  if (!answer.has_text) {
    receiver.count = static_cast<std::uint16_t>(answer.number.value_or(0));
    return;
  }
  const std::string& bytes = ReplayGate::HandOutBytes(answer);
  const std::size_t count = std::min(bytes.size(), vessa::HostString::kCapacity);
  std::copy_n(bytes.begin(), count, receiver.bytes);
  receiver.count = static_cast<std::uint16_t>(count);
}

int ConvertResult(int type, void* receiver) {
  const RecordedAnswer& answer = ReplayGate::Ask(Operation::kConvertResult, {Number(type)});
  if (answer.status != 0) return answer.status;
  if (type == vessa::kConvertToCountedString) {
    Fill(*static_cast<vessa::HostString*>(receiver), answer);
  } else {
    *static_cast<std::int32_t*>(receiver) = static_cast<std::int32_t>(answer.number.value_or(0));
  }
  return 0;
}

int PopInteger(int* value) {
  const RecordedAnswer& answer = ReplayGate::Ask(Operation::kPopInteger, {});
  if (answer.status == 0) *value = static_cast<int>(answer.number.value_or(0));
  return answer.status;
}

/// A text whose length alone was recorded is none: the host misled the library.
template <class Text, class Unit>
void HandOut(const RecordedAnswer& answer, Text& handed_out, int* length, Unit** text) {
  *length =
      answer.has_text ? static_cast<int>(handed_out.size()) : static_cast<int>(answer.number.value_or(0));
  *text = answer.has_text ? reinterpret_cast<Unit*>(handed_out.data()) : nullptr;
}

int PopString(int* length, unsigned char** text) {
  const RecordedAnswer& answer = ReplayGate::Ask(Operation::kPopString, {});
  if (answer.status == 0) HandOut(answer, ReplayGate::HandOutBytes(answer), length, text);
  return answer.status;
}

int PopWideString(int* length, std::uint16_t** text) {
  const RecordedAnswer& answer = ReplayGate::Ask(Operation::kPopWideString, {});
  if (answer.status == 0) HandOut(answer, ReplayGate::HandOutUnits(answer), length, text);
  return answer.status;
}

// --- The table -----------------------------------------------------------------------------------------------

HostServices MakeTable() {
  HostServices table{};
  FillUnusedPositions(table);
  table.convert_result = ConvertResult;
  table.push_integer = PushNumber<Operation::kPushInteger, int>;
  table.push_double = PushDouble;
  table.push_string = PushText<Operation::kPushString, unsigned char>;
  table.push_wide_string = PushText<Operation::kPushWideString, std::uint16_t>;
  table.push_global = PushText<Operation::kPushGlobal, unsigned char>;
  table.push_global_in_namespace = PushGlobalInNamespace;
  table.pop_integer = PopInteger;
  table.pop_string = PopString;
  table.global_get = ReadNode<Operation::kGlobalGet>;
  table.push_method = PushMethod;
  table.invoke_method = PushNumber<Operation::kInvokeMethod, int>;
  table.push_property = PushProperty;
  table.get_property = GetProperty;
  table.push_object = PushNumber<Operation::kPushObject, unsigned int>;
  table.push_wide_string_alt = PushText<Operation::kPushWideStringAlt, std::uint16_t>;
  table.pop_wide_string = PopWideString;
  table.push_counted = PushText<Operation::kPushCounted, unsigned char>;
  table.global_order = GlobalOrder;
  table.global_defined = ReadNode<Operation::kGlobalDefined>;
  table.new_long_string = NewLongString;
  table.new_long_wide_string = NewLongWideString;
  table.push_long_string = PushLongString;
  table.push_long_wide_string = PushLongUnits<Operation::kPushLongWideString>;
  table.push_long_wide_string_alt = PushLongUnits<Operation::kPushLongWideStringAlt>;
  table.push_unsigned = PushNumber<Operation::kPushUnsigned, unsigned int>;
  return table;
}

}  // namespace

const HostServices* ReplayHost::Table() {
  static const HostServices table = MakeTable();
  return &table;
}

}  // namespace emulator
