// OtInt64 over arrays against native 64-bit integers, and its text against the standard library.
#include <charconv>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

#include "ot95/int64.h"
#include "ot95/text.h"
#include "workload.h"

namespace bench {
namespace {

constexpr std::size_t kCount = 4096;

std::vector<std::int64_t> Numbers(unsigned seed) {
  std::mt19937_64 random(seed);
  std::vector<std::int64_t> numbers(kCount);
  for (auto& number : numbers) number = static_cast<std::int64_t>(random() >> (random() % 60)) | 1;
  return numbers;
}

std::vector<OtInt64> Ours(const std::vector<std::int64_t>& numbers) {
  std::vector<OtInt64> ours;
  for (std::int64_t number : numbers) ours.push_back(OtInt64(static_cast<long>(number)));
  return ours;
}

template <class Operation>
void Arithmetic(const char* name, Operation operation) {
  const auto a = std::make_shared<std::vector<std::int64_t>>(Numbers(1));
  const auto b = std::make_shared<std::vector<std::int64_t>>(Numbers(2));
  const auto ourA = std::make_shared<std::vector<OtInt64>>(Ours(*a));
  const auto ourB = std::make_shared<std::vector<OtInt64>>(Ours(*b));
  const auto all = [operation](auto& left, const auto& right) {
    for (std::size_t i = 0; i < kCount; ++i) left[i] = operation(left[i], right[i]);
    benchmark::ClobberMemory();
  };
  Add(
      std::string("OtInt64 ") + name, 1, [=] { all(*ourA, *ourB); }, [=] { all(*a, *b); });
}

/// Wraps as the class does, without the undefined overflow of signed integers.
struct Wrapping {
  template <class T, class F>
  static T Apply(const T& a, const T& b, F f) {
    if constexpr (std::is_integral_v<T>) {
      return static_cast<T>(f(static_cast<std::uint64_t>(a), static_cast<std::uint64_t>(b)));
    } else {
      return f(a, b);
    }
  }
};

void Text() {
  const auto numbers = std::make_shared<std::vector<std::int64_t>>(Numbers(3));
  const auto ours = std::make_shared<std::vector<OtInt64>>(Ours(*numbers));
  Add(
      "OtInt64 print", 0.8,
      [ours, cycle = std::size_t{0}]() mutable {
        OtString text;
        (*ours)[cycle++ % kCount].PrintToOtString(text, nullptr);
        benchmark::DoNotOptimize(text.StrGet());
      },
      [numbers, cycle = std::size_t{0}]() mutable {
        char digits[24];
        const auto end =
            std::to_chars(digits, digits + sizeof digits, (*numbers)[cycle++ % kCount]);
        *end.ptr = 0;
        OtString text(digits);  // the same result: a string of its own
        benchmark::DoNotOptimize(text.StrGet());
      });
  const auto texts = std::make_shared<std::vector<OtString>>();
  for (std::int64_t number : *numbers) texts->push_back(OtString(static_cast<long>(number)));
  Add(
      "OtInt64 scan", 0.8,
      [texts, cycle = std::size_t{0}]() mutable {
        OtInt64 value(0);
        value.ScanFromOtString((*texts)[cycle++ % kCount], nullptr);
        benchmark::DoNotOptimize(value);
      },
      [texts, cycle = std::size_t{0}]() mutable {
        std::int64_t value = 0;
        const char* text = (*texts)[cycle++ % kCount].StrGet();
        std::from_chars(text, text + std::strlen(text), value);
        benchmark::DoNotOptimize(value);
      });
}

}  // namespace

void RegisterInt64() {
  Arithmetic("add", [](auto a, auto b) {
    return Wrapping::Apply(a, b, [](auto x, auto y) { return x + y; });
  });
  Arithmetic("multiply", [](auto a, auto b) {
    return Wrapping::Apply(a, b, [](auto x, auto y) { return x * y; });
  });
  Arithmetic("divide", [](auto a, auto b) { return a / b; });
  Text();
}

}  // namespace bench
