// Which order each index was built in. An index over ottext, and the bounds of a partitioned table,
// are good for the version of the order that made them. The table ot_index_orders keeps it, by the
// file of an index: where that is another one the index was built anew. Nothing has to be called
// for it:
// - An operator class over ottext has a support function for options. The server calls it whenever
// a
//   process takes up an index, before any use of it; so this library is there in time.
// - A transaction that writes records, before it commits, what isn't recorded yet.
// - Before a plan runs its indexes are held against what was recorded, and before a transaction
// commits
//   those of the tables that it wrote to by other ways, as COPY does.
#include "postgres.h"

#include "access/genam.h"
#include "access/htup_details.h"
#include "access/parallel.h"
#include "access/reloptions.h"
#include "access/table.h"
#include "access/xact.h"
#include "access/xlog.h"
#include "catalog/dependency.h"
#include "catalog/index.h"
#include "catalog/indexing.h"
#include "catalog/pg_am.h"
#include "catalog/pg_class.h"
#include "catalog/pg_depend.h"
#include "catalog/pg_index.h"
#include "catalog/pg_opclass.h"
#include "catalog/pg_partitioned_table.h"
#include "executor/executor.h"
#include "funcapi.h"
#include "lib/stringinfo.h"
#include "miscadmin.h"
#include "nodes/execnodes.h"
#include "nodes/nodeFuncs.h"
#include "pgstat.h"
#include "storage/lmgr.h"
#include "storage/lock.h"
#include "utils/builtins.h"
#include "utils/fmgroids.h"
#include "utils/hsearch.h"
#include "utils/inval.h"
#include "utils/lsyscache.h"
#include "utils/memutils.h"
#include "utils/rel.h"
#include "utils/syscache.h"

#include "ottext.h"

PG_FUNCTION_INFO_V1(ottext_index_options);
PG_FUNCTION_INFO_V1(ot_check_orders);

#define OT_RECORD_COLUMNS 3 /* relation, filenode, orders */

static ExecutorStart_hook_type nextStart;

static HTAB* checked;           /* Relations that are good. */
static List* stale;             /* Relations that aren't, in memory that stays. */
static bool isUnsettled = true; /* Something may have to be recorded. */

/* What there is. */

static void AddVersion(StringInfo orders, int32 typmod) {
  const OtOrder order = OtOrderOfTypmod(typmod);
  uint64_t version = 0;
  if (orders->len != 0) appendStringInfoChar(orders, ' ');
  if (order != OT_NO_ORDER) {
    OtCheck(ot95_order_version(order & 0xff, &version), "version of an order");
    appendStringInfo(orders, "%s:%016llx", OtTagOf(order), (unsigned long long)version);
    return;
  }
  /* It can be any language: what concerns one concerns all. */
  for (unsigned language = 1; language <= 0xff; ++language) {
    ot95_language known = {.struct_size = sizeof known};
    uint64_t one;
    if (ot95_language_describe(language, &known) != OT95_OK) continue;
    OtCheck(ot95_order_version(language, &one), "version of an order");
    version = (version ^ one) * UINT64CONST(0x9ddfea08eb382d69);
  }
  appendStringInfo(orders, "*:%016llx", (unsigned long long)version);
}

/** @return false where the column isn't an ottext. */
static bool AddVersionOfColumn(StringInfo orders, Oid relation, AttrNumber column) {
  HeapTuple tuple = SearchSysCache2(ATTNUM, ObjectIdGetDatum(relation), Int16GetDatum(column));
  Form_pg_attribute attribute;
  int32 typmod;
  Oid type;
  if (!HeapTupleIsValid(tuple)) return false;
  attribute = (Form_pg_attribute)GETSTRUCT(tuple);
  typmod = attribute->atttypmod;
  type = getBaseTypeAndTypmod(attribute->atttypid, &typmod);
  ReleaseSysCache(tuple);
  if (type == OtTypeOid()) AddVersion(orders, typmod);
  return type == OtTypeOid();
}

/* A hash index holds numbers; what they are made of the table says, where it isn't an expression.
 */
static void AddVersionOfIndexColumn(StringInfo orders, Form_pg_index index, Oid operatorClass,
                                    int column) {
  const AttrNumber source = index->indkey.values[column];
  if (get_opclass_input_type(operatorClass) != OtTypeOid()) return;
  if (AddVersionOfColumn(orders, index->indexrelid, (AttrNumber)(column + 1))) return;
  if (source != 0 && AddVersionOfColumn(orders, index->indrelid, source)) return;
  AddVersion(orders, -1);
}

