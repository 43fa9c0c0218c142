// The comparers of the scalar rows. They walk arrays of either form where the bytes stand, and
// look for the first difference at the speed of memory.
#include "kit/floatscan.h"
#include "kit/walks.h"
#include "ot95/typemgr.h"

namespace ot95 {

namespace {

template <class T>
constexpr bool kIsFloat = std::is_floating_point_v<T>;

// A not-a-number on either side, or on both, makes the answer -1: an index relies on it.
template <class T>
long CompareScalar(T left, T right) {
  if constexpr (kIsFloat<T>) {
    if (!(left >= right)) return -1;
    return left > right ? 1 : 0;
  } else {
    return ThreeWay(left, right);
  }
}

template <class T>
long CompareScalar(const unsigned char* left, const unsigned char* right, unsigned char form) {
  return CompareScalar(LoadAs<T>(left, form), LoadAs<T>(right, form));
}

// Index of the first pair of complete elements that don't compare equal, or `count`.
template <class T>
std::uint64_t FirstUnequal(const unsigned char* left, const unsigned char* right,
                           std::uint64_t count, unsigned char form) {
  if constexpr (kIsFloat<T>) {
    return FirstUnequalFloat<T>(left, right, static_cast<std::size_t>(count), form);
  } else {
    // Equal bytes are equal values, whichever order the bytes have.
    return FirstDifference(left, right, static_cast<std::size_t>(count * sizeof(T))) / sizeof(T);
  }
}

template <class T>
long CompareArrays(unsigned char form, const Side& side1, const Side& side2, unsigned long count,
                   int& status) {
  constexpr std::size_t width = sizeof(T);
  const Walk walk(count, std::min(side1.Elements(width), side2.Elements(width)));
  const std::uint64_t complete = std::min(walk.elements, std::min(side1.end, side2.end) / width);
  std::uint64_t index = FirstUnequal<T>(side1.bytes, side2.bytes, complete, form);
  if (index == walk.elements) {
    status = walk.StatusAt(index - 1);
    return 0;
  }
  unsigned char buffer1[width];
  unsigned char buffer2[width];
  status = walk.StatusAt(index);
  return CompareScalar<T>(side1.Element(index * width, width, buffer1),
                          side2.Element(index * width, width, buffer2), form);
}

template <class T>
long CompareScalars(unsigned char format, unsigned long length1, const void* value1,
                    unsigned long length2, const void* value2, unsigned long count, int& status) {
  status = 0;
  if (count == 0) return 0;
  const unsigned char form = FormOf(format);
  const Side side1(value1, length1, count, sizeof(T));
  const Side side2(value2, length2, count, sizeof(T));
  if (count == 1 && side1.end >= sizeof(T) && side2.end >= sizeof(T)) {
    return CompareScalar<T>(side1.bytes, side2.bytes, form);
  }
  return CompareArrays<T>(form, side1, side2, count, status);
}

}  // namespace

}  // namespace ot95

#define OT95_SCALAR_COMPARER(Name, T)                                                         \
  long Name(unsigned char format, unsigned long length1, void* value1, unsigned long length2, \
            void* value2, unsigned short, unsigned long count, int& status) {                 \
    return ot95::CompareScalars<T>(format, length1, value1, length2, value2, count, status);  \
  }

OT95_SCALAR_COMPARER(CharCompare, signed char)
OT95_SCALAR_COMPARER(ByteCompare, unsigned char)
OT95_SCALAR_COMPARER(ShortCompare, std::int16_t)
OT95_SCALAR_COMPARER(WordCompare, std::uint16_t)
OT95_SCALAR_COMPARER(IntCompare, std::int32_t)
OT95_SCALAR_COMPARER(UnsignedCompare, std::uint32_t)
OT95_SCALAR_COMPARER(LongCompare, std::int32_t)
OT95_SCALAR_COMPARER(DwordCompare, std::uint32_t)
OT95_SCALAR_COMPARER(FloatCompare, float)
OT95_SCALAR_COMPARER(DoubleCompare, double)

#undef OT95_SCALAR_COMPARER
