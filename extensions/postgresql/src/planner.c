// Gives what meets a column the column's order before a query is planned: a literal, a parameter,
// the members of a list. Comparison would do so as well, but a hash, a partition and an index
// condition have to know the order of a value by itself.
#include "postgres.h"

#include "access/genam.h"
#include "access/htup_details.h"
#include "access/table.h"
#include "catalog/indexing.h"
#include "catalog/pg_extension.h"
#include "catalog/pg_operator.h"
#include "catalog/pg_type.h"
#include "commands/extension.h"
#include "nodes/makefuncs.h"
#include "nodes/nodeFuncs.h"
#include "nodes/supportnodes.h"
#include "optimizer/optimizer.h"
#include "optimizer/planner.h"
#include "parser/parse_coerce.h"
#include "utils/fmgroids.h"
#include "utils/inval.h"
#include "utils/lsyscache.h"
#include "utils/rel.h"
#include "utils/syscache.h"

#include "ottext.h"

PG_FUNCTION_INFO_V1(ottext_order_support);

static planner_hook_type nextPlanner;

/* Where the extension is, as far as it has been looked up. */
static struct {
  bool isKnown;
  Oid schema, type, array;
} installed;

static void Forget(Datum argument, int cache, uint32 hash) {
  installed.isKnown = false;
}

static Oid FindSchema(void) {
  const Oid extension = get_extension_oid("ot95", true);
  Oid schema = InvalidOid;
  ScanKeyData key;
  Relation relation;
  SysScanDesc scan;
  HeapTuple tuple;
  if (!OidIsValid(extension)) return InvalidOid;
  relation = table_open(ExtensionRelationId, AccessShareLock);
  ScanKeyInit(&key, Anum_pg_extension_oid, BTEqualStrategyNumber, F_OIDEQ,
              ObjectIdGetDatum(extension));
  scan = systable_beginscan(relation, ExtensionOidIndexId, true, NULL, 1, &key);
  tuple = systable_getnext(scan);
  if (HeapTupleIsValid(tuple)) schema = ((Form_pg_extension)GETSTRUCT(tuple))->extnamespace;
  systable_endscan(scan);
  table_close(relation, AccessShareLock);
  return schema;
}

static void Find(void) {
  if (installed.isKnown) return;
  installed.schema = FindSchema();
  installed.type = installed.array = InvalidOid;
  if (OidIsValid(installed.schema)) {
    installed.type = GetSysCacheOid2(TYPENAMENSP, Anum_pg_type_oid, CStringGetDatum("ottext"),
                                     ObjectIdGetDatum(installed.schema));
  }
  if (OidIsValid(installed.type)) installed.array = get_array_type(installed.type);
  installed.isKnown = OidIsValid(installed.array);
}

Oid OtTypeOid(void) {
  Find();
  return installed.type;
}

Oid OtSchemaOid(void) {
  Find();
  return installed.schema;
}

static bool IsText(Node* node) {
  const Oid type = exprType(node);
  return type == installed.type || type == installed.array;
}

/** What orders the values of an expression, where its type doesn't say so: what it is made of. */
static int32 TypmodOf(Node* node) {
  ListCell* cell;
  List* arguments = NIL;
  const int32 typmod = exprTypmod(node);
  if (typmod >= 0) return typmod;
  if (IsA(node, FuncExpr)) arguments = ((FuncExpr*)node)->args;
  if (IsA(node, OpExpr)) arguments = ((OpExpr*)node)->args;
  if (IsA(node, CoalesceExpr)) arguments = ((CoalesceExpr*)node)->args;
  if (IsA(node, RelabelType)) arguments = list_make1(((RelabelType*)node)->arg);
  foreach (cell, arguments) {
    Node* argument = lfirst(cell);
    const int32 found = IsText(argument) ? TypmodOf(argument) : -1;
    if (found >= 0) return found;
  }
  if (IsA(node, Const) && !((Const*)node)->constisnull && exprType(node) == installed.type) {
    const OtOrder order = OtViewOf(((Const*)node)->constvalue).order;
    return order != OT_NO_ORDER ? (int32)order : -1;
  }
  return -1;
}

