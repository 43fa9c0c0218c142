// A text index of 200,000 names in LMDB: ordered by the row's Compare over its keys, by the bytes
// of sort keys, and by the peer's comparison over UTF-16.
#include <lmdb++.h>

#include <cstring>
#include <memory>
#include <random>

#include "collator.h"
#include "keys.h"
#include "scratch.h"
#include "workload.h"

namespace bench {
namespace {

constexpr std::size_t kNames = 200'000;
constexpr unsigned char kForm = OT_FORMAT_BIG_ENDIAN;
constexpr char kText = 11;
constexpr int kScanned = 100;

UCollator* peerCollator = nullptr;  // the store's callback takes no argument of ours

int ComparePeer(const MDB_val* a, const MDB_val* b) {
  const auto length = [](const MDB_val* v) { return static_cast<int>(v->mv_size / sizeof(UChar)); };
  return ucol_strcoll(peerCollator, static_cast<const UChar*>(a->mv_data), length(a),
                      static_cast<const UChar*>(b->mv_data), length(b));
}

using Key = std::vector<unsigned char>;

Key OurKey(const Name& name) {
  Key key(OtINDEX_MAX_KEYLEN);
  key.resize(otdb::Types().Translate(kText, key.data(), kForm | 0x80, key.size(),
                                     const_cast<OtString*>(&name.wide), OT_FORMAT_MEMORY,
                                     sizeof name.wide, 1));
  return key;
}

Key ByteKey(const Name& name) {
  Key key(OtINDEX_MAX_KEYLEN);
  int status = 0;
  const unsigned long size =
      otdb::Types().SortKey(kText, key.data(), OtINDEX_MAX_KEYLEN, &name.wide, 0,
                            OT_CMP_NO_WILDCARDS, 1, OT_FORMAT_MEMORY, status);
  key.resize(std::min<std::size_t>(size, key.size()));
  return key;
}

Key PeerKey(const Name& name) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(name.units.data());
  return Key(bytes, bytes + name.units.size() * sizeof(UChar));
}

int CompareBytes(const MDB_val* a, const MDB_val* b) {
  const int sign = std::memcmp(a->mv_data, b->mv_data, std::min(a->mv_size, b->mv_size));
  return sign != 0 ? sign : (a->mv_size > b->mv_size) - (a->mv_size < b->mv_size);
}

/// One tree with names as keys, made by `makeKey` and ordered by `compare`, which the store isn't
/// told of where it is its own.
class Tree {
 public:
  using MakeKey = Key (*)(const Name&);

  Tree(const std::shared_ptr<Names>& names, MakeKey makeKey, MDB_cmp_func* compare)
      : names_(names), makeKey_(makeKey), compare_(compare), next_(*names) {
    env_.set_mapsize(std::size_t{1} << 30);
    env_.set_max_dbs(2);
    env_.open(scratch_.Path().c_str(), MDB_NOSYNC, 0644);
    auto txn = lmdb::txn::begin(env_);
    tree_ = Open(txn, "names");
    for (const Name& name : *names_) Put(txn, tree_, name);
    txn.commit();
    read_ = std::make_unique<lmdb::txn>(lmdb::txn::begin(env_, nullptr, MDB_RDONLY));
  }

  void LookUp() {
    const Key key = makeKey_(next_.Next());
    lmdb::val value;
    if (!lmdb::dbi_get(*read_, tree_, lmdb::val(key.data(), key.size()), value)) std::abort();
    benchmark::DoNotOptimize(value.data());
  }

  void Scan() {
    const Key low = makeKey_(next_.Next());
    auto cursor = lmdb::cursor::open(*read_, tree_);
    MDB_val key{low.size(), const_cast<unsigned char*>(low.data())}, value{};
    bool more = lmdb::cursor_get(cursor, &key, &value, MDB_SET_RANGE);
    const MDB_val limit{last_.size(), last_.data()};
    for (int i = 0; more && i < kScanned && compare_(&key, &limit) <= 0; ++i) {
      more = lmdb::cursor_get(cursor, &key, &value, MDB_NEXT);
    }
    cursor.close();
  }

  /// A thousand names into an empty tree.
  void Insert() {
    auto txn = lmdb::txn::begin(env_);
    const MDB_dbi fresh = Open(txn, "fresh");
    for (int i = 0; i < 1000; ++i) Put(txn, fresh, next_.Next());
    txn.abort();
  }

 private:
  MDB_dbi Open(lmdb::txn& txn, const char* name) const {
    auto tree = lmdb::dbi::open(txn, name, MDB_CREATE);
    if (compare_ != CompareBytes) tree.set_compare(txn, compare_);
    return tree.handle();
  }
  void Put(lmdb::txn& txn, MDB_dbi tree, const Name& name) {
    const Key key = makeKey_(name);
    lmdb::dbi_put(txn, tree, lmdb::val(key.data(), key.size()), lmdb::val("identifier"), 0);
    const MDB_val mine{key.size(), const_cast<unsigned char*>(key.data())};
    const MDB_val last{last_.size(), last_.data()};
    if (last_.empty() || compare_(&mine, &last) > 0) last_ = key;
  }

  std::shared_ptr<Names> names_;
  MakeKey makeKey_;
  MDB_cmp_func* compare_;
  Cycle<Names> next_;
  Scratch scratch_;
  lmdb::env env_ = lmdb::env::create();
  MDB_dbi tree_ = 0;
  std::unique_ptr<lmdb::txn> read_;
  Key last_;
};

/// The trees, made when the first workload runs.
struct Trees {
  std::unique_ptr<Tree> ours, bytes, peer;
  Collator collator;

  Tree& Ours() { return Made(), *ours; }
  Tree& Bytes() { return Made(), *bytes; }
  Tree& Peer() { return Made(), *peer; }

 private:
  void Made() {
    if (ours) return;
    auto names = std::make_shared<Names>(ManyNames(kNames));
    std::shuffle(names->begin(), names->end(), std::mt19937(1));
    collator = OpenCollator("");
    peerCollator = collator.get();
    ours = std::make_unique<Tree>(names, OurKey, otdb::KeyComparer(kText, kForm));
    bytes = std::make_unique<Tree>(names, ByteKey, CompareBytes);
    peer = std::make_unique<Tree>(names, PeerKey, ComparePeer);
  }
};

}  // namespace

void RegisterTrees() {
  const auto trees = std::make_shared<Trees>();
  const auto add = [&](const char* name, void (Tree::*action)()) {
    Add(
        name, 1.6, [trees, action] { (trees->Ours().*action)(); },
        [trees, action] { (trees->Peer().*action)(); });
  };
  add("LMDB text index: look-up", &Tree::LookUp);
  add("LMDB text index: scan of 100 entries", &Tree::Scan);
  add("LMDB text index: insert of 1000", &Tree::Insert);
  Add(
      "LMDB text index in byte order: look-up", 3, [trees] { trees->Bytes().LookUp(); },
      [trees] { trees->Peer().LookUp(); });
}

}  // namespace bench
