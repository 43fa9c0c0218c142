// Answers a query along its plan.

#include "execute.h"

#include <algorithm>
#include <string>
#include <unordered_set>

#include "bad_input.h"
#include "keys.h"

namespace otdb {
namespace {

class Execution {
 public:
  Execution(const Store& store, const Snapshot& snapshot, const Query& query,
            const Visitor& visitor)
      : store_(store),
        form_(store.GetSchema().form),
        keys_(store.Keys()),
        trees_(store.TreesOf(*query.type)),
        snapshot_(snapshot),
        query_(query),
        visitor_(visitor) {}

  Tally Run(const Plan& plan) {
    oncePerObject_ = plan.ranges.size() > 1;
    if (plan.ranges.empty()) {
      ScanObjects();
    } else {
      for (const Range& range : plan.ranges) {
        if (!ScanRange(range)) break;
      }
    }
    return tally_;
  }

 private:
  void ScanObjects() {
    Cursor cursor(snapshot_, trees_.objects);
    for (bool more = cursor.First(); more; more = cursor.Next()) {
      ++tally_.looked;
      const View record = store_.Checked(trees_.objects, cursor.Key(), cursor.Data());
      if (!Offer(cursor.Key(), record)) return;
    }
  }

  bool ScanRange(const Range& range) {
    const char type = trees_.type->members[range.index->member].type;
    Cursor cursor(snapshot_, range.index->all);
    bool more = range.lower ? cursor.Seek(*range.lower) : cursor.First();
    for (; more; more = cursor.Next()) {
      if (range.upper && IsBehind(type, cursor.Key(), *range.upper, keys_)) break;
      if (!OfferEntry(cursor.Data())) return false;
    }
    return !range.withPartial || ScanPartial(range, type);
  }

  /// The entries outside the limits, of which the lower may be above the upper.
  bool ScanPartial(const Range& range, char type) {
    Cursor cursor(snapshot_, range.index->partial);
    const bool none =
        range.lower && range.upper && CompareKeys(type, *range.lower, *range.upper, keys_) > 0;
    bool more = range.lower && cursor.First();
    for (; more; more = cursor.Next()) {
      if (!none && CompareKeys(type, cursor.Key(), *range.lower, keys_) >= 0) break;
      if (!OfferEntry(cursor.Data())) return false;
    }
    more = !none && range.upper && cursor.Seek(*range.upper);
    for (; more; more = cursor.Next()) {
      if (CompareKeys(type, cursor.Key(), *range.upper, keys_) == 0) continue;
      if (!OfferEntry(cursor.Data())) return false;
    }
    return true;
  }

  bool OfferEntry(View id) {
    ++tally_.looked;
    if (oncePerObject_ && !seen_.emplace(id.begin(), id.end()).second) return true;
    const auto bytes = store_.Find(snapshot_, trees_.objects, id);
    if (!bytes) throw ot95::tools::BadInput("an index of " + trees_.type->name + " is damaged");
    return Offer(id, *bytes);
  }

  /// @return whether to go on.
  bool Offer(View id, View bytes) {
    const Record record(*trees_.type, bytes, form_);
    if (!query_.where.Holds(*trees_.type, record, form_)) return true;
    ++tally_.found;
    return visitor_(id, record);
  }

  const Store& store_;
  unsigned char form_;
  KeyKind keys_;
  const ClassTrees& trees_;
  const Snapshot& snapshot_;
  const Query& query_;
  const Visitor& visitor_;
  Tally tally_;
  bool oncePerObject_ = false;
  std::unordered_set<std::string> seen_;
};

/// An object that waits for its turn: views of the store's own pages.
struct Waiting {
  View id;
  View record;
  std::vector<View> members;
};

/// Three-way.
long CompareWaiting(const Query& query, const Waiting& a, const Waiting& b, unsigned char form) {
  for (std::size_t i = 0; i < query.orders.size(); ++i) {
    const auto& order = query.orders[i];
    const long sign = CompareStored(query.type->members[order.member], a.members[i], b.members[i],
                                    OT_CMP_NO_WILDCARDS, form);
    if (sign != 0) return order.descending ? -sign : sign;
  }
  return 0;
}

/// Those of the first member that orders; none where a value has no sort key.
std::vector<Head> HeadsOf(const Query& query, const std::vector<Waiting>& waiting,
                          unsigned char form) {
  const auto& first = query.orders.front();
  std::vector<Head> heads;
  heads.reserve(waiting.size());
  for (const Waiting& each : waiting) {
    auto head = HeadOf(query.type->members[first.member], each.members.front(), form);
    if (!head) return {};
    if (first.descending) head->number = ~head->number;
    head->whole = head->whole && query.orders.size() == 1;
    heads.push_back(*head);
  }
  return heads;
}

Visitor UpTo(std::size_t limit, std::size_t& count, const Visitor& visitor) {
  return [&visitor, &count, limit](View id, const Record& record) {
    return visitor(id, record) && ++count < limit;
  };
}

Tally ExecuteInOrder(const Store& store, const Snapshot& snapshot, const Query& query,
                     const Plan& plan, const Visitor& visitor) {
  const unsigned char form = store.GetSchema().form;
  std::vector<Waiting> waiting;
  const Tally tally = Execution(store, snapshot, query, [&](View id, const Record& record) {
                        Waiting next{id, record.All(), {}};
                        for (const auto& order : query.orders)
                          next.members.push_back(record.MemberAt(order.member));
                        waiting.push_back(std::move(next));
                        return true;
                      }).Run(plan);
  std::vector<std::size_t> order = OrderByHeads(
      HeadsOf(query, waiting, form), waiting.size(), [&](std::size_t a, std::size_t b) {
        return CompareWaiting(query, waiting[a], waiting[b], form);
      });
  if (query.limit && order.size() > *query.limit) order.resize(*query.limit);
  for (const std::size_t number : order) {
    const Waiting& each = waiting[number];
    if (!visitor(each.id, Record(*query.type, each.record, form))) break;
  }
  return tally;
}

}  // namespace

Tally Execute(const Store& store, const Snapshot& snapshot, const Query& query, const Plan& plan,
              const Visitor& visitor) {
  if (query.limit && *query.limit == 0) return {};
  if (!query.orders.empty() && !query.count) {
    return ExecuteInOrder(store, snapshot, query, plan, visitor);
  }
  std::size_t count = 0;
  if (!query.limit) return Execution(store, snapshot, query, visitor).Run(plan);
  const Visitor limited = UpTo(*query.limit, count, visitor);
  return Execution(store, snapshot, query, limited).Run(plan);
}

}  // namespace otdb
