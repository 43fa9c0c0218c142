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
#include "snapshot.h"

namespace otdb {

/// The trees of an index. Each maps keys to the identifiers of objects.
struct IndexTrees {
  std::size_t member;
  Tree all;
  Tree partial;  ///< Again those whose key doesn't tell all of the text; see IsWhole.
};

/// The trees of a class: identifier to record, and its indexes.
struct ClassTrees {
  const Class* type;
  Tree objects;
  std::vector<IndexTrees> indexes;

  const IndexTrees* IndexOf(std::size_t member) const;
};

/// What a store is opened for. Readers never wait for a writer. Only who builds them anew may open
/// a store with indexes that are out of order; see OutdatedIndexes.
enum class Access { kRead, kWrite, kReindex };

/// An object store in a directory. All is read and written in transactions: whatever ends the
/// process, the store stays as the last commit left it. What the storage engine refuses, a full
/// disk among it, throws BadInput that names the directory and the reason.
///
/// Nothing is taken on trust that the file says of itself. Readers verify each page when they come
/// to it, and the checksum of each object. The storage engine, which trusts its pages, is let in by
/// writers alone, after all pages were verified.
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
  Snapshot Read() const;
  /// Who may not write to a store can't tell its writers that it reads, either. Throws BadInput
  /// where one of them may have taken pages away that this reader saw.
  void RequireUnchanged() const;

  /// What an entry of a tree of objects or facts holds, without its checksum; nothing where it is
  /// damaged.
  std::optional<View> Sound(const Tree& tree, View key, View kept) const;
  /// The same; throws BadInput where it is damaged.
  View Checked(const Tree& tree, View key, View kept) const;
  /// What stands under a key of such a tree.
  std::optional<View> Find(const Snapshot& snapshot, const Tree& tree, View key) const;

  /// What is kept to plan queries by, under the name of an index.
  std::optional<View> KeptStatistics(const Snapshot& snapshot, const std::string& index) const;
  void KeepStatistics(const std::map<std::string, Bytes>& statistics);
  /// What the store keeps under a name.
  std::optional<View> Fact(const Snapshot& snapshot, const std::string& name) const;
  /// Whether all that the store keeps of itself is sound.
  bool HasSoundFacts(const Snapshot& snapshot) const;
  /// All trees by their names.
  std::map<std::string, const Tree*> TreesByName() const;

 private:
  Store(const std::string& path, unsigned flags, const Schema* fresh);
  friend class Rewriter;
  friend class Reindexer;

  [[noreturn]] void Fail(const lmdb::error& error) const;
  void Open(unsigned flags);
  void Make(const Schema& schema);
  void Load(const Snapshot& snapshot);
  void NameTrees();
  /// Lets the storage engine in. @param create for a new store.
  void OpenTrees(lmdb::txn& txn, unsigned create);
  bool HasChecksums() const { return schema_.version != Schema::kFirstVersion; }
  Bytes Kept(const Tree& tree, View key, View value) const;
  void RequireOrders() const;
  /// Says beside an index which order its keys are in.
  void KeepOrder(lmdb::txn& txn, const ClassTrees& trees, const IndexTrees& index);
  void SetFact(lmdb::txn& txn, const std::string& name, View value);
  void DropFact(lmdb::txn& txn, const std::string& name);
  void DropStatistics(lmdb::txn& txn, const std::string& index);
  /// As this transaction sees it.
  std::optional<View> Fact(lmdb::txn& txn, const std::string& name) const;
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
  std::string file_;
  lmdb::env env_;
  std::optional<std::size_t> unregisteredSince_;  ///< The last transaction when it was opened.
  Tree facts_, statistics_;
  bool hasStatistics_ = true;  ///< A store that is older than they has none.
  Schema schema_;
  std::vector<ClassTrees> trees_;
};

/// Whether bytes are the stored form of an identifier, and no more.
bool IsId(View id, unsigned char form);
/// Identifiers as text, and in their stored form. FromText throws BadInput.
std::string IdToText(View id, unsigned char form);
Bytes IdFromText(const std::string& text, unsigned char form);

}  // namespace otdb

#endif