static void AddVersionsOfIndex(StringInfo orders, HeapTuple tuple) {
  Form_pg_index index = (Form_pg_index)GETSTRUCT(tuple);
  bool isNull;
  const oidvector* classes = (const oidvector*)DatumGetPointer(
      SysCacheGetAttr(INDEXRELID, tuple, Anum_pg_index_indclass, &isNull));
  for (int i = 0; i < index->indnkeyatts; ++i) {
    AddVersionOfIndexColumn(orders, index, classes->values[i], i);
  }
}

static void AddVersionsOfTable(StringInfo orders, HeapTuple tuple) {
  Form_pg_partitioned_table table = (Form_pg_partitioned_table)GETSTRUCT(tuple);
  for (int i = 0; i < table->partnatts; ++i) {
    const AttrNumber column = table->partattrs.values[i];
    if (column == 0) AddVersion(orders, -1);
    if (column != 0) AddVersionOfColumn(orders, table->partrelid, column);
  }
}

/** The versions of the orders of an index, or of the key of a partitioned table. */
static char* OrdersNow(Oid relation, char kind) {
  const bool isTable = kind == RELKIND_PARTITIONED_TABLE;
  HeapTuple tuple = SearchSysCache1(isTable ? PARTRELID : INDEXRELID, ObjectIdGetDatum(relation));
  ot95_versions versions = {.struct_size = sizeof versions};
  StringInfoData orders;
  initStringInfo(&orders);
  if (HeapTupleIsValid(tuple)) {
    (isTable ? AddVersionsOfTable : AddVersionsOfIndex)(&orders, tuple);
    ReleaseSysCache(tuple);
  }
  OtCheck(ot95_version(&versions), "versions of the library");
  appendStringInfo(&orders, " /%u", versions.sort_key); /* hashes are of keys */
  return orders.data;
}

/** A relation whose order counts. */
typedef struct Ordered {
  Oid relation, table, filenode;
  char kind;
} Ordered;

static bool ReadOrdered(Oid relation, Ordered* ordered) {
  HeapTuple tuple = SearchSysCache1(RELOID, ObjectIdGetDatum(relation));
  if (!HeapTupleIsValid(tuple)) return false;
  ordered->relation = relation;
  ordered->kind = ((Form_pg_class)GETSTRUCT(tuple))->relkind;
  ordered->filenode = ((Form_pg_class)GETSTRUCT(tuple))->relfilenode;
  ordered->table =
      ordered->kind == RELKIND_PARTITIONED_TABLE ? relation : IndexGetRelation(relation, true);
  ReleaseSysCache(tuple);
  return true;
}

/** What depends on an operator class: indexes and partitioned tables. */
static List* AddDependent(List* found, Oid operatorClass) {
  Relation depend = table_open(DependRelationId, AccessShareLock);
  ScanKeyData keys[2];
  SysScanDesc scan;
  HeapTuple tuple;
  ScanKeyInit(&keys[0], Anum_pg_depend_refclassid, BTEqualStrategyNumber, F_OIDEQ,
              ObjectIdGetDatum(OperatorClassRelationId));
  ScanKeyInit(&keys[1], Anum_pg_depend_refobjid, BTEqualStrategyNumber, F_OIDEQ,
              ObjectIdGetDatum(operatorClass));
  scan = systable_beginscan(depend, DependReferenceIndexId, true, NULL, 2, keys);
  while (HeapTupleIsValid(tuple = systable_getnext(scan))) {
    const Form_pg_depend row = (Form_pg_depend)GETSTRUCT(tuple);
    if (row->classid == RelationRelationId) found = list_append_unique_oid(found, row->objid);
  }
  systable_endscan(scan);
  table_close(depend, AccessShareLock);
  return found;
}

static List* AllOrdered(void) {
  static const Oid methods[] = {BTREE_AM_OID, HASH_AM_OID};
  List* found = NIL;
  for (size_t i = 0; i < lengthof(methods); ++i) {
    const Oid operatorClass =
        GetSysCacheOid3(CLAAMNAMENSP, Anum_pg_opclass_oid, ObjectIdGetDatum(methods[i]),
                        CStringGetDatum("ottext_ops"), ObjectIdGetDatum(OtSchemaOid()));
    if (OidIsValid(operatorClass)) found = AddDependent(found, operatorClass);
  }
  return found;
}

