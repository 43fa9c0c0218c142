// Objects and indexes in the trees of the storage engine.
#include "store.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <numeric>
#include <string_view>
#include <utility>

#include "audit.h"
#include "bad_input.h"
#include "message.h"
#include "ot95/identity.h"
#include "ot95/text.h"
#include "record.h"
#include "rewrite.h"
#include "utf8text.h"

namespace otdb {
namespace {

using ot95::tools::BadInput;

constexpr char kObjId = 15;
constexpr unsigned kMostTrees = 1000;
constexpr std::size_t kFirstMapSize = std::size_t{16} << 20;
constexpr const char* kFacts = "facts";
constexpr const char* kSchemaKey = "schema";
// Programs of the first version read the schema as it is, so that its checksum stands apart.
constexpr const char* kSchemaChecksumKey = "schema checksum";
constexpr const char* kNextIdKey = "nextId";
constexpr const char* kStatistics = "~statistics";  // no class and no index is called so
constexpr std::size_t kSmallestBatch = 65536;       // bytes that a write takes at least
constexpr std::size_t kLockFileSize = 8192;         // of the storage engine's table of readers
constexpr int kAttempts = 1000;  // to begin reading before two more transactions are written

View ViewOf(const MDB_val& value) {
  return {static_cast<const unsigned char*>(value.mv_data), value.mv_size};
}

View ViewOf(std::string_view text) {
  return {reinterpret_cast<const unsigned char*>(text.data()), text.size()};
}

lmdb::val ValOf(View bytes) {
  return {bytes.data(), bytes.size()};
}

Bytes StoredId(OtObjId id, unsigned char form) {
  Bytes stored(Types().DiskLenGet(kObjId, &id, form, 1, OT_FORMAT_MEMORY));
  Types().Store(kObjId, stored.data(), &id, form, 1);
  return stored;
}

OtObjId LoadedId(View stored, unsigned char form) {
  OtObjId id;
  if (!IsId(stored, form)) throw BadInput("a damaged identifier in the store");
  Types().Load(kObjId, &id, Place(stored), form, 1);
  return id;
}

std::size_t TreesIn(const Schema& schema) {
  std::size_t trees = 2;
  for (const Class& type : schema.classes) {
    trees +=
        1 + 2 * static_cast<std::size_t>(std::count_if(type.members.begin(), type.members.end(),
                                                       [](auto& m) { return m.indexed; }));
  }
  return trees;
}

/// A commit that fails has ended its transaction, too.
class Transaction : public lmdb::txn {
 public:
  using lmdb::txn::txn;

