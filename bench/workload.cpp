// The list of workloads, and the two ways to measure it.
#include "workload.h"

#include <valgrind/callgrind.h>

#include <algorithm>
#include <chrono>

namespace bench {
namespace {

using Action = std::function<void()>;

/// The first call, which may build what the workload needs, isn't measured: the number of
/// repetitions rests on it.
void AddTimed(const Workload& workload, const char* side, const Action& action) {
  const Goal goal = workload.goal;
  benchmark::RegisterBenchmark((workload.name + side).c_str(),
                               [action, goal, warm = false](benchmark::State& state) mutable {
                                 if (!warm) action();
                                 warm = true;
                                 for (auto _ : state) action();
                                 state.counters["target"] = goal.ratio;
                                 state.counters["instructions"] = goal.instructions;
                               });
}

using Nanoseconds = std::chrono::duration<double, std::nano>;

/// What one of `count` operations takes.
Nanoseconds TimeOf(const Action& action, int count) {
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < count; ++i) action();
  return Nanoseconds(std::chrono::steady_clock::now() - start) / count;
}

/// Operations that a count is the mean of: all the names of a corpus, or few of what takes long.
/// The first ones meet code that valgrind has to translate, and tell little.
int Operations(const Action& action) {
  constexpr Nanoseconds kBudget = std::chrono::milliseconds(50);
  constexpr int kSample = 200;
  Nanoseconds taken = TimeOf(action, 1);
  if (taken < kBudget / 20) taken = std::min(TimeOf(action, kSample), TimeOf(action, kSample));
  return static_cast<int>(std::clamp(kBudget / taken, 1.0, 20000.0));
}

/// Three times, as now and then a count takes in what isn't the program's: the least is right.
void CountSide(const Workload& workload, const char* side, const Action& action) {
  action();
  const int operations = Operations(action);
  const std::string label = workload.name + side + "/" + std::to_string(operations);
  for (int round = 0; round < 3; ++round) {
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_ZERO_STATS;
    for (int i = 0; i < operations; ++i) action();
    CALLGRIND_DUMP_STATS_AT(label.c_str());
    CALLGRIND_STOP_INSTRUMENTATION;
  }
}

}  // namespace

std::vector<Workload>& Workloads() {
  static std::vector<Workload> all;
  return all;
}

void MeasureTimes() {
  for (const Workload& workload : Workloads()) {
    AddTimed(workload, "/ours", workload.ours);
    AddTimed(workload, "/peer", workload.peer);
  }
  benchmark::RunSpecifiedBenchmarks();
}

void CountInstructions(const std::vector<std::string>& names, bool alone) {
  for (const Workload& workload : Workloads()) {
    const auto begins = [&](const std::string& name) { return workload.name.starts_with(name); };
    if (!names.empty() && !std::any_of(names.begin(), names.end(), begins)) continue;
    CountSide(workload, "/ours", workload.ours);
    if (!alone) CountSide(workload, "/peer", workload.peer);
  }
}

}  // namespace bench
