// How much of an index a term lets through.
#include "share.h"

#include <algorithm>

#include "keys.h"
#include "scanlimits.h"

namespace otdb {
namespace {

constexpr unsigned short kEverything = OT_OP_EQUAL | OT_OP_LESS | OT_OP_GREATER;

/// Where a key stands between the ends of a stretch, from 0 to 1: eight bytes behind what the ends
/// begin with in common, as a number.
double PlaceOf(const Bytes& key, const Stretch& stretch) {
  const std::size_t length = std::min(stretch.lower.size(), stretch.upper.size());
  std::size_t common = 0;
  while (common < length && stretch.lower[common] == stretch.upper[common]) ++common;
  const auto number = [common](const Bytes& bytes) {
    double value = 0;
    for (std::size_t at = common; at < common + 8; ++at) {
      value = value * 256 + (at < bytes.size() ? bytes[at] : 0);
    }
    return value;
  };
  const double low = number(stretch.lower), high = number(stretch.upper);
  return high > low ? std::clamp((number(key) - low) / (high - low), 0.0, 1.0) : 0;
}

/// All, nothing, or what interpolation tells.
double ShareOf(const Stretch& stretch, const SortLimits& limits) {
  const KeyKind bytes(OT_FORMAT_NATIVE, true);
  const auto isBelow = [&](const Bytes& key, const std::optional<Bytes>& end) {
    return end && CompareKeys(0, key, *end, bytes) < 0;
  };
  if (isBelow(stretch.upper, limits.lower)) return 0;
  if (limits.upper && !isBelow(stretch.lower, limits.upper)) return 0;
  const double from = isBelow(stretch.lower, limits.lower) ? PlaceOf(*limits.lower, stretch) : 0;
  const bool endsWithin = limits.upper && !isBelow(stretch.upper, limits.upper);
  const double to = endsWithin ? PlaceOf(*limits.upper, stretch) : 1;
  return std::max(to - from, 0.0);
}

}  // namespace

SortLimits SortLimitsOf(const Member& member, const Term& term, unsigned short relation,
                        unsigned char form) {
  Bytes lower(OtINDEX_MAX_KEYLEN), upper(OtINDEX_MAX_KEYLEN);
  OtSortRange ends;
  ends.lower = lower.data();
  ends.upper = upper.data();
  ends.lowerRoom = ends.upperRoom = OtINDEX_MAX_KEYLEN;
  Types().SortRange(member.type, ends, static_cast<unsigned short>(relation | term.options),
                    term.operand.data(), static_cast<unsigned long>(term.operand.size()),
                    OT_CMP_NO_WILDCARDS, 1, form);
  lower.resize(ends.lowerLength);
  upper.resize(ends.upperLength);
  SortLimits limits;
  if (!lower.empty()) limits.lower = std::move(lower);
  if (!upper.empty()) limits.upper = std::move(upper);
  return limits;
}

double ByteShare(const Statistics& stretches, const SortLimits& limits) {
  double entries = 0, within = 0;
  for (const Stretch& stretch : stretches) {
    const auto count = static_cast<double>(stretch.entries);
    entries += count;
    within += count * ShareOf(stretch, limits);
  }
  return entries == 0 ? 0 : within / entries;
}

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
