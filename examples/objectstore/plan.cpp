// Which indexes answer a query.
#include "plan.h"

#include <algorithm>

#include "keys.h"
#include "scanlimits.h"
#include "share.h"
#include "value.h"

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
  Planner(const Store& store, const Snapshot& snapshot, const Query& query)
      : store_(store),
        form_(store.GetSchema().form),
        keys_(store.Keys()),
        trees_(store.TreesOf(*query.type)),
        snapshot_(snapshot) {}

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
      return CompareKeys(type, *x, *y, keys_) * sign >= 0 ? x : y;
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
    const auto nulls = NullsOf(*index);
    if (keys_.byteOrder) {
      EstimateByBytes(term, nulls, range);
    } else {
      const bool isOpen = Estimate(term, nulls, range);
      if (MemberOf(*index).IsText()) AllowForPartialKeys(term, isOpen, range);
    }
    if (nulls) IncludeNulls(*nulls, term, range);
    plan_.terms.push_back({term.text, range.share, range});
    if (!range.lower && !range.upper) return {};
    return Ranges{range};
  }

  /// The null entries of an index.
  struct Nulls {
    Bytes stored, key;
    double share;  ///< Of all entries.
  };

  /// Nothing where there are none.
  std::optional<Nulls> NullsOf(const IndexTrees& index) const {
    const Member& member = MemberOf(index);
    Value null(member);
    if (!null.SetNull(0)) return {};
    Nulls nulls{null.Stored(form_), {}, 0};
    nulls.key = KeyOf(member, nulls.stored, keys_);
    Cursor at(snapshot_, index.all);
    if (!at.Seek(nulls.key) || CompareKeys(member.type, at.Key(), nulls.key, keys_) != 0) return {};
    const auto entries = static_cast<double>(StatOf(snapshot_, index.all).ms_entries);
    nulls.share = static_cast<double>(at.Count()) / entries;
    return nulls;
  }

  /// The whole of an index as one stretch, without its nulls: they stand so far off that all values
  /// would look like one. Nothing where there are only nulls.
  Statistics WholeOf(const IndexTrees& index, const std::optional<Nulls>& nulls) const {
    Cursor first(snapshot_, index.all), last(snapshot_, index.all);
    if (!first.First() || !last.Last()) return {};
    if (nulls && CompareKeys(MemberOf(index).type, first.Key(), nulls->key, keys_) == 0 &&
        !first.NextKey()) {
      return {};
    }
    return {{{first.Key().begin(), first.Key().end()}, {last.Key().begin(), last.Key().end()}, 1}};
  }

  /// Asks the type for limits, and for the share of each stretch of the index.
  /// @return whether the operand stands for a range.
  bool Estimate(const Term& term, const std::optional<Nulls>& nulls, Range& range) const {
    const Member& member = MemberOf(*range.index);
    auto op = static_cast<unsigned short>(term.relation | term.options);
    Limits limits;
    Types().EvalAndBound(member.type, nullptr, op, Place(term.operand), form_, 1, &limits, nullptr);
    range.lower = limits.Lower();
    range.upper = limits.Upper();
    const bool isOpen = (op & OT_OP_WILDCARD) != 0;
    const ShareMeter meter(member, term, isOpen, range.lower, range.upper, form_);
    range.share = meter.Of(StretchesOf(*range.index, nulls));
    return isOpen;
  }

  Statistics StretchesOf(const IndexTrees& index, const std::optional<Nulls>& nulls) const {
    auto stretches = StatisticsOf(store_, snapshot_, trees_, index);
    return stretches && !stretches->empty() ? *stretches : WholeOf(index, nulls);
  }

  /// The same from sort keys, whose limits hold whatever is null, ignored or cut.
  void EstimateByBytes(const Term& term, const std::optional<Nulls>& nulls, Range& range) const {
    const Member& member = MemberOf(*range.index);
    const Statistics stretches = StretchesOf(*range.index, nulls);
    const auto limits = SortLimitsOf(member, term, term.relation, form_);
    range.lower = limits.lower;
    range.upper = limits.upper;
    const bool isUnequal = term.relation == (OT_OP_LESS | OT_OP_GREATER);
    const auto equal = SortLimitsOf(member, term, OT_OP_EQUAL, form_);
    range.share = isUnequal ? 1 - ByteShare(stretches, equal) : ByteShare(stretches, limits);
  }

  /// What a key or a pattern doesn't tell decides an inequality: a limit that isn't whole is none,
  /// and entries that aren't whole may qualify wherever they are filed. Characters that are ignored
  /// can put a key anywhere.
  void AllowForPartialKeys(const Term& term, bool isOpen, Range& range) const {
    const bool ignores = (term.options & (OT_CMP_IGNORE_SPACE | OT_CMP_IGNORE_SYMBOLS)) != 0;
    range.withPartial = term.relation != OT_OP_EQUAL;
    for (auto* limit : {&range.lower, &range.upper}) {
      const bool tells = *limit && !isOpen && IsWhole(MemberOf(*range.index).type, **limit, keys_);
      if (ignores || (range.withPartial && !tells)) limit->reset();
    }
  }

  /// The type was asked about values alone. To some operands a null is like an empty text, but it
  /// is filed in front of that.
  void IncludeNulls(const Nulls& nulls, const Term& term, Range& range) const {
    const Member& member = MemberOf(*range.index);
    range.share *= 1 - nulls.share;
    const long sign = CompareStored(member, nulls.stored, term.operand, term.options, form_);
    if (!Satisfies(sign, term.relation)) return;
    range.share += nulls.share;
    if (range.lower && CompareKeys(member.type, nulls.key, *range.lower, keys_) < 0) {
      range.lower = nulls.key;
    }
  }

  const Store& store_;
  unsigned char form_;
  KeyKind keys_;
  const ClassTrees& trees_;
  const Snapshot& snapshot_;
  Plan plan_;
};

}  // namespace

Plan MakePlan(const Store& store, const Snapshot& snapshot, const Query& query) {
  return Planner(store, snapshot, query).Run(query.where);
}

}  // namespace otdb
