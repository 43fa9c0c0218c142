#ifndef OTDB_STORE_H
#define OTDB_STORE_H

#include <lmdb++.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "bytes.h"
#include "keys.h"
#include "schema.h"

namespace otdb {

/// The trees of an index. Each maps keys to the identifiers of objects.
struct IndexTrees {
  std::size_t member;
  MDB_dbi all;
  MDB_dbi partial;  ///< Again those whose key doesn't tell all of the text; see IsWhole.
};

/// The trees of a class: identifier to record, and its indexes.
struct ClassTrees {
  const Class* type;
  MDB_dbi objects;
  std::vector<IndexTrees> indexes;

  const IndexTrees* IndexOf(std::size_t member) const;
};

/// What a store is opened for. Readers never wait for a writer. Only who builds them anew may open
/// a store with indexes that are out of order; see OutdatedIndexes.
enum class Access { kRead, kWrite, kReindex };

/// An object store in a directory. All is read and written in transactions: whatever ends the
/// process, the store stays as the last commit left it. What the storage engine refuses, a full
/// disk among it, throws BadInput that names the directory and the reason.
class Store {
 public:
  /// Makes a new one. Throws BadInput when the directory isn't empty.
  static void Create(const std::string& directory, const Schema& schema);
  /// Opens one. A store that was written on a machine of another word is rewritten for this one.
  /// Throws BadInput where an index of texts was made under another order of their language.
  explicit Store(const std::string& directory, Access access = Access::kWrite);

  const Schema& GetSchema() const { return schema_; }
  KeyKind Keys() const { return {schema_.form, schema_.sortKeyVersion != 0}; }
  const std::vector<ClassTrees>& Trees() const { return trees_; }
  const ClassTrees& TreesOf(const Class& type) const;

  /// Adds objects in one transaction, under the next identifiers.
  void Add(const Class& type, const std::vector<Bytes>& records);
  lmdb::txn Read() const { return lmdb::txn(Begin(MDB_RDONLY)); }
  /// Who may not write to a store can't tell its writers that it reads, either. Throws BadInput
  /// where one of them may have taken pages away that this reader saw.
  void RequireUnchanged() const;

  /// What is kept to plan queries by, under the name of an index.
  std::optional<View> KeptStatistics(lmdb::txn& txn, const std::string& index) const;
  void KeepStatistics(const std::map<std::string, Bytes>& statistics);
  /// What the store keeps under a name.
  std::optional<View> Fact(lmdb::txn& txn, const std::string& name) const;

 private:
  Store(const std::string& path, unsigned flags, const Schema* fresh);
  friend class Rewriter;
  friend class Reindexer;

  [[noreturn]] void Fail(const lmdb::error& error) const;
  void Open(unsigned flags);
  void Load(lmdb::txn& txn, const Schema* fresh);
  void OpenTrees(lmdb::txn& txn, unsigned flags);
  void RequireOrders() const;
  /// Says beside an index which order its keys are in.
  void KeepOrder(lmdb::txn& txn, const ClassTrees& trees, const IndexTrees& index);
  void SetFact(lmdb::txn& txn, const std::string& name, View value);
  void DropFact(lmdb::txn& txn, const std::string& name);
  void DropStatistics(lmdb::txn& txn, const std::string& index);
  /// @param order of the keys; null for that of their bytes.
  MDB_dbi OpenTree(lmdb::txn& txn, const std::string& name, unsigned flags, MDB_cmp_func* order);
  MDB_txn* Begin(unsigned flags) const;
  std::size_t LastTransaction() const;
  /// Runs a write transaction, again with more room when the map was full.
  void Write(const std::function<void(lmdb::txn&)>& body);
  void Put(lmdb::txn& txn, const ClassTrees& trees, const std::vector<Bytes>& ids,
           const std::vector<Bytes>& records);
  void PutEntries(lmdb::txn& txn, const ClassTrees& trees, const IndexTrees& index,
                  const std::vector<Bytes>& ids, const std::vector<Bytes>& records);
  std::vector<Bytes> TakeIds(lmdb::txn& txn, std::size_t count);

  std::string path_;
  lmdb::env env_;
  std::optional<std::size_t> unregisteredSince_;  ///< The last transaction when it was opened.
  MDB_dbi facts_ = 0;
  std::optional<MDB_dbi> statistics_;  ///< A store that is older than they has none.
  Schema schema_;
  std::vector<ClassTrees> trees_;
};

/// A walk over a tree within a transaction.
class Cursor {
 public:
  Cursor(lmdb::txn& txn, MDB_dbi tree) : cursor_(lmdb::cursor::open(txn, tree)) {}

  /// @return whether there is an entry at the new place.
  bool First() { return Get(MDB_FIRST); }
  bool Last() { return Get(MDB_LAST); }
  bool Next() { return Get(MDB_NEXT); }
  bool NextKey() { return Get(MDB_NEXT_NODUP); }
  /// To the first entry whose key isn't below `key`.
  bool Seek(View key);
  /// To the entry of exactly this key and value.
  bool Find(View key, View value);

  /// Entries of the key at this place.
  std::size_t Count() const;
  View Key() const { return ViewOf(key_); }
  View Data() const { return ViewOf(data_); }

 private:
  static View ViewOf(const MDB_val& value) {
    return {static_cast<const unsigned char*>(value.mv_data), value.mv_size};
  }
  bool Get(MDB_cursor_op op) { return lmdb::cursor_get(cursor_, &key_, &data_, op); }

  lmdb::cursor cursor_;
  MDB_val key_{};
  MDB_val data_{};
};

std::optional<View> Get(lmdb::txn& txn, MDB_dbi tree, View key);
MDB_stat StatOf(lmdb::txn& txn, MDB_dbi tree);

/// Whether bytes are the stored form of an identifier, and no more.
bool IsId(View id, unsigned char form);
/// Identifiers as text, and in their stored form. FromText throws BadInput.
std::string IdToText(View id, unsigned char form);
Bytes IdFromText(const std::string& text, unsigned char form);

}  // namespace otdb

#endif
