// Every record and every index entry, held against each other.
#include "check.h"

#include "keys.h"
#include "record.h"
#include "statistics.h"

namespace otdb {
namespace {

class Checker {
 public:
  Checker(const Store& store, lmdb::txn& txn, const std::function<void(const std::string&)>& report)
      : store_(store),
        form_(store.GetSchema().form),
        keys_(store.Keys()),
        txn_(txn),
        report_(report) {}

  CheckResult Run() {
    for (const ClassTrees& trees : store_.Trees()) {
      CheckObjects(trees);
      for (const IndexTrees& index : trees.indexes) CheckIndex(trees, index);
    }
    return result_;
  }

 private:
  void Fault(const std::string& text) {
    ++result_.faults;
    report_(text);
  }

  std::string NameOf(const ClassTrees& trees, View id) const {
    return trees.type->name + " " +
           (IsId(id, form_) ? IdToText(id, form_) : "with a damaged identifier");
  }

  void CheckObjects(const ClassTrees& trees) {
    Cursor cursor(txn_, trees.objects);
    for (bool more = cursor.First(); more; more = cursor.Next()) {
      ++result_.objects;
      if (!IsId(cursor.Key(), form_)) {
        Fault(NameOf(trees, cursor.Key()));
      } else if (!Record(*trees.type, cursor.Data(), form_).IsSound()) {
        Fault(NameOf(trees, cursor.Key()) + ": a damaged record");
      }
    }
  }

  // Each object has one entry, so equal numbers and entries that all fit their object leave none
  // out.
  void CheckIndex(const ClassTrees& trees, const IndexTrees& index) {
    const Member& member = trees.type->members[index.member];
    const std::string name = trees.type->name + "." + member.name;
    if (StatOf(txn_, index.all).ms_entries != StatOf(txn_, trees.objects).ms_entries) {
      Fault("index " + name + ": another number of entries than of objects");
    }
    Cursor cursor(txn_, index.all);
    std::size_t partial = 0;
    Bytes before;
    for (bool more = cursor.First(); more; more = cursor.Next()) {
      ++result_.entries;
      partial += CheckEntry(trees, index, name, cursor);
      if (!before.empty() && CompareKeys(member.type, before, cursor.Key(), keys_) > 0) {
        Fault("index " + name + ": " + NameOf(trees, cursor.Data()) + " is out of order");
      }
      before.assign(cursor.Key().begin(), cursor.Key().end());
    }
    bool isDamaged = false;
    StatisticsOf(store_, txn_, trees, index, &isDamaged);
    if (isDamaged) Fault("index " + name + ": damaged statistics");
    if (StatOf(txn_, index.partial).ms_entries != partial) {
      Fault("index " + name + ": another number of partial entries than of partial keys");
    }
  }

  /// @return whether the entry's own key is partial. That in the tree may be another, equal one.
  bool CheckEntry(const ClassTrees& trees, const IndexTrees& index, const std::string& name,
                  const Cursor& entry) {
    const Member& member = trees.type->members[index.member];
    const auto bytes = Get(txn_, trees.objects, entry.Data());
    if (!bytes) {
      Fault("index " + name + ": an entry without its object, " + NameOf(trees, entry.Data()));
      return false;
    }
    const Record record(*trees.type, *bytes, form_);
    const View value = record.MemberAt(index.member);
    if (value.data() == nullptr) return false;  // told with the object
    const Bytes key = KeyOf(member, value, keys_);
    if (CompareKeys(member.type, key, entry.Key(), keys_) != 0) {
      Fault("index " + name + ": another key than that of " + NameOf(trees, entry.Data()));
    }
    if (IsWhole(member.type, key, keys_)) return false;
    if (!Cursor(txn_, index.partial).Find(key, entry.Data())) {
      Fault("index " + name + ": " + NameOf(trees, entry.Data()) + " isn't among the partial keys");
    }
    return true;
  }

  const Store& store_;
  unsigned char form_;
  KeyKind keys_;
  lmdb::txn& txn_;
  const std::function<void(const std::string&)>& report_;
  CheckResult result_;
};

}  // namespace

CheckResult Check(const Store& store, lmdb::txn& txn,
                  const std::function<void(const std::string&)>& report) {
  return Checker(store, txn, report).Run();
}

}  // namespace otdb