/* What was recorded. */

static Oid RecordsOid(void) {
  return OidIsValid(OtSchemaOid()) ? get_relname_relid("ot_index_orders", OtSchemaOid())
                                   : InvalidOid;
}

/** The record of a relation, to be freed; null where there is none. */
static HeapTuple FindRecord(Relation records, Oid relation) {
  const Oid index = get_relname_relid("ot_index_orders_pkey", OtSchemaOid());
  ScanKeyData key;
  SysScanDesc scan;
  HeapTuple tuple;
  ScanKeyInit(&key, 1, BTEqualStrategyNumber, F_OIDEQ, ObjectIdGetDatum(relation));
  scan = systable_beginscan(records, index, OidIsValid(index), NULL, 1, &key);
  tuple = systable_getnext(scan);
  if (HeapTupleIsValid(tuple)) tuple = heap_copytuple(tuple);
  systable_endscan(scan);
  return tuple;
}

/** The orders that were recorded of what the relation's file holds; null where none were. */
static char* RecordedOrders(Relation records, HeapTuple record, Oid filenode) {
  bool isNull;
  if (!HeapTupleIsValid(record)) return NULL;
  if (DatumGetObjectId(heap_getattr(record, 2, RelationGetDescr(records), &isNull)) != filenode) {
    return NULL;
  }
  return TextDatumGetCString(heap_getattr(record, 3, RelationGetDescr(records), &isNull));
}

static void Record(Relation records, const Ordered* ordered) {
  HeapTuple old = FindRecord(records, ordered->relation), new;
  bool nulls[OT_RECORD_COLUMNS] = {false};
  Datum values[OT_RECORD_COLUMNS] = {
      ObjectIdGetDatum(ordered->relation), ObjectIdGetDatum(ordered->filenode),
      CStringGetTextDatum(OrdersNow(ordered->relation, ordered->kind))};
  if (RecordedOrders(records, old, ordered->filenode) != NULL) return; /* by somebody else */
  new = heap_form_tuple(RelationGetDescr(records), values, nulls);
  if (HeapTupleIsValid(old)) {
    CatalogTupleUpdate(records, &old->t_self, new);
  } else {
    CatalogTupleInsert(records, new);
  }
}

/** Forgets relations that are gone. */
static void Clear(Relation records) {
  SysScanDesc scan = systable_beginscan(records, InvalidOid, false, NULL, 0, NULL);
  HeapTuple tuple;
  while (HeapTupleIsValid(tuple = systable_getnext(scan))) {
    bool isNull;
    const Oid relation =
        DatumGetObjectId(heap_getattr(tuple, 1, RelationGetDescr(records), &isNull));
    if (!SearchSysCacheExists1(RELOID, ObjectIdGetDatum(relation))) {
      CatalogTupleDelete(records, &tuple->t_self);
    }
  }
  systable_endscan(scan);
}

/* Each relation of the list, with what was recorded of it. */
typedef void (*Visit)(Relation records, const Ordered* ordered, const char* recorded,
                      void* context);

static void VisitAll(List* relations, Visit visit, void* context) {
  const Oid recordsOid = RecordsOid();
  Relation records;
  ListCell* cell;
  if (!OidIsValid(recordsOid)) return;
  records = table_open(recordsOid, AccessShareLock);
  foreach (cell, relations) {
    Ordered ordered;
    HeapTuple record;
    if (!ReadOrdered(lfirst_oid(cell), &ordered)) continue;
    if (ordered.kind == RELKIND_PARTITIONED_INDEX) continue; /* its parts count */
    record = FindRecord(records, ordered.relation);
    visit(records, &ordered, RecordedOrders(records, record, ordered.filenode), context);
  }
  table_close(records, AccessShareLock);
}

/* Holding relations against it. */

static bool IsStale(const Ordered* ordered, const char* recorded) {
  return recorded != NULL && strcmp(recorded, OrdersNow(ordered->relation, ordered->kind)) != 0;
}