  void Commit() { lmdb::txn_commit(std::exchange(_handle, nullptr)); }
};

// The engine takes half a write for an error of the device, where a file system has no more room or
// a file may not grow.
int ReasonOfHalfAWrite(const std::string& file) {
  std::error_code unknown;
  const auto space = std::filesystem::space(file, unknown);
  if (!unknown && space.available < kSmallestBatch) return ENOSPC;
  struct rlimit limit {};
  const auto size = std::filesystem::file_size(file, unknown);
  const bool mayNotGrow =
      !unknown && getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur < size + kSmallestBatch;
  return mayNotGrow ? EFBIG : EIO;
}

// The lock file is mapped: where the disk had no room for it, a write there would end the process.
void ReserveLockFile(const std::string& directory) {
  const std::string path = directory + "/lock.mdb";
  std::error_code error;
  const auto size = std::filesystem::file_size(path, error);
  if (!error && size >= kLockFileSize) return;
  const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
  if (file < 0) return;  // told, if it matters, where the store is opened
  const int status = posix_fallocate(file, 0, kLockFileSize);
  close(file);
  if (status == 0 || status == EOPNOTSUPP || status == EINVAL) return;
  throw BadInput(path + ": " + std::strerror(status));
}

}  // namespace

const IndexTrees* ClassTrees::IndexOf(std::size_t member) const {
  const auto found = std::find_if(indexes.begin(), indexes.end(),
                                  [&](const IndexTrees& i) { return i.member == member; });
  return found == indexes.end() ? nullptr : &*found;
}

const ClassTrees& Store::TreesOf(const Class& type) const {
  return trees_[static_cast<std::size_t>(&type - schema_.classes.data())];
}

Store::Store(const std::string& path, unsigned flags, const Schema* fresh)
    : path_(path),
      file_((flags & MDB_NOSUBDIR) != 0 ? path : path + "/data.mdb"),
      env_(lmdb::env::create()),
      facts_(kFacts, 0),
      statistics_(kStatistics, 1) {
  try {
    if (fresh) {
      env_.set_mapsize(kFirstMapSize);
      Open(flags);
      Make(*fresh);
      return;
    }
    StorePages{file_};  // refuses a damaged head
    Open(flags);
    const bool writes = (flags & MDB_RDONLY) == 0;
    {
      const Snapshot snapshot = Read();
      Load(snapshot);
      if (writes) RequireSoundPages(snapshot.Pages());
    }
    if (!writes) return;
    Transaction txn(Begin(MDB_RDONLY));
    OpenTrees(txn, 0);
    txn.Commit();  // the trees would be closed else
  } catch (const lmdb::error& error) {
    Fail(error);
  }
}

Store::Store(const std::string& directory, Access access)
    : Store((RewriteForThisMachine(directory), directory), access == Access::kRead ? MDB_RDONLY : 0,
            nullptr) {
  if (access != Access::kReindex) RequireOrders();
}

void Store::Open(unsigned flags) {
  if ((flags & MDB_NOSUBDIR) == 0) ReserveLockFile(path_);
  env_.set_max_dbs(kMostTrees);
  const int status = mdb_env_open(env_, path_.c_str(), flags, 0644);
  if (status == MDB_SUCCESS) return;
  const bool mayNotLock = status == EACCES || status == EROFS;
  if (!mayNotLock || (flags & MDB_RDONLY) == 0) lmdb::error::raise("mdb_env_open", status);
  env_ = lmdb::env::create();
  env_.set_max_dbs(kMostTrees);
  env_.open(path_.c_str(), flags | MDB_NOLOCK, 0644);
  unregisteredSince_ = LastTransaction();
}

void Store::Make(const Schema& schema) {
  schema_ = schema;
  NameTrees();
  Transaction txn(Begin(0));
  OpenTrees(txn, MDB_CREATE);
  const std::string json = schema.ToJson();
  lmdb::dbi_put(txn, facts_.handle, lmdb::val(kSchemaKey), lmdb::val(json), 0);
  if (HasChecksums()) {
    const Bytes checksum = ChecksumOf(facts_.seed, ViewOf(kSchemaKey), ViewOf(json));
    lmdb::dbi_put(txn, facts_.handle, lmdb::val(kSchemaChecksumKey), ValOf(checksum), 0);
  }
  SetFact(txn, kNextIdKey, StoredId(++OtObjId(), schema.form));
  for (const ClassTrees& trees : trees_) {
    for (const IndexTrees& index : trees.indexes) KeepOrder(txn, trees, index);
  }
  txn.Commit();
}

void Store::Load(const Snapshot& snapshot) {
  const auto json = Get(snapshot, facts_, ViewOf(kSchemaKey));
  const auto checksum = Get(snapshot, facts_, ViewOf(kSchemaChecksumKey));
  if (!json) throw BadInput(path_ + ": holds no schema");
  const Bytes expected = ChecksumOf(facts_.seed, ViewOf(kSchemaKey), *json);
  const bool isSound = !checksum || std::ranges::equal(*checksum, expected);
  if (isSound) {
    schema_ = ot95::tools::Naming(path_, [&] {
      return Schema::FromJson(std::string(json->begin(), json->end()), Schema::kFirstVersion);
    });
  }
  if (!isSound || HasChecksums() != checksum.has_value()) {
    throw BadInput(path_ + ": the schema is damaged");
  }
  NameTrees();
  hasStatistics_ = snapshot.Facts(statistics_) != nullptr;
  if (!hasStatistics_ && HasChecksums()) snapshot.Require(statistics_);
  for (const auto& [name, tree] : TreesByName()) {
    if (tree != &statistics_) snapshot.Require(*tree);
  }
}

Snapshot Store::Read() const {
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    lmdb::txn txn(Begin(MDB_RDONLY));
    auto pages = StorePages::Of(file_, mdb_txn_id(txn));
    if (pages) return Snapshot(std::move(txn), std::move(*pages));
  }
  throw BadInput(file_ + ": the head of the file is damaged");
}

