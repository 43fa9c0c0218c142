// ot95_bench CORPORA [options of Google Benchmark]
#include <cstdio>

#include "corpus.h"
#include "ot95/typemgr.h"
#include "workload.h"

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (argc != 2) {
    std::fprintf(stderr, "usage: ot95_bench CORPORA [--benchmark_...]\n");
    return 2;
  }
  ___OtTypemgrContext(1);
  bench::SetCorpusFolder(argv[1]);
  bench::RegisterComparison();
  bench::RegisterSorting();
  bench::RegisterKeys();
  bench::RegisterMatching();
  bench::RegisterConversion();
  bench::RegisterScalars();
  bench::RegisterInt64();
  bench::RegisterTemporal();
#ifdef OT95_BENCH_STORE
  bench::RegisterTrees();
  bench::RegisterStore();
#endif
  benchmark::RunSpecifiedBenchmarks();
  ___OtTypemgrContext(0);
}
