// Arithmetic as the system does it: on 64-bit numbers, and on dates and times.
#include <type_traits>

#include "c/bridge.h"
#include "c/moments.h"
#include "ot95/int64.h"

namespace ot95::c {

namespace {

// ---------------------------------------------------------------------------------------------
// 64-bit numbers

/// Their sum, difference, product: what is left of it. @return whether that is all.
bool Combine(int operation, std::int64_t a, std::int64_t b, std::int64_t& result) {
  if (operation == OT95_ADD) return !__builtin_add_overflow(a, b, &result);
  if (operation == OT95_MULTIPLY) return !__builtin_mul_overflow(a, b, &result);
  return !__builtin_sub_overflow(a, b, &result);
}

int Divide(int operation, std::int64_t a, std::int64_t b, std::int64_t& result) {
  if (b == 0) return OT95_ERR_ARGUMENT;
  if (b != -1) {
    result = operation == OT95_DIVIDE ? a / b : a % b;
    return OT95_OK;
  }
  if (operation == OT95_REMAINDER) {
    result = 0;
    return OT95_OK;
  }
  return Combine(OT95_SUBTRACT, 0, a, result) ? OT95_OK : OT95_ERR_VALUE;
}

int Shift(int operation, std::int64_t a, std::int64_t b, std::int64_t& result) {
  if (b < 0) return OT95_ERR_ARGUMENT;
  const unsigned count = b > 63 ? 64 : static_cast<unsigned>(b);
  const OtInt64 shifted = operation == OT95_SHIFT_LEFT ? OtInt64(a) << count : OtInt64(a) >> count;
  result = static_cast<std::int64_t>(std::uint64_t{static_cast<std::uint32_t>(shifted.high)} << 32 |
                                     shifted.low);
  if (operation == OT95_SHIFT_RIGHT) return OT95_OK;
  const bool isWhole = a == 0 || (count < 64 && result >> count == a);
  return isWhole ? OT95_OK : OT95_ERR_VALUE;
}

int Calculate(int operation, std::int64_t a, std::int64_t b, std::int64_t& result) {
  switch (operation) {
    case OT95_ADD:
    case OT95_SUBTRACT:
    case OT95_MULTIPLY:
      return Combine(operation, a, b, result) ? OT95_OK : OT95_ERR_VALUE;
    case OT95_DIVIDE:
    case OT95_REMAINDER:
      return Divide(operation, a, b, result);
    case OT95_SHIFT_LEFT:
    case OT95_SHIFT_RIGHT:
      return Shift(operation, a, b, result);
    case OT95_NEGATE:
    case OT95_ABSOLUTE:
      if (operation == OT95_ABSOLUTE && a >= 0) {
        result = a;
        return OT95_OK;
      }
      return Combine(OT95_SUBTRACT, 0, a, result) ? OT95_OK : OT95_ERR_VALUE;
    default:
      return OT95_ERR_ARGUMENT;
  }
}

// ---------------------------------------------------------------------------------------------
// Dates and times

/// Calls `act` with a value of the class that a type's number stands for.
template <class Act>
int WithClass(int type, Act&& act) {
  switch (type) {
    case 12:
      return act(OtDate());
    case 13:
      return act(OtTime());
    case 19:
      return act(OtDateTime());
    case 22:
      return act(d_Date());
    case 23:
      return act(d_Time());
    case 24:
      return act(d_Timestamp());
    default:
      return OT95_ERR_NOT_SUPPORTED;
  }
}

template <class T>
T Sum(T value, std::int32_t amount) {
  if constexpr (std::is_same_v<T, OtDateTime>) {
    return value.AddSeconds(amount);
  } else if constexpr (std::is_same_v<T, d_Date>) {
    return value + d_Interval(amount);
  } else if constexpr (std::is_same_v<T, OtDate> || std::is_same_v<T, OtTime>) {
    return T(value + long{amount});
  } else {
    return value + d_Interval::Of(static_cast<float>(amount));
  }
}

int Add(int type, const ot95_moment& moment, std::int32_t amount, ot95_moment& result) {
  return WithClass(type, [&](auto value) -> int {
    if (!PutMoment(moment, value)) return OT95_ERR_VALUE;
    GetMoment(Sum(value, amount), result);
    return OT95_OK;
  });
}

int Difference(int type, const ot95_moment& first, const ot95_moment& second, double& result) {
  return WithClass(type, [&](auto a) -> int {
    using T = decltype(a);
    auto b = a;
    if (!PutMoment(first, a) || !PutMoment(second, b)) return OT95_ERR_VALUE;
    if constexpr (std::is_same_v<T, OtDate>) {
      result = static_cast<double>(a - b);
    } else if constexpr (std::is_same_v<T, OtTime>) {
      const OtTime between(a - b);
      result = between.hour * 3600.0 + between.minute * 60.0 + between.second;
    } else if constexpr (std::is_same_v<T, d_Time>) {
      result = double{(a - b).seconds};
    } else {
      return OT95_ERR_NOT_SUPPORTED;
    }
    return OT95_OK;
  });
}

int Overlap(int type, const ot95_moment* a, const ot95_moment* b, int& result) {
  return WithClass(type, [&](auto begin) -> int {
    using T = decltype(begin);
    auto end = begin, otherBegin = begin, otherEnd = begin;
    if constexpr (std::is_same_v<T, d_Date> || std::is_same_v<T, d_Time> ||
                  std::is_same_v<T, d_Timestamp>) {
      const bool fits = PutMoment(a[0], begin) && PutMoment(a[1], end) &&
                        PutMoment(b[0], otherBegin) && PutMoment(b[1], otherEnd);
      if (!fits) return OT95_ERR_VALUE;
      result = overlaps(begin, end, otherBegin, otherEnd) != 0;
      return OT95_OK;
    } else {
      return OT95_ERR_NOT_SUPPORTED;
    }
  });
}

int Ask(const OtDate& date, int question, std::int32_t& answer) {
  switch (question) {
    case OT95_DAY_NUMBER:
      answer = static_cast<std::int32_t>(date.dayabs());
      return OT95_OK;
    case OT95_WEEKDAY:
      answer = (static_cast<int>(date.DayOfTheDate()) + 1) % 7;
      return OT95_OK;
    case OT95_IS_DATE:
      answer = date.IsDate();
      return OT95_OK;
    default:
      return OT95_ERR_NOT_SUPPORTED;
  }
}

int Ask(const d_Date& date, int question, std::int32_t& answer) {
  switch (question) {
    case OT95_WEEKDAY:
      answer = static_cast<int>(date.day_of_week());
      return OT95_OK;
    case OT95_DAY_OF_YEAR:
      answer = date.day_of_year();
      return OT95_OK;
    case OT95_DAYS_IN_MONTH:
      answer = date.days_in_month();
      return OT95_OK;
    default:
      return OT95_ERR_NOT_SUPPORTED;
  }
}

int AskMoment(int type, int question, const ot95_moment& moment, std::int32_t& answer) {
  if (question < OT95_DAY_NUMBER || question > OT95_IS_DATE) return OT95_ERR_ARGUMENT;
  return WithClass(type, [&](auto date) -> int {
    if constexpr (std::is_same_v<decltype(date), OtDate> ||
                  std::is_same_v<decltype(date), d_Date>) {
      return PutMoment(moment, date) ? Ask(date, question, answer) : OT95_ERR_VALUE;
    } else {
      return OT95_ERR_NOT_SUPPORTED;
    }
  });
}

}  // namespace

}  // namespace ot95::c

