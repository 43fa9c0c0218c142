// A sorted list: std::sort, by the order of a language. sorted LANGUAGE < LINES
#include <algorithm>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "ot95c/ot95c.h"

namespace {

/// The order of a language, ready for std::sort: it compares texts in UTF-8 as they are.
class Collation {
 public:
  explicit Collation(const char* tag, unsigned options = 0) {
    ot95_collation* opened = nullptr;
    status_ = ot95_collation_open(tag, options, &opened);
    collation_.reset(opened, ot95_free);
  }
  int status() const { return status_; }

  bool operator()(const std::string& a, const std::string& b) const {
    int sign = 0;
    ot95_collation_compare(collation_.get(), a.data(), a.size(), b.data(), b.size(), &sign);
    return sign < 0;
  }

 private:
  std::shared_ptr<ot95_collation> collation_;  // sorting copies what it compares with
  int status_;
};

}  // namespace

int main(int count, char** arguments) {
  const char* language = count > 1 ? arguments[1] : "";
  const Collation order(language);
  if (order.status() != OT95_OK) {
    std::cerr << "sorted: " << language << ": " << ot95_strerror(order.status()) << "\n";
    return 2;
  }
  std::vector<std::string> lines;
  for (std::string line; std::getline(std::cin, line);) lines.push_back(line);
  std::sort(lines.begin(), lines.end(), order);
  for (const std::string& line : lines) std::cout << line << "\n";
}
