// The table-valued function ot_records('file', 'layout' [, 'form']): records of a file as rows.
#include <cmath>
#include <limits>
#include <optional>

#include "recordfile.h"
#include "vtab.h"

namespace ot95::sqlite {

namespace {

enum Columns { kRecord, kOffset, kValue, kFile, kLayout, kForm };

/// What a plan tells Filter: a letter for each argument.
struct Use {
  int column;
  unsigned char op;
  char letter;
};
constexpr int kRowId = -1;
constexpr Use kUses[] = {
    {kFile, SQLITE_INDEX_CONSTRAINT_EQ, 'f'},      {kLayout, SQLITE_INDEX_CONSTRAINT_EQ, 'l'},
    {kForm, SQLITE_INDEX_CONSTRAINT_EQ, 'm'},      {kRecord, SQLITE_INDEX_CONSTRAINT_EQ, '='},
    {kRecord, SQLITE_INDEX_CONSTRAINT_GE, 'g'},    {kRecord, SQLITE_INDEX_CONSTRAINT_GT, '>'},
    {kRecord, SQLITE_INDEX_CONSTRAINT_LE, 'e'},    {kRecord, SQLITE_INDEX_CONSTRAINT_LT, '<'},
    {kRecord, SQLITE_INDEX_CONSTRAINT_LIMIT, 'L'}, {kRecord, SQLITE_INDEX_CONSTRAINT_OFFSET, 'O'},
};

bool IsLimit(unsigned char op) {
  return op == SQLITE_INDEX_CONSTRAINT_LIMIT || op == SQLITE_INDEX_CONSTRAINT_OFFSET;
}

char LetterOf(const sqlite3_index_info::sqlite3_index_constraint& constraint) {
  const int column = constraint.iColumn == kRowId ? int{kRecord} : constraint.iColumn;
  for (const Use& use : kUses) {
    if (use.op == constraint.op && (IsLimit(use.op) || use.column == column)) return use.letter;
  }
  return 0;
}

/// Hands a condition over to Filter, which then sees to it alone.
void Take(sqlite3_index_info* info, int index, std::string& plan) {
  plan += LetterOf(info->aConstraint[index]);
  info->aConstraintUsage[index].argvIndex = static_cast<int>(plan.size());
  info->aConstraintUsage[index].omit = 1;
}

bool IsInOrder(const sqlite3_index_info* info) {
  if (info->nOrderBy != 1 || info->aOrderBy[0].desc != 0) return false;
  const int column = info->aOrderBy[0].iColumn;
  return column == kRowId || column == kRecord || column == kOffset;
}

/// Takes what it can of the conditions; the limits only where nothing is left to do behind it.
std::string TakeConditions(sqlite3_index_info* info) {
  std::string plan;
  bool isAll = info->nOrderBy == 0 || info->orderByConsumed != 0;
  for (int i = 0; i < info->nConstraint; ++i) {
    const auto& constraint = info->aConstraint[i];
    if (IsLimit(constraint.op)) continue;
    if (constraint.usable != 0 && LetterOf(constraint) != 0) {
      Take(info, i, plan);
    } else {
      isAll = false;
    }
  }
  for (int i = 0; isAll && i < info->nConstraint; ++i) {
    const auto& constraint = info->aConstraint[i];
    if (IsLimit(constraint.op) && constraint.usable != 0) Take(info, i, plan);
  }
  return plan;
}

bool NamesUnusable(const sqlite3_index_info* info, int column) {
  for (int i = 0; i < info->nConstraint; ++i) {
    const auto& constraint = info->aConstraint[i];
    if (constraint.iColumn == column && constraint.op == SQLITE_INDEX_CONSTRAINT_EQ &&
        constraint.usable == 0) {
      return true;
    }
  }
  return false;
}

constexpr sqlite3_int64 kMost = std::numeric_limits<sqlite3_int64>::max();

/// The least integer that isn't below a value as SQL orders it, with everything that is no number
/// above all numbers. @return nothing where there is none
std::optional<sqlite3_int64> Ceiling(sqlite3_value* value) {
  const int type = sqlite3_value_numeric_type(value);
  if (type == SQLITE_INTEGER) return sqlite3_value_int64(value);
  if (type != SQLITE_FLOAT) return {};
  const double real = std::ceil(sqlite3_value_double(value));
  if (real >= static_cast<double>(kMost)) return {};
  return real < 0 ? -1 : static_cast<sqlite3_int64>(real);
}

bool IsInteger(sqlite3_value* value, sqlite3_int64 integer) {
  return sqlite3_value_numeric_type(value) == SQLITE_INTEGER ||
         sqlite3_value_double(value) == static_cast<double>(integer);
}

/// The records that the conditions leave: from `first` to below `end`.
struct Window {
  sqlite3_int64 first = 0;
  sqlite3_int64 end = kMost;
  sqlite3_int64 offset = 0;  ///< Of OFFSET and LIMIT, within that.
  sqlite3_int64 limit = kMost;

  void Close() { end = 0; }
  void From(sqlite3_int64 record) { first = std::max(first, record); }
  void Below(sqlite3_int64 record) { end = std::min(end, record); }

