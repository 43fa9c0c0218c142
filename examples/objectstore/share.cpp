// How much of an index a term lets through.
#include "share.h"

#include <algorithm>

#include "keys.h"
#include "scanlimits.h"

namespace otdb {
namespace {

constexpr unsigned short kEverything = OT_OP_EQUAL | OT_OP_LESS | OT_OP_GREATER;

}  // namespace

ShareMeter::ShareMeter(const Member& member, const Term& term, bool isOpen,
                       const std::optional<Bytes>& lower, const std::optional<Bytes>& upper,
                       unsigned char form)
    : member_(member), term_(term), lower_(lower), upper_(upper), form_(form) {
  const bool ignores = (term.options & ~unsigned{OT_CMP_NO_WILDCARDS}) != 0;
  if ((term.options & (OT_CMP_IGNORE_SPACE | OT_CMP_IGNORE_SYMBOLS)) != 0) {
    lower_.reset();  // a character that doesn't count can put a key anywhere
    upper_.reset();
  }
  if (isOpen || (ignores && member.IsText())) return;
  Bytes key = KeyOf(member, term.operand, form);
  if (IsWhole(member.type, key, form)) key_ = std::move(key);
}

double ShareMeter::Of(const Statistics& stretches) const {
  double entries = 0, qualifying = 0;
  for (const Stretch& stretch : stretches) {
    const auto count = static_cast<double>(stretch.entries);
    entries += count;
    qualifying += count * Of(stretch);
  }
  return entries == 0 ? 0 : qualifying / entries;
}

double ShareMeter::Of(const Stretch& stretch) const {
  if (IsBeside(stretch)) return 0;
  if (const auto all = AllOrNothing(stretch)) return *all ? 1 : 0;
  double share =
      Ask(stretch, static_cast<unsigned short>(term_.relation | term_.options), term_.operand);
  // One row answers with a number of values. All of them are then more than one.
  if (Types().IsFixed(member_.type))
    share /= std::max(1.0, Ask(stretch, kEverything, stretch.lower));
  return std::clamp(share, 0.0, 1.0);
}

bool ShareMeter::IsBeside(const Stretch& stretch) const {
  return (lower_ && CompareKeys(member_.type, stretch.upper, *lower_, form_) < 0) ||
         (upper_ && CompareKeys(member_.type, stretch.lower, *upper_, form_) > 0);
}

/// Entries of one key that tells all of their value qualify together.
std::optional<bool> ShareMeter::AllOrNothing(const Stretch& stretch) const {
  const char type = member_.type;
  if (!key_ || CompareKeys(type, stretch.lower, stretch.upper, form_) != 0 ||
      !IsWhole(type, stretch.lower, form_)) {
    return {};
  }
  return Satisfies(CompareKeys(type, stretch.lower, *key_, form_), term_.relation);
}

double ShareMeter::Ask(const Stretch& stretch, unsigned short op, View operand) const {
  Limits ends, limits;
  ends.Set(stretch.lower, stretch.upper);
  return static_cast<double>(
      Types().EvalAndBound(member_.type, &ends, op, Place(operand), form_, 1, &limits, nullptr));
}

}  // namespace otdb
