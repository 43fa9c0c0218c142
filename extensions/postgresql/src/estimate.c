// What a query planner expects of < <= > >= =~ and !=~: the most common values are tried, and
// between two values of the histogram a value has its place by its sort key.
#include "postgres.h"

#include <math.h>

#include "access/htup_details.h"
#include "access/stratnum.h"
#include "catalog/pg_operator.h"
#include "catalog/pg_statistic.h"
#include "nodes/nodeFuncs.h"
#include "optimizer/optimizer.h"
#include "optimizer/pathnode.h"
#include "utils/lsyscache.h"
#include "utils/selfuncs.h"

#include "ottext.h"

PG_FUNCTION_INFO_V1(ottext_ltsel);
PG_FUNCTION_INFO_V1(ottext_lesel);
PG_FUNCTION_INFO_V1(ottext_gtsel);
PG_FUNCTION_INFO_V1(ottext_gesel);
PG_FUNCTION_INFO_V1(ottext_matchsel);
PG_FUNCTION_INFO_V1(ottext_nmatchsel);
PG_FUNCTION_INFO_V1(ottext_boundsel);

/** A run of bytes that sort keys are held against. */
typedef struct Place {
  const unsigned char* bytes;
  size_t size;
} Place;

/** The values that cut a column into stretches of equally many rows. */
typedef struct Histogram {
  AttStatsSlot slot;
  OtOrder order;
} Histogram;

static bool OpenHistogram(VariableStatData* variable, OtOrder order, Histogram* histogram) {
  if (!HeapTupleIsValid(variable->statsTuple) ||
      !get_attstatsslot(&histogram->slot, variable->statsTuple, STATISTIC_KIND_HISTOGRAM,
                        InvalidOid, ATTSTATSSLOT_VALUES)) {
    return false;
  }
  histogram->order = order;
  if (histogram->slot.nvalues >= 2) return true;
  free_attstatsslot(&histogram->slot);
  return false;
}

/** The key of a value of the histogram, to be freed. */
static void KeyAt(const Histogram* histogram, int index, OtKey* key) {
  OtView view = OtViewOf(histogram->slot.values[index]);
  OtKeyOf(OtMeet(view.order, histogram->order), &view, key);
  OtRelease(&view);
}

static double NumberOf(Place place, size_t from) {
  double number = 0;
  for (size_t at = from; at < from + 8; ++at) {
    number = number * 256 + (at < place.size ? place.bytes[at] : 0);
  }
  return number;
}

/** Where a place is between two others, from 0 to 1: by eight bytes behind what these share. */
static double Between(Place low, Place high, Place place) {
  size_t common = 0;
  double first, last;
  while (common < low.size && common < high.size && low.bytes[common] == high.bytes[common]) {
    ++common;
  }
  first = NumberOf(low, common);
  last = NumberOf(high, common);
  if (last <= first) return 0.5;
  return Min(Max((NumberOf(place, common) - first) / (last - first), 0), 1);
}

/** What of the histogram is below a place. */
static double ShareBelow(const Histogram* histogram, Place place) {
  int low = 0, high = histogram->slot.nvalues; /* values before low are below, from high on not */
  OtKey before, behind;
  double share;
  while (low < high) {
    const int middle = low + (high - low) / 2;
    OtKey key;
    KeyAt(histogram, middle, &key);
    if (OtCompareBytes(key.bytes, key.size, place.bytes, place.size) < 0) {
      low = middle + 1;
    } else {
      high = middle;
    }
    OtFreeKey(&key);
  }
  if (low == 0) return 0;
  if (low == histogram->slot.nvalues) return 1;
  KeyAt(histogram, low - 1, &before);
  KeyAt(histogram, low, &behind);
  share = (low - 1 +
           Between((Place){before.bytes, before.size}, (Place){behind.bytes, behind.size}, place)) /
          (histogram->slot.nvalues - 1);
  OtFreeKey(&before);
  OtFreeKey(&behind);
  return share;
}

static double NullShare(const VariableStatData* variable) {
  return ((Form_pg_statistic)GETSTRUCT(variable->statsTuple))->stanullfrac;
}

/* Nobody knows that nothing or all of a column is meant. */
static double Confine(double share) {
  return Min(Max(share, 1e-6), 1 - 1e-6);
}

