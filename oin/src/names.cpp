// From the names of code sets and the tags of languages to their numbers.

#include <algorithm>
#include <iterator>
#include <string>

#include "data.h"

namespace ot95 {
namespace {

// A name, by its place among the texts of all, which rise.
struct NumberedName {
  std::uint16_t place;
  unsigned char number;
};

#include "data/oin_names.inc"

template <std::size_t count>
unsigned char Find(const NumberedName (&names)[count], const char* texts, std::string_view wanted) {
  const auto* found = std::lower_bound(std::begin(names), std::end(names), wanted,
                                       [&](const NumberedName& name, std::string_view text) {
                                         return text.compare(texts + name.place) > 0;
                                       });
  return found != std::end(names) && texts + found->place == wanted ? found->number : 0;
}

// Small ASCII letters, whatever the locale of the C library.
char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

// A collation of its own, asked for in a tag as Unicode's extension does: "-u-co-phonebk".
std::string_view CollationOf(std::string_view tag) {
  const std::size_t start = tag.find("-u-co-");
  if (start == std::string_view::npos) return {};
  return tag.substr(start, tag.find('-', start + 6) - start);
}

}  // namespace

unsigned char NumberOfTag(std::string_view text) {
  std::string tag;
  for (const char c : text) tag += c == '_' ? '-' : Lower(c);
  const std::string own = tag.substr(0, tag.find('-')) + std::string(CollationOf(tag));
  if (const unsigned char number = Find(kTagNames, kTagTexts, own); own.find('-') != own.npos) {
    if (number != 0) return number;
  }
  for (;;) {
    if (const unsigned char number = Find(kTagNames, kTagTexts, tag)) return number;
    const std::size_t end = tag.rfind('-');
    if (end == std::string::npos) return 0;
    tag.resize(end);
  }
}

unsigned char NumberOfName(std::string_view text) {
  std::string name;
  for (const char c : text) {
    const char small = Lower(c);
    if ((small >= 'a' && small <= 'z') || (small >= '0' && small <= '9')) name += small;
  }
  if (const unsigned char number = Find(kCodeSetNames, kCodeSetTexts, name)) return number;
  for (const std::string_view maker : {"windows", "ebcdic", "ibm", "cp"}) {
    if (name.starts_with(maker)) {
      return Find(kCodeSetNames, kCodeSetTexts, std::string_view(name).substr(maker.size()));
    }
  }
  return 0;
}

}  // namespace ot95