  /// Takes a condition record OP value.
  void Narrow(char letter, sqlite3_value* value) {
    if (IsNull(value)) return Close();
    const std::optional<sqlite3_int64> ceiling = Ceiling(value);
    const bool isBelow = letter == '<' || letter == 'e';
    if (!ceiling) return isBelow ? void() : Close();
    const bool isHit = IsInteger(value, *ceiling);
    const sqlite3_int64 after = isHit && *ceiling < kMost ? *ceiling + 1 : *ceiling;
    if (letter == '=' && !isHit) return Close();
    if (letter == 'g' || letter == '=') From(*ceiling);
    if (letter == '>') From(after);
    if (letter == '<') Below(*ceiling);
    if (letter == 'e' || letter == '=') Below(after);
  }
};

class Records {
 public:
  static constexpr const char* kSchema =
      "CREATE TABLE x(record INTEGER, offset INTEGER, value TEXT, "
      "file TEXT HIDDEN, layout TEXT HIDDEN, form TEXT HIDDEN)";

  static int Plan(sqlite3_index_info* info);

  explicit Records(sqlite3* db) : db_(db) {}

  void Filter(const char* plan, int count, sqlite3_value** values);
  bool AtEnd() const { return atEnd_; }
  void Next();
  void Column(sqlite3_context* context, int column) const;
  sqlite3_int64 Id() const { return static_cast<sqlite3_int64>(file_->Record()); }

 private:
  void TakeArgument(char letter, sqlite3_value* value);
  void Open();

  sqlite3* db_;
  std::string arguments_[3];  ///< Of the columns from kFile on.
  bool hasNull_ = false;
  Window window_;
  std::optional<RecordFile> file_;
  bool atEnd_ = true;
};

int Records::Plan(sqlite3_index_info* info) {
  if (NamesUnusable(info, kFile) || NamesUnusable(info, kLayout) || NamesUnusable(info, kForm)) {
    return SQLITE_CONSTRAINT;  // in this order of joined tables
  }
  info->orderByConsumed = IsInOrder(info);
  const std::string plan = TakeConditions(info);
  const auto has = [&](char letter) { return plan.find(letter) != std::string::npos; };
  const bool isOne = has('=');
  const bool isPart = has('<') || has('e') || has('L');
  info->estimatedRows = isOne ? 1 : isPart ? 1000 : 1000000;
  info->estimatedCost = static_cast<double>(info->estimatedRows) * 10;
  // Of a condition with OR SQLite asks about each side alone; it must not take to that.
  if (!has('f') || !has('l')) info->estimatedCost = std::numeric_limits<double>::max();
  if (isOne) info->idxFlags = SQLITE_INDEX_SCAN_UNIQUE;
  info->idxStr = sqlite3_mprintf("%s", plan.c_str());
  info->needToFreeIdxStr = 1;
  return info->idxStr == nullptr ? SQLITE_NOMEM : SQLITE_OK;
}

void Records::TakeArgument(char letter, sqlite3_value* value) {
  const std::size_t column = letter == 'f' ? 0 : letter == 'l' ? 1 : 2;
  const bool isNamed = letter == 'f' || letter == 'l' || letter == 'm';
  if (isNamed && IsNull(value)) {
    hasNull_ = true;
  } else if (isNamed) {
    arguments_[column] = TextOf(value);
  } else if (letter == 'L') {
    const sqlite3_int64 limit = sqlite3_value_int64(value);
    window_.limit = limit < 0 ? kMost : limit;  // as SQL has it
  } else if (letter == 'O') {
    window_.offset = std::max<sqlite3_int64>(0, sqlite3_value_int64(value));
  } else {
    window_.Narrow(letter, value);
  }
}

void Records::Filter(const char* plan, int count, sqlite3_value** values) {
  window_ = {};
  hasNull_ = false;
  arguments_[kForm - kFile] = "native";
  file_.reset();
  atEnd_ = true;
  for (int i = 0; i < count; ++i) TakeArgument(plan[i], values[i]);
  if (hasNull_) return;
  const std::string_view named(plan);
  if (named.find('f') == named.npos || named.find('l') == named.npos) {
    throw Failure("ot_records: expected a file and a layout");
  }
  Open();
}

void Records::Open() {
  Layout layout = ParseLayout(arguments_[1], arguments_[2]);
  const int most = sqlite3_limit(db_, SQLITE_LIMIT_LENGTH, -1);
  file_.emplace(arguments_[0], std::move(layout), static_cast<std::size_t>(most));
  const sqlite3_int64 room = window_.end > window_.first ? window_.end - window_.first : 0;
  if (room <= window_.offset || window_.limit == 0) return;
  file_->Skip(static_cast<std::uint64_t>(window_.first + window_.offset));
  window_.limit = std::min(window_.limit, room - window_.offset);
  Next();
}

// The record behind the last one that is asked for isn't looked at.
void Records::Next() {
  atEnd_ = window_.limit == 0 || !file_->Next();
  --window_.limit;
}

void Records::Column(sqlite3_context* context, int column) const {
  const auto giveText = [&](const std::string& text) {
    sqlite3_result_text64(context, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
  };
  if (column == kRecord) {
    sqlite3_result_int64(context, Id());
  } else if (column == kOffset) {
    sqlite3_result_int64(context, static_cast<sqlite3_int64>(file_->Offset()));
  } else if (column == kValue) {
    giveText(file_->Json());
    sqlite3_result_subtype(context, 'J');  // to SQLite's functions it is JSON, not a text
  } else {
    giveText(arguments_[column - kFile]);
  }
}

}  // namespace

int RegisterRecords(sqlite3* db) {
  return Module<Records>::Register(db, "ot_records");
}

}  // namespace ot95::sqlite