/** The share of the rows of one of the values that aren't most common ones. */
static double ShareOfOne(VariableStatData* variable, double common) {
  bool isDefault;
  const double distinct = get_variable_numdistinct(variable, &isDefault);
  AttStatsSlot slot;
  double others = distinct;
  if (get_attstatsslot(&slot, variable->statsTuple, STATISTIC_KIND_MCV, InvalidOid,
                       ATTSTATSSLOT_NUMBERS)) {
    others -= slot.nnumbers;
    free_attstatsslot(&slot);
  }
  return Max(1 - common - NullShare(variable), 0) / Max(others, 1);
}

/** A comparison of a column with a value. */
typedef struct Comparison {
  StrategyNumber strategy; /**< With the column on the left. */
  Oid op;                  /**< As it is written. */
  bool isColumnLeft;
  Datum value;
} Comparison;

static bool IsAbove(StrategyNumber strategy) {
  return strategy == BTGreaterStrategyNumber || strategy == BTGreaterEqualStrategyNumber;
}

static bool HasEqual(StrategyNumber strategy) {
  return strategy == BTLessEqualStrategyNumber || strategy == BTGreaterEqualStrategyNumber;
}

static double ComparisonShare(VariableStatData* variable, const Comparison* comparison) {
  double common = 0, share, within = 0.5;
  FmgrInfo function;
  Histogram histogram;
  OtView view = OtViewOf(comparison->value);
  if (!HeapTupleIsValid(variable->statsTuple)) return DEFAULT_INEQ_SEL;
  fmgr_info(get_opcode(comparison->op), &function);
  share = mcv_selectivity(variable, &function, InvalidOid, comparison->value,
                          comparison->isColumnLeft, &common);
  if (OpenHistogram(variable, view.order, &histogram)) {
    const double rest = Max(1 - common - NullShare(variable), 0);
    const double one = rest > 0 ? ShareOfOne(variable, common) / rest : 0;
    OtView head = OtViewOf(histogram.slot.values[0]);
    OtKey key;
    OtKeyOf(OtMeet(head.order, view.order), &view, &key);
    within = ShareBelow(&histogram, (Place){key.bytes, key.size});
    if (IsAbove(comparison->strategy) != HasEqual(comparison->strategy)) {
      within = Min(within + one, 1); /* below, and what is equal */
    }
    if (IsAbove(comparison->strategy)) within = 1 - within;
    OtFreeKey(&key);
    free_attstatsslot(&histogram.slot);
  }
  return share + within * Max(1 - common - NullShare(variable), 0);
}

static StrategyNumber StrategyOf(Oid op) {
  const RegProcedure estimator = get_oprrest(op);
  char* name = OidIsValid(estimator) ? get_func_name(estimator) : NULL;
  if (name == NULL) return InvalidStrategy;
  if (strcmp(name, "ottext_ltsel") == 0) return BTLessStrategyNumber;
  if (strcmp(name, "ottext_lesel") == 0) return BTLessEqualStrategyNumber;
  if (strcmp(name, "ottext_gtsel") == 0) return BTGreaterStrategyNumber;
  if (strcmp(name, "ottext_gesel") == 0) return BTGreaterEqualStrategyNumber;
  return InvalidStrategy;
}

static StrategyNumber Commuted(StrategyNumber strategy) {
  return (StrategyNumber)(BTMaxStrategyNumber + 1 - strategy);
}

/** Reads a clause as a comparison of the column with a known value. */
static bool ReadComparison(PlannerInfo* root, Node* clause, int varRelid,
                           VariableStatData* variable, Comparison* comparison) {
  Node* other;
  if (!is_opclause(clause) || list_length(((OpExpr*)clause)->args) != 2) return false;
  comparison->op = ((OpExpr*)clause)->opno;
  comparison->strategy = StrategyOf(comparison->op);
  if (comparison->strategy == InvalidStrategy ||
      !get_restriction_variable(root, ((OpExpr*)clause)->args, varRelid, variable, &other,
                                &comparison->isColumnLeft)) {
    return false;
  }
  if (!comparison->isColumnLeft) comparison->strategy = Commuted(comparison->strategy);
  if (IsA(other, Const) && !((Const*)other)->constisnull &&
      ((Const*)other)->consttype == OtTypeOid()) {
    comparison->value = ((Const*)other)->constvalue;
    return true;
  }
  ReleaseVariableStats(*variable);
  return false;
}

/** The share of the rows above a lower end, of which a clause tells the upper one; 1 without one.
 */