void Store::Fail(const lmdb::error& error) const {
  const int code = error.code() == EIO ? ReasonOfHalfAWrite(file_) : error.code();
  throw BadInput(path_ + ": " + mdb_strerror(code) + " (" + error.origin() + ")");
}

std::size_t Store::LastTransaction() const {
  MDB_envinfo info;
  lmdb::env_info(env_, &info);
  return info.me_last_txnid;
}

void Store::RequireUnchanged() const {
  if (!unregisteredSince_ || *unregisteredSince_ == LastTransaction()) return;
  throw BadInput(path_ + ": was written to while it was read without the permission to lock it");
}

MDB_txn* Store::Begin(unsigned flags) const {
  for (;;) {
    MDB_txn* txn = nullptr;
    const int status = mdb_txn_begin(env_, nullptr, flags, &txn);
    if (status == MDB_SUCCESS) return txn;
    if (status != MDB_MAP_RESIZED) Fail(lmdb::error("mdb_txn_begin", status));
    // Another process made more room.
    const int resized = mdb_env_set_mapsize(env_, 0);
    if (resized != MDB_SUCCESS) Fail(lmdb::error("mdb_env_set_mapsize", resized));
  }
}

void Store::Create(const std::string& directory, const Schema& schema) {
  namespace fs = std::filesystem;
  if (TreesIn(schema) > kMostTrees) throw BadInput("schema: expected fewer classes and indexes");
  std::error_code error;
  fs::create_directories(directory, error);
  if (error || !fs::is_directory(directory)) {
    throw BadInput(directory + ": expected a directory, or a place for one");
  }
  if (!fs::is_empty(directory)) throw BadInput(directory + ": expected an empty directory");
  try {
    Store(directory, 0, &schema);
  } catch (const BadInput&) {
    // Half a store isn't one.
    for (const char* file : {"/data.mdb", "/lock.mdb"}) fs::remove(directory + file, error);
    throw;
  }
}

void Store::NameTrees() {
  unsigned number = statistics_.number;
  // Compare of identifiers walks from the last byte to the first, which is by serial number only in
  // the native form of most machines. Big-endian ones are so by their bytes.
  MDB_cmp_func* const bySerial =
      schema_.form == OT_FORMAT_BIG_ENDIAN ? nullptr : KeyComparer(kObjId, schema_.form);
  for (const Class& type : schema_.classes) {
    ClassTrees trees{&type, Tree(type.name, ++number, bySerial), {}};
    for (std::size_t i = 0; i < type.members.size(); ++i) {
      const Member& member = type.members[i];
      if (!member.indexed) continue;
      const std::string name = type.name + "." + member.name;
      MDB_cmp_func* const order = KeyComparer(member.type, Keys());
      const Tree all(name, ++number, order, true), partial(name + "~", ++number, order, true);
      trees.indexes.push_back({i, all, partial});
    }
    trees_.push_back(std::move(trees));
  }
}

std::map<std::string, const Tree*> Store::TreesByName() const {
  std::map<std::string, const Tree*> trees = {{facts_.name, &facts_},
                                              {statistics_.name, &statistics_}};
  for (const ClassTrees& each : trees_) {
    trees[each.objects.name] = &each.objects;
    for (const IndexTrees& index : each.indexes) {
      trees[index.all.name] = &index.all;
      trees[index.partial.name] = &index.partial;
    }
  }
  return trees;
}

void Store::OpenTrees(lmdb::txn& txn, unsigned create) {
  const auto open = [&](Tree& tree) {
    const unsigned flags = create | (tree.severalValues ? MDB_DUPSORT | MDB_DUPFIXED : 0);
    auto opened = lmdb::dbi::open(txn, tree.name.c_str(), flags);
    if (tree.order) opened.set_compare(txn, tree.order);
    tree.handle = opened.handle();
  };
  open(facts_);
  if (hasStatistics_) open(statistics_);
  for (ClassTrees& trees : trees_) {
    open(trees.objects);
    for (IndexTrees& index : trees.indexes) {
      open(index.all);
      open(index.partial);
    }
  }
}

