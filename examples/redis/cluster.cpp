// Talks to a cluster of nodes that each keep a share of the slots.

#include "cluster.h"

#include <stdexcept>

namespace {

constexpr unsigned kSlots = 16384;
constexpr int kMostWaiting = 1000;
constexpr const char* kLocal = "127.0.0.1";

/// What stands in braces decides where a key belongs, so that keys can be kept together.
std::string Tag(const std::string& key) {
  const std::size_t open = key.find('{');
  const std::size_t close = open == std::string::npos ? open : key.find('}', open + 1);
  return close == std::string::npos || close == open + 1 ? key
                                                         : key.substr(open + 1, close - open - 1);
}

/// The cyclic redundancy check with polynomial 1021 and start 0.
unsigned SlotOf(const std::string& key) {
  unsigned crc = 0;
  for (const char byte : Tag(key)) {
    crc ^= static_cast<unsigned>(static_cast<unsigned char>(byte)) << 8;
    for (int bit = 0; bit < 8; ++bit)
      crc = (crc << 1 ^ ((crc & 0x8000) != 0 ? 0x1021U : 0)) & 0xffff;
  }
  return crc % kSlots;
}

void Append(redisContext* connection, const Cluster::Arguments& arguments) {
  std::vector<const char*> places;
  std::vector<std::size_t> lengths;
  for (const std::string& argument : arguments) {
    places.push_back(argument.data());
    lengths.push_back(argument.size());
  }
  redisAppendCommandArgv(connection, static_cast<int>(places.size()), places.data(),
                         lengths.data());
}

Cluster::Reply Receive(redisContext* connection) {
  void* reply = nullptr;
  if (redisGetReply(connection, &reply) != REDIS_OK) throw std::runtime_error(connection->errstr);
  Cluster::Reply answer(static_cast<redisReply*>(reply));
  if (answer->type == REDIS_REPLY_ERROR) throw std::runtime_error(answer->str);
  return answer;
}

}  // namespace

Cluster::Cluster(int port) {
  redisContext* const first = Connect(port).connection.get();
  Append(first, {"CLUSTER", "SLOTS"});
  const Reply slots = Receive(first);
  for (std::size_t i = 0; i < slots->elements; ++i) {
    const redisReply& stretch = *slots->element[i];  // first slot, last slot, master: address, port
    const redisReply& master = *stretch.element[2];
    lastSlots_[static_cast<unsigned>(stretch.element[1]->integer)] =
        &Connect(static_cast<int>(master.element[1]->integer));
  }
  if (lastSlots_.empty() || lastSlots_.rbegin()->first != kSlots - 1) {
    throw std::runtime_error("the nodes are no cluster, or not all of it is there");
  }
}

Cluster::Node& Cluster::Connect(int port) {
  Node& node = nodes_[port];
  if (node.connection) return node;
  node.connection.reset(redisConnect(kLocal, port));
  if (!node.connection || node.connection->err != 0) {
    throw std::runtime_error("no node at port " + std::to_string(port));
  }
  return node;
}

Cluster::Node& Cluster::NodeOf(const std::string& key) {
  return *lastSlots_.lower_bound(SlotOf(key))->second;
}

void Cluster::FinishNode(Node& node) {
  for (; node.waiting > 0; --node.waiting) Receive(node.connection.get());
}

Cluster::Reply Cluster::Run(const Arguments& arguments) {
  Node& node = NodeOf(arguments.at(1));
  FinishNode(node);
  Append(node.connection.get(), arguments);
  return Receive(node.connection.get());
}

void Cluster::Send(const Arguments& arguments) {
  Node& node = NodeOf(arguments.at(1));
  Append(node.connection.get(), arguments);
  if (++node.waiting == kMostWaiting) FinishNode(node);
}

void Cluster::Finish() {
  for (auto& [port, node] : nodes_) FinishNode(node);
}
