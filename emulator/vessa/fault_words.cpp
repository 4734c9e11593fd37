#include "emulator/vessa/fault_words.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <string_view>

#include "emulator/vessa/exit_code.h"
#include "emulator/vessa/printable_text.h"

namespace emulator::tool {
namespace {

/// What the library calls at objects of the host.
constexpr std::array<std::string_view, 14> kMethods = {
    "Peek", "Skip",       "Read",    "Write",     "StartContent",  "EndContent",  "StartElement",
    "Data", "EndElement", "EndItem", "StartItem", "StartSequence", "EndSequence", "ShouldStopDecomposition",
};

bool IsMethod(std::string_view name) {
  return std::find(kMethods.begin(), kMethods.end(), name) != kMethods.end();
}

template <class Number>
bool TakeNumber(std::string_view& text, Number& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc()) return false;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return true;
}

bool Take(std::string_view& text, std::string_view front) {
  if (!text.starts_with(front)) return false;
  text.remove_prefix(front.size());
  return true;
}

/// "5", "5+", "5..9", "5+2", "5..9+2"
std::optional<Occasions> ReadOccasions(std::string_view text) {
  Occasions occasions;
  if (!TakeNumber(text, occasions.first) || occasions.first == 0) return std::nullopt;
  const bool is_one = text.empty();
  if (Take(text, "..") && !TakeNumber(text, occasions.last)) return std::nullopt;
  if (Take(text, "+") && !text.empty() && !TakeNumber(text, occasions.step)) return std::nullopt;
  if (is_one) occasions.last = occasions.first;
  if (!text.empty() || occasions.step == 0 || occasions.last < occasions.first) return std::nullopt;
  return occasions;
}

struct Fault {
  std::string_view name;
  std::optional<int> status;
  std::optional<Occasions> occasions = Occasions();
};

Fault ReadFault(std::string_view word) {
  Fault fault;
  fault.name = word.substr(0, word.find(':'));
  word.remove_prefix(fault.name.size());
  while (Take(word, ":")) {
    std::string_view part = word.substr(0, word.find(':'));
    word.remove_prefix(part.size());
    if (Take(part, "when=")) {
      fault.occasions = ReadOccasions(part);
      continue;
    }
    int status = 0;
    const bool is_read = Take(part, "error=") && TakeNumber(part, status) && part.empty() && status != 0;
    fault.status = is_read ? std::optional(status) : std::nullopt;
    if (!is_read) break;
  }
  return fault;
}

void AddFault(const std::string& word, FaultPlan& plan) {
  const Fault fault = ReadFault(word);
  if (!fault.status || !fault.occasions) {
    throw ToolError(
        kWrongUsage,
        fmt::format("--inject {}: expected NAME:error=CODE[:when=N|N+|N..M|N+STEP], with a code other "
                    "than 0 and N from 1",
                    PrintableUtf8(word)));
  }
  if (const std::optional<Operation> operation = FindOperation(fault.name)) {
    plan.Fail(*operation, *fault.occasions, *fault.status);
  } else if (IsMethod(fault.name)) {
    plan.FailMethod(fault.name, *fault.occasions, *fault.status);
  } else {
    throw ToolError(kWrongUsage,
                    fmt::format("--inject {}: neither a callback, such as InvokeMethod, nor a method of "
                                "a host object, such as Peek",
                                PrintableUtf8(word)));
  }
}

}  // namespace

void FaultWords::Define(CLI::App& app) {
  app.add_option(
         "--inject", words_,
         "Make a callback fail, or a method that the library invokes: NAME:error=CODE:when=N, for the Nth "
         "use; "
         "N+ from the Nth on, N..M from the Nth to the Mth, N+STEP every STEPth from the Nth on [all]")
      ->type_name("NAME:error=CODE[:when=...]")
      ->allow_extra_args(false);
}

void FaultWords::AddTo(FaultPlan& plan) const {
  for (const std::string& word : words_) AddFault(word, plan);
}

}  // namespace emulator::tool