void Store::Write(const std::function<void(lmdb::txn&)>& body) {
  for (;;) {
    try {
      try {
        Transaction txn(Begin(0));
        body(txn);
        txn.Commit();
        return;
      } catch (const lmdb::map_full_error&) {
        MDB_envinfo info;
        lmdb::env_info(env_, &info);
        env_.set_mapsize(info.me_mapsize * 2);
      }
    } catch (const lmdb::error& error) {
      Fail(error);
    }
  }
}

std::optional<View> Store::Sound(const Tree& tree, View key, View kept) const {
  if (!HasChecksums()) return kept;
  return Unsealed(tree.seed, key, kept);
}

View Store::Checked(const Tree& tree, View key, View kept) const {
  const auto sound = Sound(tree, key, kept);
  if (!sound) throw BadInput(path_ + ": a damaged entry in " + tree.name);
  return *sound;
}

Bytes Store::Kept(const Tree& tree, View key, View value) const {
  if (HasChecksums()) return Sealed(tree.seed, key, value);
  return {value.begin(), value.end()};
}

std::optional<View> Store::Find(const Snapshot& snapshot, const Tree& tree, View key) const {
  const auto kept = Get(snapshot, tree, key);
  if (!kept) return {};
  return Checked(tree, key, *kept);
}

std::optional<View> Store::KeptStatistics(const Snapshot& snapshot,
                                          const std::string& index) const {
  if (!hasStatistics_) return {};
  return Find(snapshot, statistics_, ViewOf(index));
}

void Store::KeepStatistics(const std::map<std::string, Bytes>& statistics) {
  Write([&](lmdb::txn& txn) {
    if (!hasStatistics_) {
      statistics_.handle = lmdb::dbi::open(txn, kStatistics, MDB_CREATE).handle();
    }
    for (const auto& [index, value] : statistics) {
      const Bytes kept = Kept(statistics_, ViewOf(index), value);
      lmdb::dbi_put(txn, statistics_.handle, ValOf(ViewOf(index)), ValOf(kept), 0);
    }
  });
  hasStatistics_ = true;
}

void Store::DropStatistics(lmdb::txn& txn, const std::string& index) {
  if (hasStatistics_) lmdb::dbi_del(txn, statistics_.handle, ValOf(ViewOf(index)));
}

std::optional<View> Store::Fact(const Snapshot& snapshot, const std::string& name) const {
  return Find(snapshot, facts_, ViewOf(name));
}

std::optional<View> Store::Fact(lmdb::txn& txn, const std::string& name) const {
  MDB_val found{};
  if (!lmdb::dbi_get(txn, facts_.handle, ValOf(ViewOf(name)), &found)) return {};
  return Checked(facts_, ViewOf(name), ViewOf(found));
}

bool Store::HasSoundFacts(const Snapshot& snapshot) const {
  for (const Tree* tree : {&facts_, &statistics_}) {
    if (snapshot.Facts(*tree) == nullptr) continue;
    Cursor cursor(snapshot, *tree);
    for (bool more = cursor.First(); more; more = cursor.Next()) {
      const std::string name(cursor.Key().begin(), cursor.Key().end());
      const bool standsApart =
          tree == &facts_ && (name == kSchemaKey || name == kSchemaChecksumKey);
      if (!standsApart && !Sound(*tree, cursor.Key(), cursor.Data())) return false;
    }
  }
  return true;
}

void Store::SetFact(lmdb::txn& txn, const std::string& name, View value) {
  const Bytes kept = Kept(facts_, ViewOf(name), value);
  lmdb::dbi_put(txn, facts_.handle, ValOf(ViewOf(name)), ValOf(kept), 0);
}

void Store::DropFact(lmdb::txn& txn, const std::string& name) {
  lmdb::dbi_del(txn, facts_.handle, ValOf(ViewOf(name)));
}