static double ShareOfPartner(PlannerInfo* root, VariableStatData* variable, int varRelid) {
  double share = 1;
  ListCell* cell;
  if (variable->rel == NULL) return 1;
  foreach (cell, variable->rel->baserestrictinfo) {
    Node* clause = (Node*)lfirst_node(RestrictInfo, cell)->clause;
    VariableStatData partner;
    Comparison comparison;
    if (!ReadComparison(root, clause, varRelid, &partner, &comparison)) continue;
    if (IsAbove(comparison.strategy) && equal(partner.var, variable->var)) {
      share = Min(share, ComparisonShare(&partner, &comparison));
    }
    ReleaseVariableStats(partner);
  }
  return share;
}

/* The server multiplies what clauses let through. Two that hold a column from both sides don't
   depend on chance: the upper one answers what it leaves of the lower one, so that the product is
   right. */
static double ShareWithPartner(PlannerInfo* root, VariableStatData* variable, int varRelid,
                               const Comparison* comparison) {
  const double share = ComparisonShare(variable, comparison);
  double lower, all;
  if (IsAbove(comparison->strategy)) return share;
  lower = ShareOfPartner(root, variable, varRelid);
  if (lower >= 1 || lower <= 0) return share;
  all = HeapTupleIsValid(variable->statsTuple) ? 1 - NullShare(variable) : 1;
  return Max(share + lower - all, 1e-6) / lower;
}

static Datum EstimateComparison(FunctionCallInfo fcinfo) {
  PlannerInfo* root = (PlannerInfo*)PG_GETARG_POINTER(0);
  const int varRelid = PG_GETARG_INT32(3);
  OpExpr clause = {
      .xpr.type = T_OpExpr, .opno = PG_GETARG_OID(1), .args = (List*)PG_GETARG_POINTER(2)};
  VariableStatData variable;
  Comparison comparison;
  double share;
  if (!ReadComparison(root, (Node*)&clause, varRelid, &variable, &comparison)) {
    PG_RETURN_FLOAT8(DEFAULT_INEQ_SEL);
  }
  share = ShareWithPartner(root, &variable, varRelid, &comparison);
  ReleaseVariableStats(variable);
  PG_RETURN_FLOAT8(Confine(share));
}

Datum ottext_ltsel(PG_FUNCTION_ARGS) {
  return EstimateComparison(fcinfo);
}

Datum ottext_lesel(PG_FUNCTION_ARGS) {
  return EstimateComparison(fcinfo);
}

Datum ottext_gtsel(PG_FUNCTION_ARGS) {
  return EstimateComparison(fcinfo);
}

Datum ottext_gesel(PG_FUNCTION_ARGS) {
  return EstimateComparison(fcinfo);
}

/** What of the histogram lies at an end of a range, and behind it. */
static void SharesOfRange(const Histogram* histogram, const OtBound* range, double* from,
                          double* to) {
  *from = ShareBelow(histogram, (Place){range->bytes, (size_t)range->lowerSize});
  *to = range->isLimited
            ? ShareBelow(histogram, (Place){range->bytes + range->lowerSize, OtUpperSize(range)})
            : 1;
}

/** Whether all that lies in the range of a pattern matches it: its one wildcard is a star at the
   end, and nothing but letters counts. */
static bool IsOnlyPrefix(const OtView* pattern) {
  const unsigned letters = OT95_IGNORE_CASE | OT95_IGNORE_ACCENT;
  const char* end = pattern->text + pattern->size;
  const char* wildcard = pattern->text;
  if ((OtOptionsOf(pattern->order) & letters) != letters) return false;
  while (wildcard != end && *wildcard != '*' && *wildcard != '?') ++wildcard;
  return wildcard + 1 == end && *wildcard == '*';
}

/** How probable it is that a text which begins as the pattern does goes on as it does. */
static double GuessOfRest(const OtView* pattern) {
  double share = 1;
  size_t at = 0;
  while (at < pattern->size && pattern->text[at] != '*' && pattern->text[at] != '?') ++at;
  for (; at < pattern->size; ++at) {
    if (pattern->text[at] == '*') share *= 5;
    if (pattern->text[at] == '?') share *= 0.9;
    if (pattern->text[at] != '*' && pattern->text[at] != '?') share *= 0.2;
    share = Min(share, 1);
  }
  return share;
}

/** The share of the histogram's values in a range that match: asked where there are enough of them.
 */
