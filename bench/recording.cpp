#include "bench/recording.h"

namespace bench {
namespace {

Recording* g_recording = nullptr;
const vessa::HostServices* g_host = nullptr;

}  // namespace

/// The recording table's functions: note, then pass on.
struct RecordingCallbacks {
  using Operation = Recording::Operation;

  static void Note(Operation operation, int length = 0, const void* text = nullptr, std::uint32_t value = 0) {
    g_recording->callbacks_.push_back({operation, length, text, value});
  }
  static int ConvertResult(int type, void* receiver) {
    Note(Operation::kConvertResult, type);
    return g_host->convert_result(type, receiver);
  }
  static int PushInteger(int value) {
    Note(Operation::kPushInteger, value);
    return g_host->push_integer(value);
  }
  static int PushString(int length, const unsigned char* text) {
    Note(Operation::kPushString, length, text);
    return g_host->push_string(length, text);
  }
  static int PushGlobal(int length, const unsigned char* name) {
    Note(Operation::kPushGlobal, length, name);
    return g_host->push_global(length, name);
  }
  static int PushGlobalInNamespace(int length, const unsigned char* name, int namespace_length,
                                   const unsigned char* name_space) {
    Note(Operation::kPushGlobalInNamespace, length, name);
    return g_host->push_global_in_namespace(length, name, namespace_length, name_space);
  }
  static int PopInteger(int* value) {
    Note(Operation::kPopInteger);
    return g_host->pop_integer(value);
  }
  static int PopString(int* length, unsigned char** text) {
    Note(Operation::kPopString);
    return g_host->pop_string(length, text);
  }
  static int PopWideString(int* length, std::uint16_t** text) {
    Note(Operation::kPopWideString);
    return g_host->pop_wide_string(length, text);
  }
  static int PushMethod(unsigned int oref, int length, const unsigned char* name, int wanted) {
    Note(Operation::kPushMethod, length, name, oref);
    return g_host->push_method(oref, length, name, wanted);
  }
  static int InvokeMethod(int arguments) {
    Note(Operation::kInvokeMethod, arguments);
    return g_host->invoke_method(arguments);
  }
  static int PushProperty(unsigned int oref, int length, const unsigned char* name) {
    Note(Operation::kPushProperty, length, name, oref);
    return g_host->push_property(oref, length, name);
  }
  static int GetProperty() {
    Note(Operation::kGetProperty);
    return g_host->get_property();
  }
  static int GlobalDefined(int subscripts, int flag) {
    Note(Operation::kGlobalDefined, subscripts);
    return g_host->global_defined(subscripts, flag);
  }
  static int GlobalGet(int subscripts, int flag) {
    Note(Operation::kGlobalGet, subscripts);
    return g_host->global_get(subscripts, flag);
  }
  static int GlobalOrder(int subscripts, int direction, int value_wanted) {
    Note(Operation::kGlobalOrder, subscripts, nullptr, static_cast<std::uint32_t>(value_wanted));
    return g_host->global_order(subscripts, direction, value_wanted);
  }
  static int PushUnsigned(unsigned int value) {
    Note(Operation::kPushUnsigned, 0, nullptr, value);
    return g_host->push_unsigned(value);
  }
};

const vessa::HostServices* Recording::RecordOver(const vessa::HostServices* host) {
  static vessa::HostServices table{};
  table.convert_result = RecordingCallbacks::ConvertResult;
  table.push_integer = RecordingCallbacks::PushInteger;
  table.push_string = RecordingCallbacks::PushString;
  table.push_global = RecordingCallbacks::PushGlobal;
  table.push_global_in_namespace = RecordingCallbacks::PushGlobalInNamespace;
  table.pop_integer = RecordingCallbacks::PopInteger;
  table.pop_string = RecordingCallbacks::PopString;
  table.pop_wide_string = RecordingCallbacks::PopWideString;
  table.push_method = RecordingCallbacks::PushMethod;
  table.invoke_method = RecordingCallbacks::InvokeMethod;
  table.push_property = RecordingCallbacks::PushProperty;
  table.get_property = RecordingCallbacks::GetProperty;
  table.global_defined = RecordingCallbacks::GlobalDefined;
  table.global_get = RecordingCallbacks::GlobalGet;
  table.global_order = RecordingCallbacks::GlobalOrder;
  table.push_unsigned = RecordingCallbacks::PushUnsigned;
  callbacks_.clear();
  g_recording = this;
  g_host = host;
  return &table;
}

void Recording::Replay(const vessa::HostServices& host) const {
  vessa::HostString receiver;
  int number = 0;
  unsigned char* popped = nullptr;
  std::uint16_t* popped_wide = nullptr;
  for (const Callback& callback : callbacks_) {
    const auto* text = static_cast<const unsigned char*>(callback.text);
    switch (callback.operation) {
      case Operation::kConvertResult:
        host.convert_result(callback.length, &receiver);
        break;
      case Operation::kPushInteger:
        host.push_integer(callback.length);
        break;
      case Operation::kPushString:
        host.push_string(callback.length, text);
        break;
      case Operation::kPushGlobal:
        host.push_global(callback.length, text);
        break;
      case Operation::kPushGlobalInNamespace:
        host.push_global_in_namespace(callback.length, text, 0, text);
        break;
      case Operation::kPopInteger:
        host.pop_integer(&number);
        break;
      case Operation::kPopString:
        host.pop_string(&number, &popped);
        break;
      case Operation::kPopWideString:
        host.pop_wide_string(&number, &popped_wide);
        break;
      case Operation::kPushMethod:
        host.push_method(callback.value, callback.length, text, 1);
        break;
      case Operation::kInvokeMethod:
        host.invoke_method(callback.length);
        break;
      case Operation::kPushProperty:
        host.push_property(callback.value, callback.length, text);
        break;
      case Operation::kGetProperty:
        host.get_property();
        break;
      case Operation::kGlobalDefined:
        host.global_defined(callback.length, 0);
        break;
      case Operation::kGlobalGet:
        host.global_get(callback.length, 0);
        break;
      case Operation::kGlobalOrder:
        host.global_order(callback.length, 1, static_cast<int>(callback.value));
        break;
      case Operation::kPushUnsigned:
        host.push_unsigned(callback.value);
        break;
    }
  }
}

}  // namespace bench
