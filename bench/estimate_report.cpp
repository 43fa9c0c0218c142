// Estimates beside the truth: how far the share that a planner is told lies from the one that
// satisfies the comparison, over columns as applications have them.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>

#include "corpus.h"
#include "ot95/temporal.h"
#include "ot95/typemgr.h"
#include "report.h"

namespace bench {
namespace {

using Bytes = std::vector<unsigned char>;
constexpr unsigned char form = OT_FORMAT_NATIVE;
constexpr unsigned char keyForm = 0x80 | form;
constexpr int operandsAsked = 200;

struct Relation {
  const char* name;
  unsigned short op;
};
constexpr Relation relations[] = {{"=", OT_OP_EQUAL},
                                  {"<", OT_OP_LESS},
                                  {"<=", OT_OP_LESS | OT_OP_EQUAL},
                                  {">", OT_OP_GREATER},
                                  {">=", OT_OP_GREATER | OT_OP_EQUAL},
                                  {"<>", OT_OP_LESS | OT_OP_GREATER}};

/// A column of a type: its stored values, and those values as an index holds them.
struct Column {
  std::string name;
  char id = 0;
  std::vector<Bytes> values;
  std::vector<Bytes> keys;
  /// Patterns with a prefix of a value, per length; texts alone have them.
  std::vector<Bytes> patterns[3];
};

OtTypeMgr& Types() {
  static OtTypeMgr types;
  return types;
}

long Compare(char id, const Bytes& a, const Bytes& b, unsigned short cmpOp) {
  int status = 0;
  return Types().Cmp(id, a.size(), const_cast<unsigned char*>(a.data()), b.size(),
                     const_cast<unsigned char*>(b.data()), cmpOp, 1, form, status);
}

Bytes Store(char id, void* value) {
  Bytes bytes(Types().DiskLenGet(id, value, form, 1, OT_FORMAT_MEMORY));
  Types().Store(id, bytes.data(), value, form, 1);
  return bytes;
}

/// How many values of a column are less, equal and greater than an operand.
struct Truth {
  double less = 0, equal = 0, greater = 0;

  Truth(const Column& column, const Bytes& operand, unsigned short cmpOp) {
    for (const Bytes& value : column.values) {
      const long result = Compare(column.id, value, operand, cmpOp);
      (result < 0 ? less : result > 0 ? greater : equal) += 1;
    }
  }
  double Share(unsigned short op) const {
    const double sum = ((op & OT_OP_LESS) ? less : 0) + ((op & OT_OP_EQUAL) ? equal : 0) +
                       ((op & OT_OP_GREATER) ? greater : 0);
    return sum / (less + equal + greater);
  }
};

double Estimate(const Column& column, const OtIdxBounds& range, Bytes operand, unsigned short op) {
  OtIdxBounds bounds = range;
  OtIdxBounds limits{nullptr, nullptr, 0, 0};
  const float share =
      Types().EvalAndBound(column.id, &bounds, op, operand.data(), form, 1, &limits, nullptr);
  std::free(limits.lowerKey);
  std::free(limits.upperKey);
  return static_cast<double>(share);
}

/// The errors of one kind of comparison.
class Errors {
 public:
  void Add(double estimate, double truth) { errors_.push_back(std::fabs(estimate - truth)); }
  /// Median and worst, in hundredths of the column.
  void Print() {
    if (errors_.empty()) {
      std::printf(" %14s", "-");
      return;
    }
    std::sort(errors_.begin(), errors_.end());
    std::printf(" %6.2f %7.2f", 100 * errors_[errors_.size() / 2], 100 * errors_.back());
  }

