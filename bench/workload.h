#ifndef OT95_BENCH_WORKLOAD_H
#define OT95_BENCH_WORKLOAD_H

#include <benchmark/benchmark.h>

#include <string>

namespace bench {

/// Registers one workload: what we do and what the peer does, an operation a call. The two are
/// measured interleaved; `target` is our rate over the peer's that we aim at. The first call, which
/// may build what the workload needs, isn't measured: the number of repetitions rests on it.
template <class Ours, class Peer>
void Workload(const std::string& name, double target, Ours ours, Peer peer) {
  const auto add = [&](const char* side, const auto& action) {
    benchmark::RegisterBenchmark((name + side).c_str(), [action = action, target, warm = false](
                                                            benchmark::State& state) mutable {
      if (!warm) action();
      warm = true;
      for (auto _ : state) action();
      state.counters["target"] = target;
    });
  };
  add("/ours", ours);
  add("/peer", peer);
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
