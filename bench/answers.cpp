#include "bench/answers.h"

namespace bench {
namespace {

Answers* g_keeper = nullptr;
const vessa::HostServices* g_host = nullptr;

}  // namespace

template <class Text>
std::uint32_t Answers::Texts<Text>::Keep(const Text& text) {
  const auto [place, is_new] = places.try_emplace(text, static_cast<std::uint32_t>(all.size()));
  if (is_new) all += text;
  return place->second;
}

void Answers::KeepText(int length, const unsigned char* text) {
  const std::string copy(reinterpret_cast<const char*>(text), static_cast<std::size_t>(length));
  answers_.push_back({length, texts_.Keep(copy)});
}

void Answers::KeepText(int length, const std::uint16_t* text) {
  const std::u16string copy(reinterpret_cast<const char16_t*>(text), static_cast<std::size_t>(length));
  answers_.push_back({length, wide_texts_.Keep(copy)});
}

/// Those that hand something out: pass on, then keep.
struct KeepingCallbacks {
  static int ConvertResult(int type, void* receiver) {
    const int status = g_host->convert_result(type, receiver);
    if (type == vessa::kConvertToInteger) g_keeper->Keep(*static_cast<const std::int32_t*>(receiver));
    return status;
  }
  static int PopInteger(int* value) {
    const int status = g_host->pop_integer(value);
    g_keeper->Keep(*value);
    return status;
  }
  static int PopString(int* length, unsigned char** text) {
    const int status = g_host->pop_string(length, text);
    g_keeper->KeepText(*length, *text);
    return status;
  }
  static int PopWideString(int* length, std::uint16_t** text) {
    const int status = g_host->pop_wide_string(length, text);
    g_keeper->KeepText(*length, *text);
    return status;
  }
};

const vessa::HostServices* Answers::KeepFrom(const vessa::HostServices* host) {
  static vessa::HostServices table{};
  table = *host;
  table.convert_result = KeepingCallbacks::ConvertResult;
  table.pop_integer = KeepingCallbacks::PopInteger;
  table.pop_string = KeepingCallbacks::PopString;
  table.pop_wide_string = KeepingCallbacks::PopWideString;
  answers_.clear();
  g_keeper = this;
  g_host = host;
  return &table;
}

struct AnsweringCallbacks {
  static const Answers::Answer* next;
  static unsigned char* texts;
  static std::uint16_t* wide_texts;

  static int ConvertResult(int type, void* receiver) {
    if (type == vessa::kConvertToInteger) {
      *static_cast<std::int32_t*>(receiver) = next++->number;
    } else {
      static_cast<vessa::HostString*>(receiver)->count = 0;
    }
    return 0;
  }
  static int PopInteger(int* value) {
    *value = next++->number;
    return 0;
  }
  static int PopString(int* length, unsigned char** text) {
    *length = next->number;
    *text = texts + next++->text_at;
    return 0;
  }
  static int PopWideString(int* length, std::uint16_t** text) {
    *length = next->number;
    *text = wide_texts + next++->text_at;
    return 0;
  }

  static int PushInteger(int /*value*/) { return 0; }
  static int PushText(int /*length*/, const unsigned char* /*text*/) { return 0; }
  static int PushGlobalInNamespace(int /*length*/, const unsigned char* /*name*/, int /*namespace_length*/,
                                   const unsigned char* /*name_space*/) {
    return 0;
  }
  static int PushMethod(unsigned int /*oref*/, int /*length*/, const unsigned char* /*name*/,
                        int /*wanted*/) {
    return 0;
  }
  static int PushProperty(unsigned int /*oref*/, int /*length*/, const unsigned char* /*name*/) { return 0; }
  static int InvokeMethod(int /*arguments*/) { return 0; }
  static int GetProperty() { return 0; }
  static int GlobalGet(int /*subscripts*/, int /*flag*/) { return 0; }
  static int GlobalOrder(int /*subscripts*/, int /*direction*/, int /*value_wanted*/) { return 0; }
};

const Answers::Answer* AnsweringCallbacks::next = nullptr;
unsigned char* AnsweringCallbacks::texts = nullptr;
std::uint16_t* AnsweringCallbacks::wide_texts = nullptr;

const vessa::HostServices* Answers::AnswerAgain() {
  AnsweringCallbacks::texts = reinterpret_cast<unsigned char*>(texts_.all.data());
  AnsweringCallbacks::wide_texts = reinterpret_cast<std::uint16_t*>(wide_texts_.all.data());
  static vessa::HostServices table{};
  table.convert_result = AnsweringCallbacks::ConvertResult;
  table.pop_integer = AnsweringCallbacks::PopInteger;
  table.pop_string = AnsweringCallbacks::PopString;
  table.pop_wide_string = AnsweringCallbacks::PopWideString;
  table.push_integer = AnsweringCallbacks::PushInteger;
  table.push_string = AnsweringCallbacks::PushText;
  table.push_global = AnsweringCallbacks::PushText;
  table.push_global_in_namespace = AnsweringCallbacks::PushGlobalInNamespace;
  table.push_method = AnsweringCallbacks::PushMethod;
  table.push_property = AnsweringCallbacks::PushProperty;
  table.invoke_method = AnsweringCallbacks::InvokeMethod;
  table.get_property = AnsweringCallbacks::GetProperty;
  table.global_get = AnsweringCallbacks::GlobalGet;
  table.global_defined = AnsweringCallbacks::GlobalGet;
  table.global_order = AnsweringCallbacks::GlobalOrder;
  Rewind();
  return &table;
}

void Answers::Rewind() const { AnsweringCallbacks::next = answers_.data(); }

}  // namespace bench
