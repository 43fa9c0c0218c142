#ifndef OT95_BENCH_CORPUS_H
#define OT95_BENCH_CORPUS_H

#include <string>
#include <utility>
#include <vector>

#include "ot95/text.h"

namespace bench {

/// One name in every form that a workload asks for.
struct Name {
  std::string utf8;
  std::u16string units;
  OtString wide;
};

using Names = std::vector<Name>;
/// Distinct Latin names: those of the corpus, and each again behind others of it.
Names ManyNames(std::size_t count);

/// They lie in memory in the order of their use, as all lists of names do.
using Pairs = std::vector<std::pair<Name, Name>>;

/// The distinct names of a corpus, a file of the folder that the program was given: "latin",
/// "greek", "cyrillic", "han", and dictionaries of languages.
const Names& NamesOf(const std::string& corpus);

Pairs RandomPairs(const Names& names);
/// Neighbours in collation order.
Pairs AdjacentPairs(const Names& names);
/// Each name with itself in capitals, and with its first letter alone in the other case.
Pairs CapitalPairs(const Names& names);
Pairs FirstLetterPairs(const Names& names);

void SetCorpusFolder(const std::string& folder);

OtString ToWide(const std::u16string& units);
/// The text in a code set of one byte a character.
OtString ToNarrow(const OtString& text, unsigned char codeSet);

/// Takes the elements of a list round and round.
template <class List>
class Cycle {
 public:
  explicit Cycle(const List& list) : list_(&list) {}
  const typename List::value_type& Next() {
    if (next_ == list_->size()) next_ = 0;
    return (*list_)[next_++];
  }

 private:
  const List* list_;
  std::size_t next_ = 0;
};

}  // namespace bench

#endif