static void GiveOrder(Node** node, int32 typmod) {
  const Oid type = exprType(*node);
  Node* coerced = coerce_to_target_type(NULL, *node, type, type, typmod, COERCION_EXPLICIT,
                                        COERCE_IMPLICIT_CAST, -1);
  if (coerced != NULL) *node = coerced;
}

/** Only what has no order receives one: two that differ are an error when they meet. */
static void MeetArguments(List* arguments) {
  Node **left, **right;
  int32 leftTypmod, rightTypmod;
  if (list_length(arguments) != 2) return;
  left = (Node**)&lfirst(list_nth_cell(arguments, 0));
  right = (Node**)&lfirst(list_nth_cell(arguments, 1));
  if (!IsText(*left) || !IsText(*right)) return;
  leftTypmod = TypmodOf(*left);
  rightTypmod = TypmodOf(*right);
  if (leftTypmod >= 0 && rightTypmod < 0) GiveOrder(right, leftTypmod);
  if (rightTypmod >= 0 && leftTypmod < 0) GiveOrder(left, rightTypmod);
}

/** The operator of a function of two ottext. */
static Oid OperatorOf(Oid function) {
  static const char* const names[][2] = {
      {"ottext_eq", "="}, {"ottext_ne", "<>"}, {"ottext_lt", "<"},     {"ottext_le", "<="},
      {"ottext_gt", ">"}, {"ottext_ge", ">="}, {"ottext_match", "=~"}, {"ottext_nmatch", "!=~"}};
  const char* name = get_func_name(function);
  for (size_t i = 0; name != NULL && i < lengthof(names); ++i) {
    if (strcmp(names[i][0], name) != 0) continue;
    return GetSysCacheOid4(OPERNAMENSP, Anum_pg_operator_oid, CStringGetDatum(names[i][1]),
                           ObjectIdGetDatum(installed.type), ObjectIdGetDatum(installed.type),
                           ObjectIdGetDatum(installed.schema));
  }
  return InvalidOid;
}

/* The bodies of functions are put in their places while a query is planned, after it was walked. */
Node* OtSimplify(SupportRequestSimplify* request) {
  List* arguments = list_copy(request->fcall->args);
  Oid op;
  if (!OidIsValid(OtTypeOid())) return NULL;
  MeetArguments(arguments);
  if (equal(arguments, request->fcall->args)) return NULL;
  op = OperatorOf(request->fcall->funcid);
  if (!OidIsValid(op)) return NULL;
  arguments = (List*)eval_const_expressions(request->root, (Node*)arguments);
  return (Node*)make_opclause(op, BOOLOID, false, linitial(arguments), lsecond(arguments),
                              InvalidOid, InvalidOid);
}

Datum ottext_order_support(PG_FUNCTION_ARGS) {
  Node* request = (Node*)PG_GETARG_POINTER(0);
  PG_RETURN_POINTER(
      IsA(request, SupportRequestSimplify) ? OtSimplify((SupportRequestSimplify*)request) : NULL);
}

static bool Walk(Node* node, void* context) {
  if (node == NULL) return false;
  if (IsA(node, Query)) return query_tree_walker((Query*)node, Walk, context, 0);
  if (IsA(node, OpExpr) || IsA(node, DistinctExpr) || IsA(node, NullIfExpr)) {
    MeetArguments(((OpExpr*)node)->args);
  }
  if (IsA(node, ScalarArrayOpExpr)) MeetArguments(((ScalarArrayOpExpr*)node)->args);
  return expression_tree_walker(node, Walk, context);
}

static PlannedStmt* PlanQuery(Query* query, const char* text, int options,
                              ParamListInfo parameters) {
  if (OidIsValid(OtTypeOid())) Walk((Node*)query, NULL);
  return (nextPlanner != NULL ? nextPlanner : standard_planner)(query, text, options, parameters);
}

void OtInstallPlanner(void) {
  nextPlanner = planner_hook;
  planner_hook = PlanQuery;
  CacheRegisterSyscacheCallback(TYPEOID, Forget, 0);
}
