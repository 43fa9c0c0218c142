#ifndef OT95_BENCH_WORKLOAD_H
#define OT95_BENCH_WORKLOAD_H

#include <benchmark/benchmark.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace bench {

/// What a workload aims at.
struct Goal {
  double ratio;             ///< Our rate over the peer's.
  double instructions = 0;  ///< An operation; 0: none is set.
  Goal(double ratioGoal, double instructionGoal = 0)
      : ratio(ratioGoal), instructions(instructionGoal) {}
};

/// One workload: what we do and what the peer does, an operation a call.
struct Workload {
  std::string name;
  Goal goal;
  std::function<void()> ours, peer;
};

/// All of them, in the order in which they were added.
std::vector<Workload>& Workloads();
inline void Add(const std::string& name, Goal goal, std::function<void()> ours,
                std::function<void()> peer) {
  Workloads().push_back({name, goal, std::move(ours), std::move(peer)});
}

/// Measures their times with Google Benchmark, which has been given its options.
void MeasureTimes();
/// Counts their instructions under callgrind: those of the workloads whose names begin with one of
/// the given ones, a dump a side. @param alone not those of the peers.
void CountInstructions(const std::vector<std::string>& names, bool alone);

void RegisterComparison();
void RegisterSorting();
void RegisterKeys();
void RegisterMatching();
void RegisterConversion();
void RegisterScalars();
void RegisterInt64();
void RegisterTemporal();
void RegisterCInterface();
void RegisterTrees();
void RegisterStore();

}  // namespace bench

#endif
