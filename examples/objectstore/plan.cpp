#include "plan.h"

#include <algorithm>

#include "keys.h"
#include "scanlimits.h"

namespace otdb {
namespace {

using Ranges = std::vector<Range>;

double TotalOf(const Ranges& ranges) {
  double total = 0;
  for (const Range& range : ranges) total += range.share;
  return std::min(total, 1.0);
}

class Planner {
 public:
  Planner(const Store& store, lmdb::txn& txn, const Query& query)
      : form_(store.GetSchema().form), trees_(store.TreesOf(*query.type)), txn_(txn) {}

  Plan Run(const Condition& where) {
    if (auto ranges = RangesFor(where)) {
      plan_.ranges = std::move(*ranges);
      plan_.share = TotalOf(plan_.ranges);
    }
    return std::move(plan_);
  }

 private:
  const Member& MemberOf(const IndexTrees& index) const {
    return trees_.type->members[index.member];
  }

  /// Ranges that hold all that a condition lets through; nothing where no index helps.
  std::optional<Ranges> RangesFor(const Condition& condition) {
    if (condition.kind == Condition::kTerm) return RangeFor(*condition.term);
    return condition.kind == Condition::kAnd ? BestOf(condition) : UnionOf(condition);
  }

  std::optional<Ranges> UnionOf(const Condition& condition) {
    Ranges all;
    bool complete = true;
    for (const Condition& child : condition.children) {
      auto ranges = RangesFor(child);  // also behind one that has none, for what it tells
      complete = complete && ranges;
      if (complete) all.insert(all.end(), ranges->begin(), ranges->end());
    }
    if (!complete) return {};
    return all;
  }

  std::optional<Ranges> BestOf(const Condition& condition) {
    std::vector<Ranges> candidates;
    for (const Condition& child : condition.children) {
      auto ranges = RangesFor(child);
      if (ranges && !MeetsAnother(candidates, *ranges)) candidates.push_back(std::move(*ranges));
    }
    const auto best =
        std::min_element(candidates.begin(), candidates.end(),
                         [](const auto& a, const auto& b) { return TotalOf(a) < TotalOf(b); });
    if (best == candidates.end()) return {};
    return std::move(*best);
  }

  /// Two ranges of the same index narrow each other.
  bool MeetsAnother(std::vector<Ranges>& candidates, const Ranges& ranges) const {
    if (ranges.size() != 1) return false;
    for (Ranges& other : candidates) {
      if (other.size() != 1 || other[0].index != ranges[0].index) continue;
      other[0] = Intersect(other[0], ranges[0]);
      return true;
    }
    return false;
  }

  Range Intersect(const Range& a, const Range& b) const {
    const char type = MemberOf(*a.index).type;
    const auto further = [&](const std::optional<Bytes>& x, const std::optional<Bytes>& y,
                             int sign) {
      if (!x || !y) return x ? x : y;
      return CompareKeys(type, *x, *y, form_) * sign >= 0 ? x : y;
    };
    Range both{a.index, further(a.lower, b.lower, 1), further(a.upper, b.upper, -1),
               a.withPartial || b.withPartial, std::min(a.share, b.share)};
    const bool opposite = (a.lower && !a.upper && b.upper && !b.lower) ||
                          (b.lower && !b.upper && a.upper && !a.lower);
    if (opposite) both.share = std::max(0.0, a.share + b.share - 1);
    return both;
  }

  std::optional<Ranges> RangeFor(const Term& term) {
    const IndexTrees* index = trees_.IndexOf(term.member);
    if (index == nullptr) return {};
    Range range{index, {}, {}, false, 0};
    range.share = Estimate(*index, term.relation | term.options, term.operand, form_, range);
    if (term.relation != OT_OP_EQUAL) WidenPartialLimits(term.relation, range);
    range.withPartial = MayQualifyElsewhere(term);
    plan_.terms.push_back({term.text, range.share, range});
    if (!range.lower && !range.upper) return {};
    return Ranges{range};
  }

  /// Asks the type. The ends of the index are what the share is measured on.
  double Estimate(const IndexTrees& index, unsigned relation, View operand, unsigned char format,
                  Range& range) const {
    Limits limits;
    auto op = static_cast<unsigned short>(relation);
    Cursor first(txn_, index.all), last(txn_, index.all);
    double share = 0;
    if (first.First() && last.Last()) {
      Limits ends(first.Key(), last.Key());
      share = Ask(index, &ends, op, operand, format, limits);
    } else {
      Ask(index, nullptr, op, operand, format, limits);
    }
    range.lower = limits.Lower();
    range.upper = limits.Upper();
    return std::clamp(share, 0.0, 1.0);
  }

  double Ask(const IndexTrees& index, OtIdxBounds* ends, unsigned short& op, View operand,
             unsigned char format, Limits& limits) const {
    return double{Types().EvalAndBound(MemberOf(index).type, ends, op, Place(operand), format, 1,
                                       &limits, nullptr)};
  }

  /// What a key doesn't tell decides an inequality, and where characters are ignored the key may
  /// have ended before the first one that counts.
  bool MayQualifyElsewhere(const Term& term) const {
    return trees_.type->members[term.member].IsText() &&
           (term.relation != OT_OP_EQUAL ||
            (term.options & (OT_CMP_IGNORE_SPACE | OT_CMP_IGNORE_SYMBOLS)) != 0);
  }

  /// Where the limit of an inequality isn't whole, all that begins like it may qualify, with
  /// whatever accents.
  void WidenPartialLimits(unsigned short relation, Range& range) const {
    const char type = MemberOf(*range.index).type;
    for (auto Range::*limit : {&Range::lower, &Range::upper}) {
      auto& key = range.*limit;
      if (!key || IsWhole(type, *key, form_)) continue;
      Range wider{};
      Estimate(*range.index, relation | OT_CMP_IGNORE_CASE | OT_CMP_IGNORE_ACCENT, *key,
               KeyFormat(type, form_), wider);
      key = wider.*limit;
    }
  }

  unsigned char form_;
  const ClassTrees& trees_;
  lmdb::txn& txn_;
  Plan plan_;
};

}  // namespace

Plan MakePlan(const Store& store, lmdb::txn& txn, const Query& query) {
  return Planner(store, txn, query).Run(query.where);
}

}  // namespace otdb
