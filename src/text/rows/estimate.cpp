// Estimates for texts. Four of them are measured: the ends of the stretch that the operand stands
// for, and the ends of the index. What they begin with in common is passed over, so that the few
// characters which make a number tell as much as they can.

#include "text/rows/estimate.h"
#include "kit/walks.h"
#include "ot95/fault.h"
#include "text/collation/compare.h"
#include "text/collation/position.h"
#include "text/rows/limits.h"

namespace ot95 {
namespace {

constexpr double rawStep = 128;
constexpr double orderStep = 0x100000;

// A walk along a text by the units that make its number: bytes of raw text, else orders.
class UnitWalk {
 public:
  explicit UnitWalk(const TextSpan& span) : span_(span), walk_(span), place_(span.text) {}

  // The next unit, letters without the bits of `mask`; 0 at the end.
  unsigned Next(unsigned short mask) {
    if (span_.codeSet == 0) {
      const unsigned short byte = span_.UnitAt(place_);
      if (byte != 0) ++place_;
      return byte;
    }
    const unsigned short order = OrderOfKey(walk_.NextKey(true));
    return IsLetterWord(order) ? order & ~unsigned{mask} : order;
  }
  unsigned char Script() const { return walk_.script(); }

  double Position(unsigned maxChars) const {
    if (span_.codeSet != 0) return OrderPosition(walk_, maxChars);
    TextSpan rest = span_;
    rest.text = place_;
    return RawPosition(rest, maxChars);
  }

 private:
  TextSpan span_;
  OrderWalk walk_;
  const char* place_;
};

// The four texts, each once.
struct FourTexts {
  LineText low, high, rangeLow, rangeHigh;

  unsigned CommonLimit() const {
    return std::min({low.chars, high.chars, rangeLow.chars, rangeHigh.chars});
  }
};

// Walks along all four of them.
struct FourWalks {
  UnitWalk low, high, rangeLow, rangeHigh;

  explicit FourWalks(const FourTexts& texts)
      : low(texts.low.span),
        high(texts.high.span),
        rangeLow(texts.rangeLow.span),
        rangeHigh(texts.rangeHigh.span) {}

