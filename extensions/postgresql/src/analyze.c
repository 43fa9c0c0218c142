// Statistics of a column, where its values have an order to be sorted by.
#include "postgres.h"

#include "commands/vacuum.h"

#include "ottext.h"

PG_FUNCTION_INFO_V1(ottext_typanalyze);

static AnalyzeAttrComputeStatsFunc computeStandard;

/* Literals in a column without an order can't be compared, and mustn't stop a vacuum. */
static void Compute(VacAttrStats* stats, AnalyzeAttrFetchFunc fetch, int rows, double allRows) {
  OtOrder first = OT_NO_ORDER;
  for (int row = 0; row < rows; ++row) {
    bool isNull;
    const Datum value = fetch(stats, row, &isNull);
    OtView view;
    if (isNull) continue;
    view = OtViewOf(value);
    if (first == OT_NO_ORDER) first = view.order;
    if (view.order == OT_NO_ORDER || view.order != first) return;
    OtRelease(&view);
  }
  computeStandard(stats, fetch, rows, allRows);
}

Datum ottext_typanalyze(PG_FUNCTION_ARGS) {
  VacAttrStats* stats = (VacAttrStats*)PG_GETARG_POINTER(0);
  if (!std_typanalyze(stats)) PG_RETURN_BOOL(false);
  computeStandard = stats->compute_stats; /* the same one for all columns of the type */
  stats->compute_stats = Compute;
  PG_RETURN_BOOL(true);
}
