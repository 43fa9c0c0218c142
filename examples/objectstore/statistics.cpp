// How an index is filled: equally filled stretches, which planning measures shares on.
#include "statistics.h"

#include <algorithm>
#include <map>
#include <queue>

#include "keys.h"
#include "value.h"

namespace otdb {
namespace {

constexpr std::size_t kStretches = 1000;    // at most, of about as many entries
constexpr std::size_t kFrequentKeys = 100;  // that have a stretch of their own
constexpr std::size_t kFrequent = 2000;     // a key of that part of all entries may be one of them
constexpr std::size_t kFewest = 16;         // entries of a stretch, where it isn't the rest
constexpr std::size_t kCountBytes = 8;

std::string NameOf(const ClassTrees& trees, const IndexTrees& index) {
  return trees.type->name + "." + trees.type->members[index.member].name;
}

/// Walks an index twice: to find the frequent keys, and to cut it.
class Measurer {
 public:
  Measurer(const Snapshot& snapshot, const Member& member, const IndexTrees& index,
           const KeyKind& keys)
      : snapshot_(snapshot), member_(member), index_(index), keys_(keys) {}

  Statistics Run() {
    FindFrequent();
    ForEachKey([this](View key, std::size_t count) { Take(key, count); });
    return std::move(stretches_);
  }

 private:
  template <class Action>
  void ForEachKey(const Action& action) const {
    const auto null = NullKeyOf(member_, keys_);
    Cursor cursor(snapshot_, index_.all);
    for (bool more = cursor.First(); more; more = cursor.NextKey()) {
      if (null && CompareKeys(member_.type, cursor.Key(), *null, keys_) == 0) continue;
      action(cursor.Key(), cursor.Count());
    }
  }

  void FindFrequent() {
    std::priority_queue<std::size_t, std::vector<std::size_t>, std::greater<>> largest;
    std::size_t entries = 0;
    ForEachKey([&](View, std::size_t count) {
      entries += count;
      largest.push(count);
      if (largest.size() > kFrequentKeys) largest.pop();
    });
    if (largest.empty()) return;
    frequent_ = std::max({largest.top(), entries / kFrequent, std::size_t{2}});
    for (; !largest.empty(); largest.pop()) {
      if (largest.top() >= frequent_) entries -= largest.top();
    }
    room_ = std::max(entries / kStretches, kFewest) + 1;
  }

  void Take(View key, std::size_t count) {
    const bool isFrequent = count >= frequent_ && frequentLeft_ != 0;
    if (isFrequent) --frequentLeft_;
    if (stretches_.empty() || isFrequent || isClosed_) {
      Begin(key);
    } else {
      Stretch& last = stretches_.back();
      if (last.entries >= room_ / 4) ConsiderCut(last, key);
      if (last.entries + count > 2 * room_) CutAt(best_);
    }
    isClosed_ = isFrequent;
    Stretch& last = stretches_.back();
    last.upper.assign(key.begin(), key.end());
    last.entries += count;
  }

  void Begin(View key) {
    stretches_.push_back({{key.begin(), key.end()}, {}, 0});
    best_.reset();
  }

  /// A place between two keys at which a stretch can end.
  struct Cut {
    std::size_t common;  ///< What the keys begin with in common.
    std::uint64_t entries;
    Bytes before, behind;
  };

  /// The less two neighbours have in common, the more prefixes and ranges end there, and need no
  /// estimate within a stretch.
  void ConsiderCut(const Stretch& last, View key) {
    const std::size_t common = CommonStart(member_, last.upper, key, keys_);
    if (best_ && (common > best_->common || (common == best_->common && best_->entries >= room_))) {
      return;
    }
    best_ = Cut{common, last.entries, last.upper, {key.begin(), key.end()}};
  }

  void CutAt(const std::optional<Cut>& cut) {
    if (!cut) return;
    Stretch& last = stretches_.back();
    Stretch rest{cut->behind, last.upper, last.entries - cut->entries};
    last.upper = cut->before;
    last.entries = cut->entries;
    stretches_.push_back(std::move(rest));
    best_.reset();
  }