pg_attribute_noreturn() static void Refuse(const Ordered* ordered, const char* recorded) {
  const char* name = get_rel_name(ordered->relation);
  const bool isTable = ordered->kind == RELKIND_PARTITIONED_TABLE;
  ereport(
      ERROR,
      (errcode(ERRCODE_OBJECT_NOT_IN_PREREQUISITE_STATE),
       isTable ? errmsg("the partitions of \"%s\" are of another order than this library's", name)
               : errmsg("index \"%s\" is in another order than this library's", name),
       errdetail("It was built with %s, and the library has %s.", recorded,
                 OrdersNow(ordered->relation, ordered->kind)),
       isTable ? errhint("Attach its partitions to a new table, which checks their rows.")
               : errhint("REINDEX INDEX %s;", quote_identifier(name))));
  pg_unreachable();
}

static void RefuseStale(Relation records, const Ordered* ordered, const char* recorded,
                        void* context) {
  if (IsStale(ordered, recorded)) Refuse(ordered, recorded);
}

static void CheckRelation(Oid relation) {
  if (hash_search(checked, &relation, HASH_FIND, NULL) != NULL) return;
  VisitAll(list_make1_oid(relation), RefuseStale, NULL);
  hash_search(checked, &relation, HASH_ENTER, NULL);
}

static void CheckIndex(Relation index) {
  if (index == NULL) return; /* a plan that is only explained */
  for (int i = 0; i < IndexRelationGetNumberOfKeyAttributes(index); ++i) {
    if (index->rd_opcintype[i] != OtTypeOid()) continue;
    CheckRelation(RelationGetRelid(index));
    return;
  }
}

static bool CheckNode(PlanState* node, void* context) {
  if (IsA(node, IndexScanState)) CheckIndex(((IndexScanState*)node)->iss_RelationDesc);
  if (IsA(node, IndexOnlyScanState)) CheckIndex(((IndexOnlyScanState*)node)->ioss_RelationDesc);
  if (IsA(node, BitmapIndexScanState)) CheckIndex(((BitmapIndexScanState*)node)->biss_RelationDesc);
  return planstate_tree_walker(node, CheckNode, context);
}

static void CheckTarget(Relation table) {
  const Oid relation = RelationGetRelid(table);
  ListCell* cell;
  if (hash_search(checked, &relation, HASH_FIND, NULL) != NULL) return;
  foreach (cell, RelationGetIndexList(table)) {
    Relation index = index_open(lfirst_oid(cell), AccessShareLock);
    CheckIndex(index);
    index_close(index, AccessShareLock);
  }
  hash_search(checked, &relation, HASH_ENTER, NULL);
}

static void CheckPlan(QueryDesc* query) {
  ListCell* cell;
  foreach (cell, query->plannedstmt->rtable) {
    const RangeTblEntry* entry = lfirst(cell);
    if (entry->rtekind == RTE_RELATION && entry->relkind == RELKIND_PARTITIONED_TABLE) {
      CheckRelation(entry->relid);
    }
  }
  if (query->planstate != NULL) CheckNode(query->planstate, NULL);
  if (query->operation == CMD_DELETE) return; /* leaves indexes alone */
  foreach (cell, query->estate->es_opened_result_relations) {
    CheckTarget(((ResultRelInfo*)lfirst(cell))->ri_RelationDesc);
  }
}

static void Start(QueryDesc* query, int flags) {
  if (nextStart != NULL) {
    nextStart(query, flags);
  } else {
    standard_ExecutorStart(query, flags);
  }
  /* A worker runs what its leader has checked. */
  if ((flags & EXEC_FLAG_EXPLAIN_ONLY) == 0 && !IsParallelWorker() && OidIsValid(OtTypeOid())) {
    CheckPlan(query);
  }
}

/* Before a transaction commits. */

static bool HasWritten(Oid table) {
  const PgStat_TableStatus* status;
  LOCKTAG tag;
  SET_LOCKTAG_RELATION(tag, MyDatabaseId, table);
  if (!LockHeldByMe(&tag, RowExclusiveLock)) return false;
  status = find_tabstat_entry(table);
  if (status == NULL) return true; /* nobody counts */
  for (const PgStat_TableXactStatus* level = status->trans; level != NULL; level = level->upper) {
    if (level->tuples_inserted > 0 || level->tuples_updated > 0) return true;
  }
  return false;
}

/** What there is to do about indexes before a commit. */
typedef struct Work {
  List* unrecorded;
  List* stale;
} Work;

