// Wildcards: =~ and !=~, and how they are found through a B-tree.
#include "postgres.h"

#include "access/stratnum.h"
#include "catalog/pg_am.h"
#include "catalog/pg_proc.h"
#include "catalog/pg_type.h"
#include "nodes/makefuncs.h"
#include "nodes/nodeFuncs.h"
#include "nodes/pathnodes.h"
#include "nodes/supportnodes.h"
#include "optimizer/optimizer.h"
#include "utils/builtins.h"
#include "utils/lsyscache.h"
#include "utils/syscache.h"

#include "ottext.h"

PG_FUNCTION_INFO_V1(ottext_match);
PG_FUNCTION_INFO_V1(ottext_nmatch);
PG_FUNCTION_INFO_V1(ottext_match_support);

static bool Match(FunctionCallInfo fcinfo) {
  OtView view = OtViewOf(PG_GETARG_DATUM(0)), pattern = OtViewOf(PG_GETARG_DATUM(1));
  const OtOrder order = OtMeet(view.order, pattern.order);
  int matches;
  OtCheck(ot95_collation_match(OtCollation(order), view.text, view.size, pattern.text, pattern.size,
                               &matches),
          "match of an ottext");
  OtRelease(&view);
  OtRelease(&pattern);
  return matches != 0;
}

Datum ottext_match(PG_FUNCTION_ARGS) {
  PG_RETURN_BOOL(Match(fcinfo));
}

Datum ottext_nmatch(PG_FUNCTION_ARGS) {
  PG_RETURN_BOOL(!Match(fcinfo));
}

/** The condition `column >= lower end of the pattern`, or `column < upper end`. */
static Expr* MakeBoundCondition(SupportRequestIndexCondition* request, Node* column, Expr* pattern,
                                const char* function, StrategyNumber strategy) {
  const Oid type = OtTypeOid();
  const Oid boundType = GetSysCacheOid2(TYPENAMENSP, Anum_pg_type_oid, CStringGetDatum("otbound"),
                                        ObjectIdGetDatum(OtSchemaOid()));
  const Oid op = get_opfamily_member(request->opfamily, type, boundType, strategy);
  oidvector* types = buildoidvector(&type, 1);
  const Oid maker = GetSysCacheOid3(PROCNAMEARGSNSP, Anum_pg_proc_oid, CStringGetDatum(function),
                                    PointerGetDatum(types), ObjectIdGetDatum(OtSchemaOid()));
  Expr* end;
  if (!OidIsValid(op) || !OidIsValid(maker)) return NULL;
  end = (Expr*)makeFuncExpr(maker, boundType, list_make1(copyObject(pattern)), InvalidOid,
                            InvalidOid, COERCE_EXPLICIT_CALL);
  end = (Expr*)eval_const_expressions(request->root, (Node*)end);
  return make_opclause(op, BOOLOID, false, (Expr*)column, end, InvalidOid, InvalidOid);
}

/** Whether it is known that the pattern has an order when the plan runs. */
static bool HasOrder(Node* pattern) {
  if (exprTypmod(pattern) >= 0) return true;
  return IsA(pattern, Const) && !((Const*)pattern)->constisnull &&
         OtViewOf(((Const*)pattern)->constvalue).order != OT_NO_ORDER;
}

static Node* IndexConditions(SupportRequestIndexCondition* request) {
  List* arguments = is_opclause(request->node)     ? ((OpExpr*)request->node)->args
                    : is_funcclause(request->node) ? ((FuncExpr*)request->node)->args
                                                   : NIL;
  Node *column, *pattern;
  Expr *from, *below;
  if (request->indexarg != 0 || list_length(arguments) != 2) return NULL;
  if (request->index->relam != BTREE_AM_OID) return NULL;
  column = linitial(arguments);
  pattern = lsecond(arguments);
  if (!HasOrder(pattern) || !is_pseudo_constant_for_index(request->root, pattern, request->index)) {
    return NULL;
  }
  from = MakeBoundCondition(request, column, (Expr*)pattern, "ottext_lower_bound",
                            BTGreaterEqualStrategyNumber);
  below = MakeBoundCondition(request, column, (Expr*)pattern, "ottext_upper_bound",
                             BTLessStrategyNumber);
  request->lossy = true;
  return from != NULL && below != NULL ? (Node*)list_make2(from, below) : NULL;
}

Datum ottext_match_support(PG_FUNCTION_ARGS) {
  Node* request = (Node*)PG_GETARG_POINTER(0);
  if (IsA(request, SupportRequestSimplify)) {
    PG_RETURN_POINTER(OtSimplify((SupportRequestSimplify*)request));
  }
  PG_RETURN_POINTER(IsA(request, SupportRequestIndexCondition)
                        ? IndexConditions((SupportRequestIndexCondition*)request)
                        : NULL);
}
