#ifndef OTDB_QUERY_H
#define OTDB_QUERY_H

#include <optional>
#include <string>
#include <vector>

#include "bytes.h"
#include "record.h"
#include "schema.h"

namespace otdb {

/// A member, a relation and an operand: "name = 'San*'".
struct Term {
  std::size_t member;
  unsigned short relation;  ///< Bits OT_OP_EQUAL, OT_OP_LESS and OT_OP_GREATER.
  unsigned short options;   ///< Bits of the OT_CMP_NO_WILDCARDS family.
  Bytes operand;            ///< In stored form.
  std::string text;         ///< As it was written.
};

/// A condition: a term, or others joined. Negations have been moved into the relations of terms.
struct Condition {
  enum Kind { kTerm, kAnd, kOr };
  Kind kind = kAnd;  ///< Without children: always true.
  std::vector<Condition> children;
  std::optional<Term> term;

  bool Holds(const Class& type, const Record& record, unsigned char form) const;
};

/// "from City where name = 'San*' and population > 100000 order by name limit 10"
struct Query {
  struct Order {
    std::size_t member;
    bool descending;
  };
  const Class* type = nullptr;
  Condition where;
  std::vector<Order> orders;
  std::optional<std::size_t> limit;
  bool count = false;  ///< Only the number of objects is asked for.
};

/// Reads a query. Throws BadInput that says where it isn't one, and what was expected.
///   from CLASS [where CONDITION] [order by MEMBER [desc] {, MEMBER [desc]}] [limit N] [count]
///   CONDITION: TERM | not CONDITION | CONDITION and CONDITION | CONDITION or CONDITION |
///   (CONDITION) TERM: MEMBER (= | <> | < | <= | > | >=) LITERAL [ignoring WHAT {, WHAT}]
///   [literally]
/// A LITERAL is a word or a text in single quotes, in which two quotes stand for one; null is the
/// null value. WHAT is case, accent, space or symbols. In texts `*` and `?` are wildcards unless
/// the term ends in "literally"; in dates a part may be `*`.
Query ParseQuery(const Schema& schema, const std::string& text);

/// An operand for a member, in stored form. Throws BadInput.
Bytes OperandFor(const Member& member, const std::string& literal, unsigned char form);

/// Three-way comparison of a stored value with an operand.
long CompareStored(const Member& member, View value, View operand, unsigned short options,
                   unsigned char form);
/// Whether a sign satisfies a relation.
constexpr bool Satisfies(long sign, unsigned short relation) {
  return (relation & (sign == 0 ? OT_OP_EQUAL : sign < 0 ? OT_OP_LESS : OT_OP_GREATER)) != 0;
}

}  // namespace otdb

#endif
