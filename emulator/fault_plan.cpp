#include "emulator/fault_plan.h"

namespace emulator {

void FaultPlan::FailNth(std::uint64_t n, int status, bool from_then_on) {
  rules_.push_back({std::nullopt, std::nullopt, n, status, from_then_on});
}

void FaultPlan::FailNth(Operation operation, std::uint64_t n, int status, bool from_then_on) {
  rules_.push_back({operation, std::nullopt, n, status, from_then_on});
}

void FaultPlan::FailNthMethod(std::string_view method, std::uint64_t n, int status, bool from_then_on) {
  rules_.push_back({Operation::kInvokeMethod, std::string(method), n, status, from_then_on});
}

void FaultPlan::LieNth(Lie lie, std::uint64_t n) { lies_.push_back({lie, n}); }

void FaultPlan::Clear() {
  rules_.clear();
  lies_.clear();
  hits_ = 0;
}

int FaultPlan::StatusFor(Operation operation, std::string_view method) {
  int status = 0;
  for (Rule& rule : rules_) {
    if (rule.operation && *rule.operation != operation) continue;
    if (rule.method && *rule.method != method) continue;
    ++rule.seen;
    const bool fails = rule.from_then_on ? rule.seen >= rule.n : rule.seen == rule.n;
    if (fails && status == 0) status = rule.status;
  }
  if (status != 0) ++hits_;
  return status;
}

bool FaultPlan::Lies(Lie lie) {
  bool lies = false;
  for (PlannedLie& planned : lies_) {
    if (planned.lie == lie && ++planned.seen == planned.n) lies = true;
  }
  if (lies) ++hits_;
  return lies;
}

}  // namespace emulator