std::vector<Bytes> Store::TakeIds(lmdb::txn& txn, std::size_t count) {
  const auto stored = Fact(txn, kNextIdKey);
  if (!stored) throw BadInput("the store doesn't tell its next identifier");
  OtObjId next = LoadedId(*stored, schema_.form);
  std::vector<Bytes> ids;
  for (std::size_t i = 0; i < count; ++i, ++next) ids.push_back(StoredId(next, schema_.form));
  SetFact(txn, kNextIdKey, StoredId(next, schema_.form));
  return ids;
}

void Store::Add(const Class& type, const std::vector<Bytes>& records) {
  Write([&](lmdb::txn& txn) { Put(txn, TreesOf(type), TakeIds(txn, records.size()), records); });
}

void Store::Put(lmdb::txn& txn, const ClassTrees& trees, const std::vector<Bytes>& ids,
                const std::vector<Bytes>& records) {
  const MDB_dbi tree = trees.objects.handle;
  for (std::size_t i = 0; i < records.size(); ++i) {
    const Bytes kept = Kept(trees.objects, ids[i], records[i]);
    // New identifiers belong at the end until the serial number passes 32 bits.
    if (lmdb::dbi_put(txn, tree, ValOf(ids[i]), ValOf(kept), MDB_APPEND)) continue;
    lmdb::dbi_put(txn, tree, ValOf(ids[i]), ValOf(kept), 0);
  }
  for (const IndexTrees& index : trees.indexes) PutEntries(txn, trees, index, ids, records);
}

// In the order of the tree, so that neighbours find their page at hand.
void Store::PutEntries(lmdb::txn& txn, const ClassTrees& trees, const IndexTrees& index,
                       const std::vector<Bytes>& ids, const std::vector<Bytes>& records) {
  const Member& member = trees.type->members[index.member];
  std::vector<Bytes> keys;
  std::vector<Head> heads;
  keys.reserve(records.size());
  heads.reserve(records.size());
  for (const Bytes& bytes : records) {
    const View stored = Record(*trees.type, bytes, schema_.form).MemberAt(index.member);
    keys.push_back(KeyOf(member, stored, Keys()));
    heads.push_back(HeadOf(member, stored, schema_.form).value_or(Head{}));
  }
  const auto order = OrderByHeads(heads, keys.size(), [&](std::size_t a, std::size_t b) {
    return CompareKeys(member.type, keys[a], keys[b], Keys());
  });
  // A cursor finds a neighbour of its last entry without a way down the tree.
  auto cursor = lmdb::cursor::open(txn, index.all.handle);
  for (const std::size_t i : order) {
    lmdb::cursor_put(cursor, ValOf(keys[i]), ValOf(ids[i]), 0);
    if (IsWhole(member.type, keys[i], Keys())) continue;
    lmdb::dbi_put(txn, index.partial.handle, ValOf(keys[i]), ValOf(ids[i]), 0);
  }
}

bool IsId(View id, unsigned char form) {
  unsigned long consumed = 0;
  return Types().VerifyStored(kObjId, id.data(), id.size(), form, 1, consumed) == 0 &&
         consumed == id.size();
}

namespace {

constexpr const char* kIdFormat = "%L";  // the serial number while it has 32 bits

}  // namespace

std::string IdToText(View id, unsigned char form) {
  OtObjId loaded = LoadedId(id, form);
  OtString text;
  Types().PrintToOtString(kObjId, text, &loaded, loaded.highPart == 0 ? kIdFormat : nullptr, 1);
  return ot95::tools::ToUtf8(text);
}

Bytes IdFromText(const std::string& text, unsigned char form) {
  const bool isSerial = !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
  OtString source = ot95::tools::FromUtf8(text, OT_CS_UNICODE, 1);
  OtObjId id;
  Types().ScanFromOtString(kObjId, &id, source, isSerial ? kIdFormat : nullptr, 1);
  if (Types().IsNullValue(kObjId, &id)) {
    throw BadInput("ID: expected the identifier of an object, found " + ot95::tools::Quoted(text));
  }
  return StoredId(id, form);
}

}  // namespace otdb
