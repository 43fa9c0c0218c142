#include <cstring>

#include "ot95/odmg.h"

namespace {

// How two points lie to each other. A set of such tests decides over an overlap.
struct ByDifference {
  template <class T>
  static bool Before(const T& x, const T& y) {  // or at the same point
    return (x != y) <= 0;
  }
  template <class T>
  static bool After(const T& x, const T& y) {  // or at the same point
    return (x != y) >= 0;
  }
  template <class T>
  static bool Descending(const T& x, const T& y) {
    return (x != y) > 0;
  }
};

bool SameDate(const d_Date& x, const d_Date& y) {
  return x.year == y.year && x.month == y.month && x.day == y.day;
}

bool SameBytes(const d_Timestamp& x, const d_Timestamp& y) {
  return std::memcmp(&x, &y, sizeof x) == 0;
}

bool Earlier(const d_Timestamp& x, const d_Timestamp& y) {
  return (x.date != y.date) < 0 || (SameDate(x.date, y.date) && (x.time != y.time) < 0);
}

// Timestamps are at the same point only when all their bytes agree: within one second, or on two
// dates of one day count, neither is before the other.
struct ByStamp {
  static bool Before(const d_Timestamp& x, const d_Timestamp& y) {
    return Earlier(x, y) || SameBytes(x, y);
  }
  static bool After(const d_Timestamp& x, const d_Timestamp& y) {
    const int days = x.date != y.date;
    const bool atOrBefore = days < 1 && (!SameDate(x.date, y.date) || (x.time != y.time) < 1);
    return !atOrBefore || SameBytes(x, y);
  }
  static bool Descending(const d_Timestamp& x, const d_Timestamp& y) { return !Before(x, y); }
};

template <class Tests, class T>
int Overlap(const T& low, const T& high, const T& b1, const T& b2) {
  const auto inside = [&](const T& b) { return Tests::After(b, low) && Tests::Before(b, high); };
  const auto around = [&](const T& first, const T& last) {
    return Tests::Before(first, low) && Tests::After(last, high);
  };
  return inside(b1) || inside(b2) || around(b1, b2) || around(b2, b1);
}

template <class Tests, class T>
int OrderedOverlap(const T& a1, const T& a2, const T& b1, const T& b2) {
  return Tests::Descending(a1, a2) ? Overlap<Tests>(a2, a1, b1, b2)
                                   : Overlap<Tests>(a1, a2, b1, b2);
}

// Timestamps are put in order as a whole; then one part of them is compared with the other pair.
template <class T>
int PartOverlap(const d_Timestamp& a1, const d_Timestamp& a2, T d_Timestamp::*part, const T& b1,
                const T& b2) {
  return ByStamp::Descending(a1, a2) ? Overlap<ByDifference>(a2.*part, a1.*part, b1, b2)
                                     : Overlap<ByDifference>(a1.*part, a2.*part, b1, b2);
}

}  // namespace

int overlaps(const d_Date& a1, const d_Date& a2, const d_Date& b1, const d_Date& b2) {
  return OrderedOverlap<ByDifference>(a1, a2, b1, b2);
}

int overlaps(const d_Time& a1, const d_Time& a2, const d_Time& b1, const d_Time& b2) {
  return OrderedOverlap<ByDifference>(a1, a2, b1, b2);
}

int overlaps(const d_Timestamp& a1, const d_Timestamp& a2, const d_Timestamp& b1,
             const d_Timestamp& b2) {
  return OrderedOverlap<ByStamp>(a1, a2, b1, b2);
}

int overlaps(const d_Timestamp& a1, const d_Timestamp& a2, const d_Date& b1, const d_Date& b2) {
  return PartOverlap(a1, a2, &d_Timestamp::date, b1, b2);
}

int overlaps(const d_Date& a1, const d_Date& a2, const d_Timestamp& b1, const d_Timestamp& b2) {
  return OrderedOverlap<ByDifference>(a1, a2, b1.date, b2.date);
}

int overlaps(const d_Timestamp& a1, const d_Timestamp& a2, const d_Time& b1, const d_Time& b2) {
  return PartOverlap(a1, a2, &d_Timestamp::time, b1, b2);
}

int overlaps(const d_Time& a1, const d_Time& a2, const d_Timestamp& b1, const d_Timestamp& b2) {
  return OrderedOverlap<ByDifference>(a1, a2, b1.time, b2.time);
}
