#ifndef OT95_BENCH_WORKLOAD_H
#define OT95_BENCH_WORKLOAD_H

#include <benchmark/benchmark.h>

#include <string>

namespace bench {

/// Registers one workload: what we do and what the peer does, an operation a call. The two are
/// measured interleaved; `target` is our rate over the peer's that we aim at.
template <class Ours, class Peer>
void Workload(const std::string& name, double target, Ours ours, Peer peer) {
  benchmark::RegisterBenchmark((name + "/ours").c_str(), [=](benchmark::State& state) mutable {
    for (auto _ : state) ours();
    state.counters["target"] = target;
  });
  benchmark::RegisterBenchmark((name + "/peer").c_str(), [=](benchmark::State& state) mutable {
    for (auto _ : state) peer();
  });
}

void RegisterComparison();
void RegisterSorting();
void RegisterKeys();
void RegisterMatching();
void RegisterConversion();
void RegisterScalars();
void RegisterInt64();
void RegisterTemporal();
void RegisterTrees();
void RegisterStore();

}  // namespace bench

#endif
