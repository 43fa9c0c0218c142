// Every record and every index entry, held against each other.
#include "check.h"

#include <algorithm>

#include "audit.h"
#include "bad_input.h"
#include "keys.h"
#include "record.h"
#include "statistics.h"

namespace otdb {
namespace {

class Checker {
 public:
  Checker(const Store& store, const Snapshot& snapshot,
          const std::function<void(const std::string&)>& report)
      : store_(store),
        form_(store.GetSchema().form),
        keys_(store.Keys()),
        snapshot_(snapshot),
        report_(report) {}

  CheckResult Run() {
    AuditPages(snapshot_.Pages(), store_.TreesByName(),
               [this](const std::string& fault) { Fault(fault); });
    Guarded([this] {
      if (!store_.HasSoundFacts(snapshot_)) Fault("what the store keeps of itself is damaged");
    });
    for (const ClassTrees& trees : store_.Trees()) {
      Guarded([&] { CheckObjects(trees); });
      for (const IndexTrees& index : trees.indexes) Guarded([&] { CheckIndex(trees, index); });
    }
    return result_;
  }

 private:
  /// Damaged pages end a step, and no more.
  template <class Step>
  void Guarded(const Step& step) {
    try {
      step();
    } catch (const ot95::tools::BadInput& error) {
      Fault(error.what());
    }
  }

  void Fault(const std::string& text) {
    ++result_.faults;
    report_(text);
  }

  std::string NameOf(const ClassTrees& trees, View id) const {
    return trees.type->name + " " +
           (IsId(id, form_) ? IdToText(id, form_) : "with a damaged identifier");
  }

  void CheckObjects(const ClassTrees& trees) {
    Cursor cursor(snapshot_, trees.objects);
    for (bool more = cursor.First(); more; more = cursor.Next()) {
      ++result_.objects;
      if (!IsId(cursor.Key(), form_)) {
        Fault(NameOf(trees, cursor.Key()));
      } else if (const auto record = store_.Sound(trees.objects, cursor.Key(), cursor.Data());
                 !record || !Record(*trees.type, *record, form_).IsSound()) {
        Fault(NameOf(trees, cursor.Key()) + ": a damaged record");
      }
    }
  }

  // Each object has one entry and no entry stands twice, so equal numbers and entries that all fit
  // their object leave none out.
  void CheckIndex(const ClassTrees& trees, const IndexTrees& index) {
    const Member& member = trees.type->members[index.member];
    const std::string name = trees.type->name + "." + member.name;
    if (StatOf(snapshot_, index.all).ms_entries != StatOf(snapshot_, trees.objects).ms_entries) {
      Fault("index " + name + ": another number of entries than of objects");
    }
    Cursor cursor(snapshot_, index.all);
    std::size_t partial = 0;
    for (bool more = cursor.First(); more; more = cursor.NextKey()) {
      partial += CheckKey(trees, index, name, cursor);
    }
    bool isDamaged = false;
    StatisticsOf(store_, snapshot_, trees, index, &isDamaged);
    if (isDamaged) Fault("index " + name + ": damaged statistics");
    if (StatOf(snapshot_, index.partial).ms_entries != partial) {
      Fault("index " + name + ": another number of partial entries than of partial keys");
    }
  }

  /// Checks all entries of a key, which is one of theirs: the others may be as good as equal.
  /// @return how many of their own keys are partial.
  std::size_t CheckKey(const ClassTrees& trees, const IndexTrees& index, const std::string& name,
                       Cursor& cursor) {
    std::size_t partial = 0;
    bool isOfOne = false;  // or of one that was told to be damaged
    do {
      ++result_.entries;
      const Bytes key = CheckEntry(trees, index, name, cursor);
      isOfOne = isOfOne || key.empty() || std::ranges::equal(key, cursor.Key());
      partial += !key.empty() && IsPartial(index, name, trees, key, cursor.Data());
    } while (cursor.NextValue());
    if (!isOfOne) {
      Fault("index " + name + ": a key that is no object's, of " + NameOf(trees, cursor.Data()));
    }
    return partial;
  }

  /// @return the key of the entry's object; empty where that was told as a fault.
  Bytes CheckEntry(const ClassTrees& trees, const IndexTrees& index, const std::string& name,
                   const Cursor& entry) {
    const Member& member = trees.type->members[index.member];
    const auto kept = Get(snapshot_, trees.objects, entry.Data());
    if (!kept) {
      Fault("index " + name + ": an entry without its object, " + NameOf(trees, entry.Data()));
      return {};
    }
    const auto bytes = store_.Sound(trees.objects, entry.Data(), *kept);
    const Record record(*trees.type, bytes.value_or(View()), form_);
    const View value = record.MemberAt(index.member);
    if (value.data() == nullptr) return {};  // told with the object
    Bytes key = KeyOf(member, value, keys_);
    if (CompareKeys(member.type, key, entry.Key(), keys_) != 0) {
      Fault("index " + name + ": another key than that of " + NameOf(trees, entry.Data()));
    }
    return key;
  }

  bool IsPartial(const IndexTrees& index, const std::string& name, const ClassTrees& trees,
                 const Bytes& key, View id) {
    if (IsWhole(trees.type->members[index.member].type, key, keys_)) return false;
    if (!Cursor(snapshot_, index.partial).Find(key, id)) {
      Fault("index " + name + ": " + NameOf(trees, id) + " isn't among the partial keys");
    }
    return true;
  }

  const Store& store_;
  unsigned char form_;
  KeyKind keys_;
  const Snapshot& snapshot_;
  const std::function<void(const std::string&)>& report_;
  CheckResult result_;
};

}  // namespace

CheckResult Check(const Store& store, const Snapshot& snapshot,
                  const std::function<void(const std::string&)>& report) {
  return Checker(store, snapshot, report).Run();
}

}  // namespace otdb
