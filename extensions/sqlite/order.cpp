// Orders by name, and as arguments of functions.
#include "order.h"

#include <algorithm>
#include <vector>

namespace ot95::sqlite {

namespace {

constexpr std::string_view kPrefix = "ot95";

struct Option {
  std::string_view name;
  unsigned bit;
};
constexpr Option kOptions[] = {
    {"ci", OT95_IGNORE_CASE},    {"ai", OT95_IGNORE_ACCENT}, {"wi", OT95_IGNORE_SPACE},
    {"si", OT95_IGNORE_SYMBOLS}, {"oo", OT95_ORDER_ONLY},
};

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::vector<std::string> Split(std::string_view name, std::string_view separators) {
  std::vector<std::string> parts(1);
  for (const char c : name) {
    if (separators.find(c) == std::string_view::npos) {
      parts.back() += Lower(c);
    } else {
      parts.emplace_back();
    }
  }
  return parts;
}

unsigned OptionOf(std::string_view name) {
  for (const Option& option : kOptions) {
    if (option.name == name) return option.bit;
  }
  return 0;
}

std::optional<unsigned> LanguageOf(const std::vector<std::string>& parts) {
  std::string tag;
  for (const std::string& part : parts) tag += tag.empty() ? part : "-" + part;
  unsigned language = 1;
  if (!parts.empty() && ot95_language_by_tag(tag.c_str(), &language) != OT95_OK) return {};
  return language;
}

}  // namespace

std::optional<Order> ParseOrder(std::string_view name) {
  Order order;
  std::vector<std::string> parts = Split(name, "_-");
  if (parts.front() == kPrefix) parts.erase(parts.begin());
  // The first part may be an option only where it is no language: "si" is Sinhala.
  while (!parts.empty() && OptionOf(parts.back()) != 0) {
    if (parts.size() == 1 && LanguageOf(parts)) break;
    order.options |= OptionOf(parts.back());
    parts.pop_back();
  }
  const std::optional<unsigned> language = LanguageOf(parts);
  if (!language) return {};
  order.language = *language;
  return order;
}

std::optional<unsigned> ParseOptions(std::string_view names) {
  unsigned options = 0;
  for (const std::string& name : Split(names, "_ ,")) {
    if (name.empty()) continue;
    if (OptionOf(name) == 0) return {};
    options |= OptionOf(name);
  }
  return options;
}

std::string TagOf(unsigned language) {
  ot95_language found = {};
  found.struct_size = sizeof found;
  Check(ot95_language_describe(language, &found), "language");
  return found.tag;
}

Collation Open(const Order& order) {
  ot95_collation* opened = nullptr;
  Check(ot95_collation_open(TagOf(order.language).c_str(), order.options, &opened), "order");
  return Collation(opened);
}

const ot95_collation* OrderArgument(sqlite3_context* context, int count, sqlite3_value** values,
                                    int index) {
  if (index >= count) return static_cast<const ot95_collation*>(sqlite3_user_data(context));
  if (void* known = sqlite3_get_auxdata(context, index)) {
    return static_cast<const ot95_collation*>(known);
  }
  const std::string name(IsNull(values[index]) ? "NULL" : TextOf(values[index]));
  const std::optional<Order> order = ParseOrder(name);
  if (!order) throw Failure("expected an order such as 'sv_ci', found '" + name + "'");
  sqlite3_set_auxdata(context, index, Open(*order).release(), ot95_free);
  void* kept = sqlite3_get_auxdata(context, index);
  if (kept == nullptr) throw std::bad_alloc();
  return static_cast<const ot95_collation*>(kept);
}

int RegisterFunctions(sqlite3* db, const Function* first, std::size_t count) {
  constexpr int kPure = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
  for (const Function* function = first; function != first + count; ++function) {
    for (int arguments = function->fewest; arguments <= function->most; ++arguments) {
      const int status =
          sqlite3_create_function_v2(db, function->name, arguments, kPure, Open(Order()).release(),
                                     function->call, nullptr, nullptr, ot95_free);
      if (status != SQLITE_OK) return status;
    }
  }
  return SQLITE_OK;
}

}  // namespace ot95::sqlite
