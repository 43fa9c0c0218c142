#ifndef OT95_BENCH_REPORT_H
#define OT95_BENCH_REPORT_H

#include <string>

namespace bench {

/// Prints how good the estimates of shares are, a line a column.
void ReportEstimates();
/// Prints how good the store's estimates are on the places in a file, a line a column. Does nothing
/// without the file.
void ReportStoreEstimates(const std::string& csv);

}  // namespace bench

#endif
