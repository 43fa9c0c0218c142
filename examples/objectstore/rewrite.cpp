// Stores of the other machine word.
#include "rewrite.h"

#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <iostream>
#include <memory>

#include "bad_input.h"
#include "pages.h"
#include "record.h"
#include "statistics.h"
#include "store.h"

namespace otdb {

using ot95::tools::BadInput;
using OtherWord = std::conditional_t<sizeof(void*) == 8, std::uint32_t, std::uint64_t>;

/// Fills a new store with the objects of a foreign file, a batch at a time.
class Rewriter {
 public:
  Rewriter(const PageFile<OtherWord>& from, const std::string& path)
      : from_(from), schema_(SchemaOf(from, nextId_)), to_(path, MDB_NOSUBDIR, &schema_) {}

  void Run() {
    for (const ClassTrees& trees : to_.Trees()) {
      from_.Visit(trees.type->name, [&](View id, View record) { Take(trees, id, record); });
      Flush(trees);
    }
    to_.Write([&](lmdb::txn& txn) {
      const std::string name = "nextId";
      const View key(reinterpret_cast<const unsigned char*>(name.data()), name.size());
      to_.SetFact(txn, name, to_.Checked(to_.facts_, key, nextId_));
    });
    Analyze(to_, {});
  }

 private:
  static constexpr std::size_t kBatch = 10'000;

  static Schema SchemaOf(const PageFile<OtherWord>& from, Bytes& nextId) {
    std::string json;
    from.Visit("facts", [&](View key, View value) {
      const std::string name(key.begin(), key.end());
      if (name == "schema") json.assign(value.begin(), value.end());
      if (name == "nextId") nextId.assign(value.begin(), value.end());
    });
    if (json.empty() || nextId.empty())
      throw BadInput("a store of another machine, without a schema");
    return Schema::FromJson(json, Schema::kFirstVersion);
  }

  void Take(const ClassTrees& trees, View id, View kept) {
    const View record = to_.Checked(trees.objects, id, kept);
    if (!IsId(id, schema_.form) || !Record(*trees.type, record, schema_.form).IsSound()) {
      throw BadInput("a damaged object in the store");
    }
    ids_.emplace_back(id.begin(), id.end());
    records_.emplace_back(record.begin(), record.end());
    if (ids_.size() == kBatch) Flush(trees);
  }

  void Flush(const ClassTrees& trees) {
    to_.Write([&](lmdb::txn& txn) { to_.Put(txn, trees, ids_, records_); });
    ids_.clear();
    records_.clear();
  }

  const PageFile<OtherWord>& from_;
  Bytes nextId_;
  Schema schema_;
  Store to_;
  std::vector<Bytes> ids_, records_;
};

namespace {

// Every process that has the store open holds a lock on the first byte of this file.
void RequireUnused(const std::string& lockFile) {
  const int file = open(lockFile.c_str(), O_RDWR | O_CLOEXEC);
  if (file < 0) return;
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  lock.l_len = 1;
  const bool isFree = fcntl(file, F_GETLK, &lock) == 0 && lock.l_type == F_UNLCK;
  close(file);
  if (!isFree) throw BadInput(lockFile + ": another process has the store open");
}

}  // namespace

void RewriteForThisMachine(const std::string& directory) {
  namespace fs = std::filesystem;
  const std::string data = directory + "/data.mdb";
  std::error_code error;
  const auto size = fs::file_size(data, error);
  if (error) throw BadInput(directory + ": expected a store (data.mdb: " + error.message() + ")");
  if (size == 0) throw BadInput(data + ": expected a store's file, found an empty one");
  if (!PageFile<OtherWord>::IsOne(data)) return;
  RequireUnused(directory + "/lock.mdb");
  std::cerr << "otdb: " << directory
            << " was written with the word of another machine; rewriting\n";
  const std::string fresh = data + ".new";
  fs::remove(fresh);
  const PageFile<OtherWord> from(data);
  Rewriter(from, fresh).Run();
  fs::rename(fresh, data);
  fs::remove(fresh + "-lock");
  fs::remove(directory + "/lock.mdb");
}

}  // namespace otdb
