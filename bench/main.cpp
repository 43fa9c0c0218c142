// ot95_bench CORPORA [estimates] [options of Google Benchmark]
#include <cstdio>
#include <string>
#include <string_view>

#include "corpus.h"
#include "ot95/typemgr.h"
#include "report.h"
#include "workload.h"

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  const bool estimates = argc == 3 && std::string_view(argv[2]) == "estimates";
  if (argc != 2 && !estimates) {
    std::fprintf(stderr, "usage: ot95_bench CORPORA [estimates] [--benchmark_...]\n");
    return 2;
  }
  ___OtTypemgrContext(1);
  bench::SetCorpusFolder(argv[1]);
  if (estimates) {
    bench::ReportEstimates();
#ifdef OT95_BENCH_STORE
    bench::ReportStoreEstimates(std::string(argv[1]) + "/places.csv");
#endif
    ___OtTypemgrContext(0);
    return 0;
  }
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
