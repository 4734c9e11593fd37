#include "emulator/event_log.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "emulator/hex_text.h"

namespace emulator {
namespace {

constexpr std::size_t kTagDigits = 8;

/// How an argument of an event is written.
enum class Form { kTag, kNumber, kText, kHex };

struct Event {
  std::string_view name;
  std::vector<Form> forms;
};

const Event* FindEvent(std::string_view name) {
  static const std::array<Event, 9> events = {{
      {"Data", {Form::kTag, Form::kNumber, Form::kHex}},
      {"StartElement", {Form::kTag, Form::kText, Form::kNumber}},
      {"EndElement", {Form::kTag}},
      {"StartItem", {Form::kTag, Form::kNumber}},
      {"EndItem", {Form::kTag, Form::kNumber}},
      {"StartSequence", {}},
      {"EndSequence", {}},
      {"StartContent", {Form::kText}},
      {"EndContent", {}},
  }};
  const auto found =
      std::find_if(events.begin(), events.end(), [name](const Event& event) { return event.name == name; });
  return found == events.end() ? nullptr : &*found;
}

void AppendNumber(std::int64_t number, std::string& line) {
  std::array<char, 24> digits{};
  line.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
}

void AppendText(Form form, const Value& argument, std::string& line) {
  const auto* text = std::get_if<std::string>(&argument);
  const std::string converted = text == nullptr ? AsBytes(argument) : std::string();
  const std::string& bytes = text == nullptr ? converted : *text;
  if (form == Form::kText) {
    line += bytes;
  } else {
    AppendHex(bytes, line);
  }
}

bool IsEmptyText(const Value& argument) {
  const auto* text = std::get_if<std::string>(&argument);
  return text != nullptr && text->empty();
}

std::string LineOf(const Event& event, std::span<const Value> arguments) {
  std::string line(event.name);
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (event.forms[i] == Form::kHex && IsEmptyText(arguments[i])) break;
    line += ' ';
    switch (event.forms[i]) {
      case Form::kTag:
        AppendHex(static_cast<std::uint32_t>(AsInteger(arguments[i])), kTagDigits, line);
        break;
      case Form::kNumber:
        AppendNumber(AsInteger(arguments[i]), line);
        break;
      case Form::kText:
      case Form::kHex:
        AppendText(event.forms[i], arguments[i], line);
        break;
    }
  }
  return line;
}

}  // namespace

Value EventLog::Call(std::string_view method, std::span<const Value> arguments) {
  const Event* event = FindEvent(method);
  if (event == nullptr) return Object::Call(method, arguments);
  if (arguments.size() != event->forms.size()) throw HostError{kWrongParameters};
  ++count_;
  if (keep_lines_) lines_.push_back(LineOf(*event, arguments));
  if (action_) action_(method, arguments);
  if (fail_at_ > 0 && --fail_at_ == 0) throw HostError{fail_status_};
  const auto result = results_.find(method);
  return result == results_.end() ? Value(std::string()) : result->second;
}

void EventLog::Clear() {
  lines_.clear();
  count_ = 0;
}

void EventLog::Return(std::string_view event, Value value) {
  results_.insert_or_assign(std::string(event), std::move(value));
}

void EventLog::FailAt(std::uint64_t n, int status) {
  fail_at_ = n;
  fail_status_ = status;
}

void EventLog::OnEvent(std::function<void(std::string_view, std::span<const Value>)> action) {
  action_ = std::move(action);
}

}  // namespace emulator