  const Snapshot& snapshot_;
  const Member& member_;
  const IndexTrees& index_;
  KeyKind keys_;
  std::size_t frequent_ = 0;  ///< Entries from which on a key is frequent.
  std::size_t frequentLeft_ = kFrequentKeys;
  std::size_t room_ = 0;  ///< Entries of a stretch: a quarter to twice as many.
  bool isClosed_ = false;
  std::optional<Cut> best_;
  Statistics stretches_;
};

// A stretch is kept as both keys, each behind its length in one byte, and the count in eight bytes,
// the most significant first.

void AppendKey(Bytes& bytes, const Bytes& key) {
  bytes.push_back(static_cast<unsigned char>(key.size()));
  bytes.insert(bytes.end(), key.begin(), key.end());
}

Bytes Kept(const Statistics& statistics) {
  Bytes bytes;
  for (const Stretch& stretch : statistics) {
    AppendKey(bytes, stretch.lower);
    AppendKey(bytes, stretch.upper);
    for (std::size_t i = kCountBytes; i-- != 0;) {
      bytes.push_back(static_cast<unsigned char>(stretch.entries >> (8 * i)));
    }
  }
  return bytes;
}

/// Reads what was kept; nothing in it is trusted.
class Reader {
 public:
  Reader(View bytes, char type, const KeyKind& keys) : rest_(bytes), type_(type), keys_(keys) {}

  std::optional<Statistics> Run() {
    Statistics statistics;
    while (!rest_.empty() && isGood_) {
      Stretch stretch{Key(), Key(), Count()};
      isGood_ = isGood_ && CompareKeys(type_, stretch.lower, stretch.upper, keys_) <= 0;
      statistics.push_back(std::move(stretch));
    }
    if (!isGood_) return {};
    return statistics;
  }

 private:
  View Take(std::size_t length) {
    isGood_ = isGood_ && length <= rest_.size();
    if (!isGood_) return {};
    const View taken = rest_.first(length);
    rest_ = rest_.subspan(length);
    return taken;
  }
  Bytes Key() {
    const View length = Take(1);
    const View key = Take(length.empty() ? 0 : length[0]);
    unsigned long consumed = 0;
    isGood_ = isGood_ && (keys_.byteOrder ||
                          Types().VerifyStored(type_, key.data(), key.size(),
                                               KeyFormat(type_, keys_.form), 1, consumed) == 0);
    return {key.begin(), key.end()};
  }
  std::uint64_t Count() {
    std::uint64_t count = 0;
    for (const unsigned char byte : Take(kCountBytes)) count = count << 8 | byte;
    return count;
  }

  View rest_;
  char type_;
  KeyKind keys_;
  bool isGood_ = true;
};

}  // namespace

std::optional<Bytes> NullKeyOf(const Member& member, const KeyKind& keys) {
  Value null(member);
  if (!null.SetNull(0)) return {};
  return KeyOf(member, null.Stored(keys.form), keys);
}

void Analyze(Store& store,
             const std::function<void(const std::string& index, std::size_t stretches)>& report) {
  std::map<std::string, Bytes> kept;
  std::map<std::string, std::size_t> sizes;
  {
    const Snapshot snapshot = store.Read();
    for (const ClassTrees& trees : store.Trees()) {
      for (const IndexTrees& index : trees.indexes) {
        const Statistics measured =
            Measurer(snapshot, trees.type->members[index.member], index, store.Keys()).Run();
        kept[NameOf(trees, index)] = Kept(measured);
        sizes[NameOf(trees, index)] = measured.size();
      }
    }
  }
  store.KeepStatistics(kept);
  if (!report) return;
  for (const auto& [name, size] : sizes) report(name, size);
}

std::optional<Statistics> StatisticsOf(const Store& store, const Snapshot& snapshot,
                                       const ClassTrees& trees, const IndexTrees& index,
                                       bool* isDamaged) {
  const auto kept = store.KeptStatistics(snapshot, NameOf(trees, index));
  if (!kept) return {};
  const char type = trees.type->members[index.member].type;
  auto statistics = Reader(*kept, type, store.Keys()).Run();
  if (isDamaged) *isDamaged = !statistics;
  return statistics;
}

}  // namespace otdb
