// Places in RocksDB, which orders keys by their bytes: places_rocksdb DIR import|find|check ...
#include <rocksdb/db.h>

#include <iostream>
#include <memory>
#include <stdexcept>

#include "places.h"

namespace {

/// Everything in one tree: records under "#" and their number, entries under their index's name.
class RocksStore : public places::ByteStore {
 public:
  explicit RocksStore(const std::string& directory) {
    rocksdb::Options options;
    options.create_if_missing = true;
    rocksdb::DB* opened = nullptr;
    Require(rocksdb::DB::Open(options, directory, &opened));
    db_.reset(opened);
  }

  void PutRecord(std::uint64_t id, const std::string& record) override {
    Require(db_->Put({}, RecordKey(id), record));
  }
  std::optional<std::string> Record(std::uint64_t id) override {
    std::string record;
    const rocksdb::Status status = db_->Get({}, RecordKey(id), &record);
    if (status.IsNotFound()) return {};
    Require(status);
    return record;
  }

  void PutEntry(const std::string& index, std::uint64_t, const std::string& entry) override {
    Require(db_->Put({}, index + kEndOfName + entry, rocksdb::Slice()));
  }
  std::vector<std::string> Entries(const std::string& index, const std::string& lower,
                                   const std::string& upper) override {
    const std::string prefix = index + kEndOfName;
    const std::string end = upper.empty() ? index + kBehindName : prefix + upper;
    const rocksdb::Slice limit(end);
    rocksdb::ReadOptions options;
    options.iterate_upper_bound = &limit;
    const std::unique_ptr<rocksdb::Iterator> at(db_->NewIterator(options));
    std::vector<std::string> entries;
    for (at->Seek(prefix + lower); at->Valid(); at->Next()) {
      entries.push_back(at->key().ToString().substr(prefix.size()));
    }
    Require(at->status());
    return entries;
  }

 private:
  static constexpr char kEndOfName = 0, kBehindName = 1;

  static void Require(const rocksdb::Status& status) {
    if (!status.ok()) throw std::runtime_error(status.ToString());
  }
  static std::string RecordKey(std::uint64_t id) { return "#" + std::to_string(id); }

  std::unique_ptr<rocksdb::DB> db_;
};

}  // namespace

int main(int argc, char** argv) {
  try {
    if (argc < 3) throw std::runtime_error("expected DIR and import, find or check");
    ___OtTypemgrContext(1);
    RocksStore store(argv[1]);
    return places::Run(store, argc - 2, argv + 2);
  } catch (const std::exception& error) {
    std::cerr << "places_rocksdb: " << error.what() << "\n";
    return 2;
  }
}