static double ShareOfRest(const Histogram* histogram, FmgrInfo* match, Datum value,
                          const OtView* pattern, double from, double to) {
  const int first = (int)ceil(from * (histogram->slot.nvalues - 1));
  const int last = (int)floor(to * (histogram->slot.nvalues - 1));
  const double asked = last - first + 1, weight = Min(asked / 100, 1);
  int matches = 0;
  if (IsOnlyPrefix(pattern)) return 1;
  if (asked < 10) return GuessOfRest(pattern);
  for (int i = first; i <= last; ++i) {
    matches += DatumGetBool(FunctionCall2(match, histogram->slot.values[i], value));
  }
  /* Of a hundred values that don't match half a one may. */
  return Max(matches, 0.5) / asked * weight + GuessOfRest(pattern) * (1 - weight);
}

static double MatchShare(VariableStatData* variable, FmgrInfo* match, Datum value) {
  OtView pattern = OtViewOf(value);
  double common = 0, share, within = DEFAULT_MATCH_SEL;
  Histogram histogram;
  share = mcv_selectivity(variable, match, InvalidOid, value, true, &common);
  if (OpenHistogram(variable, pattern.order, &histogram)) {
    double from, to;
    OtView head = OtViewOf(histogram.slot.values[0]);
    pattern.order = OtMeet(head.order, pattern.order);
    SharesOfRange(&histogram, OtMakeBound(&pattern, false), &from, &to);
    within = Max(to - from, 0) * ShareOfRest(&histogram, match, value, &pattern, from, to);
    free_attstatsslot(&histogram.slot);
  }
  return share + within * Max(1 - common - NullShare(variable), 0);
}

/** @param op =~ itself, of which the share is asked also for its negator. */
static double EstimateMatch(FunctionCallInfo fcinfo, Oid op, double* nulls) {
  VariableStatData variable;
  Node* other;
  bool isColumnLeft;
  double share = DEFAULT_MATCH_SEL;
  *nulls = 0;
  if (!get_restriction_variable((PlannerInfo*)PG_GETARG_POINTER(0), (List*)PG_GETARG_POINTER(2),
                                PG_GETARG_INT32(3), &variable, &other, &isColumnLeft)) {
    return share;
  }
  if (isColumnLeft && HeapTupleIsValid(variable.statsTuple) && IsA(other, Const)) {
    FmgrInfo match;
    const Const* constant = (const Const*)other;
    *nulls = NullShare(&variable);
    fmgr_info(get_opcode(op), &match);
    share = constant->constisnull ? 0 : MatchShare(&variable, &match, constant->constvalue);
  }
  ReleaseVariableStats(variable);
  return share;
}

Datum ottext_matchsel(PG_FUNCTION_ARGS) {
  double nulls;
  PG_RETURN_FLOAT8(Confine(EstimateMatch(fcinfo, PG_GETARG_OID(1), &nulls)));
}

Datum ottext_nmatchsel(PG_FUNCTION_ARGS) {
  double nulls;
  const double share = EstimateMatch(fcinfo, get_negator(PG_GETARG_OID(1)), &nulls);
  PG_RETURN_FLOAT8(Confine(1 - nulls - share));
}

/** An end of a pattern's range. As the two ends come in a pair, the upper one answers what it
   leaves of what the lower one lets through. */
Datum ottext_boundsel(PG_FUNCTION_ARGS) {
  VariableStatData variable;
  Node* other;
  bool isColumnLeft;
  double share = 0.07; /* twice makes the server's own guess of a range */
  Histogram histogram;
  if (!get_restriction_variable((PlannerInfo*)PG_GETARG_POINTER(0), (List*)PG_GETARG_POINTER(2),
                                PG_GETARG_INT32(3), &variable, &other, &isColumnLeft)) {
    PG_RETURN_FLOAT8(share);
  }
  if (IsA(other, Const) && !((Const*)other)->constisnull) {
    const OtBound* bound = (const OtBound*)PG_DETOAST_DATUM(((Const*)other)->constvalue);
    if (OpenHistogram(&variable, bound->order, &histogram)) {
      double from, to;
      SharesOfRange(&histogram, bound, &from, &to);
      share = !bound->isUpper ? 1 - from : from < 1 ? (to - from) / (1 - from) : 0;
      free_attstatsslot(&histogram.slot);
    }
  }
  ReleaseVariableStats(variable);
  PG_RETURN_FLOAT8(Confine(share));
}