 private:
  std::vector<double> errors_;
};

void Report(const Column& column) {
  const auto [low, high] = std::minmax_element(
      column.keys.begin(), column.keys.end(), [&](const auto& a, const auto& b) {
        return Compare(column.id, a, b, OT_CMP_NO_WILDCARDS) < 0;
      });
  const OtIdxBounds range{
      const_cast<unsigned char*>(low->data()), const_cast<unsigned char*>(high->data()),
      static_cast<unsigned char>(low->size()), static_cast<unsigned char>(high->size())};
  std::printf("%-9s %-22s %6zu", Types().NameGet(column.id, nullptr), column.name.c_str(),
              column.values.size());
  Errors errors[std::size(relations)];
  for (int i = 0; i < operandsAsked; ++i) {
    // The columns are in random order.
    const Bytes& operand = column.values[static_cast<std::size_t>(i) % column.values.size()];
    const Truth truth(column, operand, OT_CMP_NO_WILDCARDS);
    for (std::size_t r = 0; r < std::size(relations); ++r) {
      const auto op = static_cast<unsigned short>(relations[r].op | OT_CMP_NO_WILDCARDS);
      errors[r].Add(Estimate(column, range, operand, op), truth.Share(op));
    }
  }
  for (Errors& kind : errors) kind.Print();
  for (const auto& patterns : column.patterns) {
    Errors kind;
    for (const Bytes& pattern : patterns) {
      kind.Add(Estimate(column, range, pattern, OT_OP_EQUAL),
               Truth(column, pattern, 0).Share(OT_OP_EQUAL));
    }
    kind.Print();
  }
  std::printf("\n");
}

/// Names in a language of their script: an operand's place on the line begins with that script.
Column Texts(const std::string& script, const char* tag) {
  const unsigned char language = OtLanguageContext::LanguageOfTag(tag);
  Column column{script + " names", 11, {}, {}, {}};
  for (const Name& name : NamesOf(script)) {
    OtString text = name.wide;
    text.SetLanguageCode(language);
    column.values.push_back(Store(column.id, &text));
    Bytes key(OtINDEX_MAX_KEYLEN);
    key.resize(Types().Translate(column.id, key.data(), keyForm, key.size(), &text,
                                 OT_FORMAT_MEMORY, sizeof text, 1));
    column.keys.push_back(std::move(key));
    for (std::size_t length = 1; length <= std::size(column.patterns); ++length) {
      auto& patterns = column.patterns[length - 1];
      if (patterns.size() == operandsAsked || name.units.size() <= length) continue;
      OtString pattern = ToWide(name.units.substr(0, length) + u"*");
      pattern.SetLanguageCode(language);
      patterns.push_back(Store(column.id, &pattern));
    }
  }
  return column;
}

/// A column of 20,000 values that `next` makes.
template <class Next>
Column Numbers(const char* type, const char* name, Next&& next) {
  Column column{name, 0, {}, {}, {}};
  Types().Name2OtTypeId(type, column.id);
  std::mt19937 random(95);
  for (int i = 0; i < 20000; ++i) {
    auto value = next(random);
    column.values.push_back(Store(column.id, &value));
  }
  column.keys = column.values;
  return column;
}

template <class Distribution>
auto Longs(Distribution distribution) {
  return [distribution](std::mt19937& random) mutable {
    return static_cast<OtLong>(std::clamp(distribution(random), -2e9, 2e9));
  };
}

/// Days from `last` back.
template <class Distribution>
auto DaysBefore(OtDate last, Distribution distribution) {
  return [=](std::mt19937& random) mutable {
    return OtDate(static_cast<long>(last) - static_cast<long>(distribution(random)));
  };
}

}  // namespace

void ReportEstimates() {
  std::printf("estimated beside true shares: median and worst error, in %% of the column\n%-39s",
              "type      column                   rows");
  for (const Relation& relation : relations) std::printf(" %14s", relation.name);
  for (const char* pattern : {"x*", "xy*", "xyz*"}) std::printf(" %14s", pattern);
  std::printf("\n");
  constexpr std::pair<const char*, const char*> scripts[] = {
      {"latin", "en"}, {"greek", "el"}, {"cyrillic", "ru"}, {"han", "zh"}};
  for (const auto& [script, tag] : scripts) Report(Texts(script, tag));
  const OtDate last(2024, 12, 31);
  Report(Numbers("long", "uniform", Longs(std::uniform_real_distribution<>(0, 1e6))));
  Report(Numbers("long", "normal", Longs(std::normal_distribution<>(0, 1e5))));
  Report(Numbers("long", "populations, lognormal", Longs(std::lognormal_distribution<>(9, 1.5))));
  Report(Numbers("double", "measured, normal", std::normal_distribution<>(20, 5)));
  Report(Numbers("double", "prices, lognormal", std::lognormal_distribution<>(3, 1)));
  Report(Numbers("OtDate", "births, uniform",
                 DaysBefore(last, std::uniform_real_distribution<>(0, 36500))));
  Report(Numbers("OtDate", "orders, mostly recent",
                 DaysBefore(last, std::exponential_distribution<>(1.0 / 400))));
}

}  // namespace bench
