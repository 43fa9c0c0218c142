// ot95_bench CORPORA [options of Google Benchmark]
// ot95_bench CORPORA estimates
// ot95_bench CORPORA count|count-ours [NAME...]   under callgrind, see CountInstructions
#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>

#include "corpus.h"
#include "ot95/typemgr.h"
#include "report.h"
#include "workload.h"

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  const std::string_view mode = argc > 2 ? argv[2] : "";
  const bool estimates = argc == 3 && mode == "estimates";
  const bool alone = mode == "count-ours";
  const bool count = mode == "count" || alone;
  if (argc != 2 && !estimates && !count) {
    std::fprintf(
        stderr,
        "usage: ot95_bench CORPORA [estimates|count|count-ours [NAME...]] [--benchmark_...]\n");
    return 2;
  }
  const std::vector<std::string> names(argv + std::min(argc, 3), argv + argc);
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
  bench::RegisterCInterface();
#ifdef OT95_BENCH_STORE
  bench::RegisterTrees();
  if (!count) bench::RegisterStore();  // whose time is spent in files
#endif
  if (count) {
    bench::CountInstructions(names, alone);
  } else {
    bench::MeasureTimes();
  }
  ___OtTypemgrContext(0);
}
