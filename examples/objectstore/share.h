#ifndef OTDB_SHARE_H
#define OTDB_SHARE_H

#include <optional>

#include "query.h"
#include "statistics.h"

namespace otdb {

/// The ends of a range of sort keys, of which the upper one isn't in it; open where there is none.
struct SortLimits {
  std::optional<Bytes> lower, upper;
};
/// The range that holds the sort keys of all that stands in a relation to a term's operand.
SortLimits SortLimitsOf(const Member& member, const Term& term, unsigned short relation,
                        unsigned char form);
/// The share of the entries of all stretches that lies in a range. Within a stretch the keys are
/// taken for numbers that are spread evenly.
double ByteShare(const Statistics& stretches, const SortLimits& limits);

/// Estimates how much of an index a term lets through, from stretches of it.
class ShareMeter {
 public:
  /// @param isOpen whether the operand stands for a range.
  /// @param lower, upper the keys between which all lies that qualifies, where there are such.
  ShareMeter(const Member& member, const Term& term, bool isOpen, const std::optional<Bytes>& lower,
             const std::optional<Bytes>& upper, unsigned char form);

  /// The estimated share, from 0 to 1, of the entries of all stretches.
  double Of(const Statistics& stretches) const;

 private:
  double Of(const Stretch& stretch) const;
  bool IsBeside(const Stretch& stretch) const;
  std::optional<bool> AllOrNothing(const Stretch& stretch) const;
  double Ask(const Stretch& stretch, unsigned short op, View operand) const;

  const Member& member_;
  const Term& term_;
  std::optional<Bytes> lower_, upper_;
  unsigned char form_;
  std::optional<Bytes> key_;  ///< Of the operand, where keys tell all that the term asks for.
};

}  // namespace otdb

#endif
