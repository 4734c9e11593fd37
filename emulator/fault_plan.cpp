#include "emulator/fault_plan.h"

namespace emulator {
namespace {

Occasions Nth(std::uint64_t n, bool from_then_on) { return from_then_on ? Occasions{n} : Occasions{n, n}; }

}  // namespace

void FaultPlan::Fail(Operation operation, const Occasions& occasions, int status) {
  Add({operation, std::nullopt, occasions, status});
}

void FaultPlan::FailMethod(std::string_view method, const Occasions& occasions, int status) {
  Add({Operation::kInvokeMethod, std::string(method), occasions, status});
}

void FaultPlan::FailNth(std::uint64_t n, int status, bool from_then_on) {
  Add({std::nullopt, std::nullopt, Nth(n, from_then_on), status});
}

void FaultPlan::FailNth(Operation operation, std::uint64_t n, int status, bool from_then_on) {
  Fail(operation, Nth(n, from_then_on), status);
}

void FaultPlan::FailNthMethod(std::string_view method, std::uint64_t n, int status, bool from_then_on) {
  FailMethod(method, Nth(n, from_then_on), status);
}

void FaultPlan::Add(const Rule& rule) {
  rules_.push_back(rule);
  is_empty_ = false;
}

void FaultPlan::LieNth(Lie lie, std::uint64_t n) {
  lies_.push_back({lie, n});
  is_empty_ = false;
}

void FaultPlan::Clear() {
  rules_.clear();
  lies_.clear();
  is_empty_ = true;
  hits_ = 0;
}

int FaultPlan::StatusFor(Operation operation, std::string_view method) {
  int status = 0;
  for (Rule& rule : rules_) {
    if (rule.operation && *rule.operation != operation) continue;
    if (rule.method && *rule.method != method) continue;
    const bool fails = rule.occasions.Hold(++rule.seen);
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
