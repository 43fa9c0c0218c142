// The store's estimates beside true counts: how many rows a query planner expects of each relation
// and prefix, on every column of the world's places, after an import as users have it.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <random>
#include <unordered_map>

#include "import.h"
#include "plan.h"
#include "record.h"
#include "report.h"
#include "scratch.h"
#include "utf8text.h"
#include "value.h"

namespace bench {
namespace {

using otdb::Bytes;

constexpr int operandsAsked = 60;
constexpr double ofTruth = 0.1;    // what an estimate may miss: this part of the true count,
constexpr double ofRows = 0.0005;  // or this part of all rows, whichever is more

/// As in examples/objectstore/places.json, but with an index over every column.
constexpr const char* schema = R"({"classes": [{"name": "Place", "members": [
  {"name": "code", "type": "OtString", "codeSet": 1, "indexed": true},
  {"name": "name", "type": "OtString", "indexed": true},
  {"name": "country", "type": "OtString", "codeSet": 1, "indexed": true},
  {"name": "countryNumber", "type": "OtWord", "indexed": true},
  {"name": "kind", "type": "OtString", "indexed": true},
  {"name": "partOf", "type": "OtString", "codeSet": 1, "indexed": true},
  {"name": "language", "type": "OtString", "codeSet": 1, "indexed": true},
  {"name": "translated", "type": "OtBoolean", "indexed": true},
  {"name": "revised", "type": "OtDate", "format": "%Y-%m-%d", "indexed": true}]}]})";

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
constexpr std::size_t prefixes[] = {1, 2, 3};

/// A member of all objects: its different values, and how often each is there.
struct Column {
  std::size_t member = 0;
  std::vector<std::pair<Bytes, double>> values;
  std::vector<Bytes> sample;  ///< Of the rows, so that frequent values come often.
};

class Report {
 public:
  explicit Report(const std::string& csv) {
    const std::string directory = scratch_.Path("places");
    otdb::Store::Create(directory, otdb::Schema::FromJson(schema));
    store_ = std::make_unique<otdb::Store>(directory);
    rows_ = static_cast<double>(otdb::Import(*store_, Places(), csv, {}).objects);
  }

  void Run() {
    std::printf(
        "\notdb, %.0f places: median error of estimated counts, in rows, and as a part of "
        "what is allowed\n%-14s",
        rows_, "column");
    for (const Relation& relation : relations) std::printf(" %15s", relation.name);
    for (const char* pattern : {"x*", "xy*", "xyz*"}) std::printf(" %15s", pattern);
    std::printf("\n");
    for (std::size_t i = 0; i < Places().members.size(); ++i) RunColumn(ColumnOf(i));
    std::printf("%d of %d medians within\n", within_, medians_);
  }

 private:
  const otdb::Class& Places() const { return store_->GetSchema().classes[0]; }
  unsigned char Form() const { return store_->GetSchema().form; }

  Column ColumnOf(std::size_t member) const {
    Column column{member, {}, {}};
    std::unordered_map<std::string, double> counts;
    std::mt19937 random(95);
    auto txn = store_->Read();
    otdb::Cursor cursor(txn, store_->TreesOf(Places()).objects);
    std::size_t row = 0;
    for (bool more = cursor.First(); more; more = cursor.Next(), ++row) {
      const otdb::View value = otdb::Record(Places(), cursor.Data(), Form()).MemberAt(member);
      counts[std::string(value.begin(), value.end())] += 1;
      // Each row is as likely as any other to be among the sample.
      const std::size_t place = random() % (row + 1);
      if (column.sample.size() < operandsAsked) {
        column.sample.emplace_back(value.begin(), value.end());
      } else if (place < operandsAsked) {
        column.sample[place].assign(value.begin(), value.end());
      }
    }
    for (const auto& [value, count] : counts) {
      column.values.emplace_back(Bytes(value.begin(), value.end()), count);
    }
    return column;
  }

  double TrueCount(const Column& column, const otdb::Term& term) const {
    const otdb::Member& member = Places().members[column.member];
    double count = 0;
    for (const auto& [value, times] : column.values) {
      const long sign = otdb::CompareStored(member, value, term.operand, term.options, Form());
      if (otdb::Satisfies(sign, term.relation)) count += times;
    }
    return count;
  }

  double EstimatedCount(const otdb::Term& term) const {
    otdb::Query query;
    query.type = &Places();
    query.where.kind = otdb::Condition::kTerm;
    query.where.term = term;
    auto txn = store_->Read();
    return otdb::MakePlan(*store_, txn, query).terms.at(0).share * rows_;
  }

  /// The errors of one kind of comparison.
  struct Errors {
    std::vector<double> inRows, ofAllowed;
  };

  void Add(const Column& column, const otdb::Term& term, Errors& errors) const {
    const double truth = TrueCount(column, term);
    const double error = std::fabs(EstimatedCount(term) - truth);
    errors.inRows.push_back(error);
    errors.ofAllowed.push_back(error / std::max(ofTruth * truth, ofRows * rows_));
  }

  void Print(Errors& errors) {
    if (errors.inRows.empty()) {
      std::printf(" %15s", "-");
      return;
    }
    const auto median = [](std::vector<double>& values) {
      const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
      std::nth_element(values.begin(), middle, values.end());
      return *middle;
    };
    const double part = median(errors.ofAllowed);
    std::printf(" %9.0f %5.2f", median(errors.inRows), part);
    ++medians_;
    within_ += part < 1;
  }

  void RunColumn(const Column& column) {
    const otdb::Member& member = Places().members[column.member];
    std::printf("%-14s", member.name.c_str());
    for (const Relation& relation : relations) {
      Errors errors;
      for (const Bytes& operand : column.sample) {
        Add(column, {column.member, relation.op, OT_CMP_NO_WILDCARDS, operand, ""}, errors);
      }
      Print(errors);
    }
    for (const std::size_t length : prefixes) {
      Errors errors;
      for (const Bytes& value : column.sample) {
        if (const auto pattern = PatternOf(member, value, length)) {
          Add(column, {column.member, OT_OP_EQUAL, 0, *pattern, ""}, errors);
        }
      }
      Print(errors);
    }
    std::printf("\n");
    std::fflush(stdout);
  }

  /// The first characters of a text, and a wildcard.
  std::optional<Bytes> PatternOf(const otdb::Member& member, const Bytes& stored,
                                 std::size_t length) const {
    if (!member.IsText()) return {};
    otdb::Value value(member);
    value.Load(stored, Form());
    if (value.IsNull(0)) return {};
    OtString text = ot95::tools::FromUtf8(value.Print(0), OT_CS_UNICODE, 1);
    if (text.Len() <= length) return {};
    const std::string prefix = ot95::tools::ToUtf8(text.Copy(0, static_cast<short>(length))) + "*";
    return otdb::OperandFor(member, prefix, Form());
  }

  Scratch scratch_;
  std::unique_ptr<otdb::Store> store_;
  double rows_ = 0;
  int within_ = 0, medians_ = 0;
};

}  // namespace

void ReportStoreEstimates(const std::string& csv) {
  if (std::filesystem::exists(csv)) Report(csv).Run();
}

}  // namespace bench
