/*
 * An index of names in LMDB that is in the order of a language. LMDB knows the order of bytes only,
 * so it holds sort keys: a key is what collation makes of a name, the value is the name itself.
 *
 *   index FILE LANGUAGE add < names     one name a line
 *   index FILE LANGUAGE list            all of them, in the order of the language
 *   index FILE LANGUAGE find 'san*'     those that match, from the stretch where they must lie
 */
#include <lmdb.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "ot95c/ot95c.h"

enum { MAP_SIZE = 1 << 30, KEY_ROOM = 511 }; /* the longest key of LMDB */

static void fail(const char* what, const char* why) {
  fprintf(stderr, "index: %s: %s\n", what, why);
  exit(1);
}

static void check(const char* what, int status) {
  if (status != OT95_OK) fail(what, ot95_strerror(status));
}

static void check_store(const char* what, int status) {
  if (status != MDB_SUCCESS) fail(what, mdb_strerror(status));
}

/* The index, and the language that orders it. */
typedef struct {
  MDB_env* env;
  MDB_txn* txn;
  MDB_dbi names;
  ot95_collation* collation;
} Index;

static Index open_index(const char* file, const char* language, int writes) {
  const unsigned flags = MDB_NOSUBDIR | (writes ? 0 : MDB_RDONLY);
  Index index;
  check("language", ot95_collation_open(language, OT95_IGNORE_CASE, &index.collation));
  check_store(file, mdb_env_create(&index.env));
  check_store(file, mdb_env_set_mapsize(index.env, MAP_SIZE));
  check_store(file, mdb_env_open(index.env, file, flags, 0644));
  check_store(file, mdb_txn_begin(index.env, NULL, writes ? 0 : MDB_RDONLY, &index.txn));
  /* Names that differ in case alone have one key: they stand there as duplicates. */
  check_store(file,
              mdb_dbi_open(index.txn, NULL, MDB_DUPSORT | (writes ? MDB_CREATE : 0), &index.names));
  return index;
}

static void close_index(Index* index) {
  check_store("commit", mdb_txn_commit(index->txn));
  mdb_env_close(index->env);
  ot95_free(index->collation);
}

static void add(Index* index, const char* name, size_t size) {
  unsigned char bytes[KEY_ROOM];
  ot95_buffer key = {bytes, sizeof bytes, 0};
  if (size > KEY_ROOM) fail(name, "expected at most 511 bytes");
  const int status = ot95_collation_key(index->collation, name, size, &key);
  /* A key that is cut still stands on the right side of all others that are not. */
  if (status != OT95_ERR_ROOM) check(name, status);
  MDB_val place = {key.size < KEY_ROOM ? key.size : KEY_ROOM, bytes};
  MDB_val value = {size, (void*)name};
  const int stored = mdb_put(index->txn, index->names, &place, &value, MDB_NODUPDATA);
  if (stored != MDB_KEYEXIST) check_store(name, stored);
}

static void add_lines(Index* index, FILE* file) {
  char line[1024];
  while (fgets(line, sizeof line, file) != NULL) {
    const size_t size = strcspn(line, "\r\n");
    if (size != 0) add(index, line, size);
  }
}

/* Whether a key lies behind the end of a stretch. */
static int is_behind(const MDB_val* key, const ot95_buffer* end) {
  if (end->size == 0) return 0;
  const size_t common = key->mv_size < end->size ? key->mv_size : end->size;
  const int order = memcmp(key->mv_data, end->data, common);
  return order != 0 ? order > 0 : key->mv_size >= end->size;
}

/* Prints the names that match a pattern, in order: all bytes outside the stretch are passed over.
 */
static void find(Index* index, const char* pattern) {
  unsigned char first[KEY_ROOM], last[KEY_ROOM];
  ot95_buffer lower = {first, sizeof first, 0}, upper = {last, sizeof last, 0};
  const size_t size = strlen(pattern);
  MDB_cursor* cursor;
  MDB_val key, name;
  check(pattern, ot95_collation_range(index->collation, pattern, size, &lower, &upper));
  check_store("cursor", mdb_cursor_open(index->txn, index->names, &cursor));
  key.mv_size = lower.size;
  key.mv_data = first;
  int status = mdb_cursor_get(cursor, &key, &name, lower.size != 0 ? MDB_SET_RANGE : MDB_FIRST);
  while (status == MDB_SUCCESS && !is_behind(&key, &upper)) {
    int matches = 0;
    check(pattern, ot95_collation_match(index->collation, name.mv_data, name.mv_size, pattern, size,
                                        &matches));
    if (matches) printf("%.*s\n", (int)name.mv_size, (const char*)name.mv_data);
    status = mdb_cursor_get(cursor, &key, &name, MDB_NEXT);
  }
  mdb_cursor_close(cursor);
  if (status != MDB_SUCCESS && status != MDB_NOTFOUND) check_store("find", status);
}

int main(int argc, char** argv) {
  const char* task = argc > 3 ? argv[3] : "";
  const int adds = strcmp(task, "add") == 0;
  const int finds = strcmp(task, "find") == 0 && argc == 5;
  if (!finds && (argc != 4 || (!adds && strcmp(task, "list") != 0))) {
    fail("expected", "FILE LANGUAGE and add, list or find PATTERN");
  }
  Index index = open_index(argv[1], argv[2], adds);
  if (adds) {
    add_lines(&index, stdin);
  } else {
    find(&index, finds ? argv[4] : "*");
  }
  close_index(&index);
  return 0;
}