  // One unit of each. @return whether all are the same, the unit going to `unit`.
  bool Step(unsigned short mask, unsigned& unit) {
    unit = low.Next(mask);
    // All are stepped: what was reached is where the next step starts.
    const unsigned others[] = {high.Next(mask), rangeLow.Next(mask), rangeHigh.Next(mask)};
    return unit == others[0] && unit == others[1] && unit == others[2];
  }
  bool SameScript() const {
    return low.Script() == high.Script() && low.Script() == rangeLow.Script() &&
           low.Script() == rangeHigh.Script();
  }
};

// Moves the walks behind what the texts begin with in common.
// @return characters passed, out of those that a limit leaves.
unsigned PassCommon(FourWalks& walks, unsigned limit, unsigned short mask) {
  unsigned passed = 0;
  for (bool first = true;; first = false) {
    FourWalks next = walks;
    unsigned unit = 0;
    const bool same = next.Step(mask, unit);
    if (!same || (first && !next.SameScript())) return passed;
    walks = next;
    if (limit != noLimit) ++passed;
    if (unit == 0 || (limit != noLimit && passed == limit)) return passed;
  }
}

// Where the four texts lie on the line.
struct Positions {
  double low = 0, high = 0, lower = 0, upper = 0;
};

Positions Measure(const FourTexts& texts, unsigned short mask) {
  const unsigned limit = texts.CommonLimit();
  if (limit == 0) return {};
  FourWalks walks(texts);
  const unsigned passed = PassCommon(walks, limit, mask);
  const auto rest = [=](unsigned chars) {
    return limit == noLimit || chars == noLimit ? noLimit : chars - passed;
  };
  const auto shorter = [=](const LineText& text, const LineText& range) {
    const unsigned chars = std::min(text.chars, range.chars);
    return chars > passed ? chars - passed : 0;
  };
  return {walks.low.Position(shorter(texts.low, texts.rangeLow)),
          walks.high.Position(shorter(texts.high, texts.rangeHigh)),
          walks.rangeLow.Position(rest(texts.rangeLow.chars)),
          walks.rangeHigh.Position(rest(texts.rangeHigh.chars))};
}

long CompareUpTo(const LineText& a, const LineText& b, unsigned short cmpOp, unsigned chars) {
  return CompareSpans(a.span, b.span, cmpOp, static_cast<std::int16_t>(chars));
}

bool BeginsAboveAscii(const LineText& text) {
  return text.span.codeSet == 0 && text.span.UnitAt(text.span.text) > 0x7f;
}

// What the line couldn't tell apart is asked of the texts themselves.
double Rescue(unsigned short op, unsigned short cmpOp, const FourTexts& texts, const Positions& at,
              double step) {
  const auto& [low, high, rangeLow, rangeHigh] = texts;
  double sum = 0;
  if ((op & OT_OP_LESS && at.lower == at.high) || (op & OT_OP_GREATER && at.upper == at.low)) {
    if (op & OT_OP_LESS && CompareUpTo(high, rangeLow, cmpOp, low.chars) >= 0) sum += step;
    const unsigned chars =
        rangeHigh.chars != noLimit ? std::min(rangeHigh.chars, high.chars) : high.chars;
    if (op & OT_OP_GREATER && CompareUpTo(low, rangeHigh, cmpOp, chars) <= 0) sum += step;
  }
  if (sum != 0 || !(op & OT_OP_EQUAL)) return sum;
  if (at.high > at.upper && rangeHigh.chars < high.chars &&
      CompareUpTo(high, rangeHigh, cmpOp, rangeHigh.chars) == 0) {
    return step;
  }
  return BeginsAboveAscii(high) && BeginsAboveAscii(rangeHigh) ? step : 0;
}

// Takes the limits that are there, and makes those that aren't.
void TakeLimits(const TextOperand& operand, unsigned short op, const TextLayout& layout,
                OtIdxBounds& limits, FourTexts& texts) {
  if (limits.lowerKey) {
    texts.low = TextOfKey(limits.lowerKey, limits.lowerKeyLength, layout);
  } else if (!(op & OT_OP_LESS)) {
    operand.MakeLower(limits);
  }
  if (limits.upperKey) {
    texts.high = TextOfKey(limits.upperKey, limits.upperKeyLength, layout);
  } else if (!(op & OT_OP_GREATER)) {
    operand.MakeUpper(limits, texts.high);
  }
}

}  // namespace

float StringEvalAndBound(OtIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                         unsigned long, OtIdxBounds* limits, unsigned short legacy) {
  constexpr unsigned short optionMask = 0x7ff0;
  const auto options = static_cast<unsigned short>(op & optionMask);
  const TextLayout layout{legacy != 0, FormOf(format)};
  const TextOperand operand(value, format, layout, options);
  op &= operatorMask;
  if (operand.IsPattern()) op |= OT_OP_WILDCARD;
  if (!limits) return 0.0F;

  FourTexts texts{operand.Text(), operand.Text(), {}, {}};
  if (HasRange(bounds)) {
    texts.rangeLow = TextOfKey(bounds->lowerKey, bounds->lowerKeyLength, layout);
    texts.rangeHigh = TextOfKey(bounds->upperKey, bounds->upperKeyLength, layout);
  }
  if (!operand.HasNoPrefix()) TakeLimits(operand, op, layout, *limits, texts);

  const double step = operand.IsRaw() ? rawStep : orderStep;
  const Positions at = Measure(texts, operand.IgnoredBits());
  const double all = at.upper - at.lower + step;
  double range = EstimateRange(op, at.low, at.high, at.lower, at.upper, step);
  if (range == 0.0) {
    range = Rescue(op, static_cast<unsigned short>(op | options), texts, at, step);
  }
  if (operand.HasNoPrefix() && range < all) {
    OTDB_assert("charWildPos != 0 || valueRange >= valueTotalArea", "ottypevl", __LINE__);
  }
  return static_cast<float>(range / all);
}

}  // namespace ot95
