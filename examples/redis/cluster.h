#ifndef CLUSTER_H
#define CLUSTER_H

#include <hiredis/hiredis.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

/// The nodes of a cluster. Each key belongs to one of 16,384 slots, and each slot to a node.
class Cluster {
 public:
  struct FreeReply {
    void operator()(redisReply* reply) const { freeReplyObject(reply); }
  };
  using Reply = std::unique_ptr<redisReply, FreeReply>;
  using Arguments = std::vector<std::string>;

  /// Asks one node of the local machine for all. Throws std::runtime_error.
  explicit Cluster(int port);

  /// Runs a command whose second argument is its key, at the node of that key.
  Reply Run(const Arguments& arguments);
  /// The same without waiting: Finish tells whether all went well.
  void Send(const Arguments& arguments);
  void Finish();

 private:
  struct Close {
    void operator()(redisContext* context) const { redisFree(context); }
  };
  struct Node {
    std::unique_ptr<redisContext, Close> connection;
    int waiting = 0;  ///< Answers that are still to come.
  };

  Node& Connect(int port);
  Node& NodeOf(const std::string& key);
  void FinishNode(Node& node);

  std::map<int, Node> nodes_;            // by port
  std::map<unsigned, Node*> lastSlots_;  // the last slot of each stretch
};

#endif