using namespace ot95::c;

int ot95_int64(int operation, int64_t a, int64_t b, int64_t* result) {
  return result != nullptr ? Calculate(operation, a, b, *result) : OT95_ERR_ARGUMENT;
}

int ot95_int64_from_real(double real, int64_t* result) {
  if (result == nullptr) return OT95_ERR_ARGUMENT;
  const OtInt64 number(real);
  *result = static_cast<int64_t>(uint64_t{static_cast<uint32_t>(number.high)} << 32 | number.low);
  return OT95_OK;
}

int ot95_moment_add(int type, const ot95_moment* moment, int32_t amount, ot95_moment* result) {
  return GuardedResult(result, [&](ot95_moment& made) {
    return moment != nullptr ? Add(type, *moment, amount, made) : OT95_ERR_ARGUMENT;
  });
}

int ot95_moment_difference(int type, const ot95_moment* a, const ot95_moment* b,
                           double* difference) {
  return GuardedResult(difference, [&](double& made) -> int {
    if (a == nullptr || b == nullptr) return OT95_ERR_ARGUMENT;
    return Difference(type, *a, *b, made);
  });
}

int ot95_moment_overlaps(int type, const ot95_moment a[2], const ot95_moment b[2], int* overlaps) {
  return GuardedResult(overlaps, [&](int& made) -> int {
    return a != nullptr && b != nullptr ? Overlap(type, a, b, made) : OT95_ERR_ARGUMENT;
  });
}

int ot95_moment_ask(int type, int question, const ot95_moment* moment, int32_t* answer) {
  return GuardedResult(answer, [&](int32_t& made) -> int {
    return moment != nullptr ? AskMoment(type, question, *moment, made) : OT95_ERR_ARGUMENT;
  });
}

int ot95_moment_of_day(int32_t day, ot95_moment* result) {
  return GuardedResult(result, [&](ot95_moment& made) -> int {
    GetMoment(OtDate(long{day}), made);
    return OT95_OK;
  });
}
