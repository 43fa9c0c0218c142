// Places in a Redis cluster: places_redis PORT import|find|check ...
//
// An index is a few sorted sets whose members all have the same score, and so are in the order of
// their bytes. Which set holds an entry is decided by the hash of its value: the sets lie on
// different nodes, and a query asks all of them.
#include <algorithm>
#include <iostream>
#include <stdexcept>

#include "cluster.h"
#include "places.h"

namespace {

class RedisStore : public places::ByteStore {
 public:
  explicit RedisStore(int port) : cluster_(port) {}

  void PutRecord(std::uint64_t id, const std::string& record) override {
    cluster_.Send({"SET", RecordKey(id), record});
  }
  std::optional<std::string> Record(std::uint64_t id) override {
    const Cluster::Reply reply = cluster_.Run({"GET", RecordKey(id)});
    if (reply->type == REDIS_REPLY_NIL) return {};
    return std::string(reply->str, reply->len);
  }

  void PutEntry(const std::string& index, std::uint64_t shard, const std::string& entry) override {
    cluster_.Send({"ZADD", SetKey(index, shard % kShards), "0", entry});
  }
  std::vector<std::string> Entries(const std::string& index, const std::string& lower,
                                   const std::string& upper) override {
    std::vector<std::string> entries;
    for (std::uint64_t shard = 0; shard < kShards; ++shard) {
      const Cluster::Reply reply =
          cluster_.Run({"ZRANGEBYLEX", SetKey(index, shard), lower.empty() ? "-" : "[" + lower,
                        upper.empty() ? "+" : "(" + upper});
      for (std::size_t i = 0; i < reply->elements; ++i) {
        entries.emplace_back(reply->element[i]->str, reply->element[i]->len);
      }
    }
    std::sort(entries.begin(), entries.end());  // by bytes, as unsigned ones
    return entries;
  }
  void Flush() override { cluster_.Finish(); }

 private:
  static constexpr std::uint64_t kShards = 8;

  static std::string RecordKey(std::uint64_t id) { return "place:" + std::to_string(id); }
  static std::string SetKey(const std::string& index, std::uint64_t shard) {
    return "index:" + index + ":" + std::to_string(shard);
  }

  Cluster cluster_;
};

}  // namespace

int main(int argc, char** argv) {
  try {
    if (argc < 3) throw std::runtime_error("expected PORT and import, find or check");
    ___OtTypemgrContext(1);
    RedisStore store(std::stoi(argv[1]));
    return places::Run(store, argc - 2, argv + 2);
  } catch (const std::exception& error) {
    std::cerr << "places_redis: " << error.what() << "\n";
    return 2;
  }
}