static void Divide(Relation records, const Ordered* ordered, const char* recorded, void* context) {
  Work* work = context;
  if (recorded == NULL) work->unrecorded = lappend_oid(work->unrecorded, ordered->relation);
  if (IsStale(ordered, recorded)) work->stale = lappend_oid(work->stale, ordered->relation);
}

static void RecordOne(Relation records, const Ordered* ordered, const char* recorded,
                      void* context) {
  if (recorded == NULL) Record(records, ordered);
}

static void Settle(void) {
  Work work = {NIL, NIL};
  MemoryContext before;
  VisitAll(AllOrdered(), Divide, &work);
  if (work.unrecorded != NIL && !IsBinaryUpgrade) {
    Relation records = table_open(RecordsOid(), ShareRowExclusiveLock);
    Clear(records);
    VisitAll(work.unrecorded, RecordOne, NULL);
    table_close(records, NoLock); /* until the transaction ends: nobody records the same twice */
  }
  list_free(stale);
  before = MemoryContextSwitchTo(TopMemoryContext);
  stale = list_copy(work.stale);
  MemoryContextSwitchTo(before);
}

static void RefuseWritten(Relation records, const Ordered* ordered, const char* recorded,
                          void* context) {
  if (IsStale(ordered, recorded) && HasWritten(ordered->table)) Refuse(ordered, recorded);
}

static void BeforeCommit(XactEvent event, void* argument) {
  if (event != XACT_EVENT_PRE_COMMIT && event != XACT_EVENT_PRE_PREPARE) return;
  if (!TransactionIdIsValid(GetTopTransactionIdIfAny()) || !OidIsValid(OtTypeOid())) return;
  if (isUnsettled) {
    Settle();
    isUnsettled = false;
  }
  if (stale != NIL) VisitAll(stale, RefuseWritten, NULL);
}

/* A change of a relation by somebody else is settled by them. */
static void Forget(Datum argument, Oid relation) {
  if (TransactionIdIsValid(GetTopTransactionIdIfAny()) || stale != NIL) isUnsettled = true;
  if (OidIsValid(relation)) {
    hash_search(checked, &relation, HASH_REMOVE, NULL);
  } else {
    HASH_SEQ_STATUS all;
    Oid* entry;
    hash_seq_init(&all, checked);
    while ((entry = hash_seq_search(&all)) != NULL) hash_search(checked, entry, HASH_REMOVE, NULL);
  }
}

/** Called by the server when it takes up an index. There are no options. */
Datum ottext_index_options(PG_FUNCTION_ARGS) {
  init_local_reloptions((local_relopts*)PG_GETARG_POINTER(0), sizeof(int32));
  isUnsettled = true;
  PG_RETURN_VOID();
}

static void ListStale(Relation records, const Ordered* ordered, const char* recorded,
                      void* context) {
  ReturnSetInfo* result = context;
  const bool isTable = ordered->kind == RELKIND_PARTITIONED_TABLE;
  bool nulls[5] = {false};
  Datum values[5];
  if (!IsStale(ordered, recorded)) return;
  values[0] = ObjectIdGetDatum(ordered->relation);
  values[1] = ObjectIdGetDatum(ordered->table);
  values[2] = CStringGetTextDatum(recorded);
  values[3] = CStringGetTextDatum(OrdersNow(ordered->relation, ordered->kind));
  nulls[4] = isTable;
  values[4] = CStringGetTextDatum(
      psprintf("REINDEX INDEX %s;",
               quote_qualified_identifier(get_namespace_name(get_rel_namespace(ordered->relation)),
                                          get_rel_name(ordered->relation))));
  tuplestore_putvalues(result->setResult, result->setDesc, values, nulls);
}

/** Indexes and partitioned tables that the library refuses to use. */
Datum ot_check_orders(PG_FUNCTION_ARGS) {
  InitMaterializedSRF(fcinfo, 0);
  VisitAll(AllOrdered(), ListStale, fcinfo->resultinfo);
  return (Datum)0;
}

void OtInstallVersions(void) {
  HASHCTL control = {.keysize = sizeof(Oid), .entrysize = sizeof(Oid)};
  checked = hash_create("ottext indexes in order", 64, &control, HASH_ELEM | HASH_BLOBS);
  nextStart = ExecutorStart_hook;
  ExecutorStart_hook = Start;
  RegisterXactCallback(BeforeCommit, NULL);
  CacheRegisterRelcacheCallback(Forget, (Datum)0);
}
