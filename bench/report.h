#ifndef OT95_BENCH_REPORT_H
#define OT95_BENCH_REPORT_H

namespace bench {

/// Prints how good the estimates of shares are, a line a column.
void ReportEstimates();

}  // namespace bench

#endif
