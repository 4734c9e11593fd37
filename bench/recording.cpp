#include "bench/recording.h"

#include "bench/make_callbacks.h"
#include "bench/shared_replay.h"

namespace bench {
namespace {

Recording* g_recording = nullptr;
const vessa::HostServices* g_host = nullptr;

}  // namespace

/// The recording table's functions: note, then pass on.
struct RecordingCallbacks {
  using Operation = RecordedCallback::Operation;

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

void Recording::Replay(const vessa::HostServices& host, Caller caller) const {
  if (caller == Caller::kSharedObject) {
    ReplayFromSharedObject(callbacks_, host);
  } else {
    MakeCallbacks(callbacks_, host);
  }
}

}  // namespace bench
