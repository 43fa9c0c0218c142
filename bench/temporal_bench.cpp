// Day numbers against std::chrono, and the text of dates against the C library.
#include <chrono>
#include <ctime>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "ot95/odmg.h"
#include "ot95/temporal.h"
#include "ot95/text.h"
#include "workload.h"

namespace bench {
namespace {

constexpr char kFormat[] = "%Y-%m-%d";
constexpr std::size_t kDays = 4096;
constexpr int kEpoch = 2440588;  // the day number of 1970-01-01
constexpr double kNoTarget = 0;

/// Days since 1970 from 1900 to 2099, in no order.
std::vector<int> Days() {
  std::mt19937 random(1);
  std::uniform_int_distribution<int> day(-25567, 47481);
  std::vector<int> days(kDays);
  for (int& one : days) one = day(random);
  return days;
}

std::chrono::year_month_day Civil(int day) {
  return std::chrono::sys_days(std::chrono::days(day));
}

int CountOf(const std::chrono::year_month_day& date) {
  return static_cast<int>(std::chrono::sys_days(date).time_since_epoch().count());
}

OtDate OurDate(int day) {
  return OtDate(day + kEpoch);
}

/// One list of inputs made from the days for each side, taken round and round.
template <class Make>
auto Round(Make make) {
  auto inputs = std::make_shared<std::vector<decltype(make(0))>>();
  for (int day : Days()) inputs->push_back(make(day));
  return [inputs, next = std::size_t{0}]() mutable -> const decltype(make(0))& {
    return (*inputs)[next++ % kDays];
  };
}

void DayNumbers() {
  auto day = Round([](int number) { return number; });
  Add(
      "day number to OtDate and back", 1.1,
      [day]() mutable {
        OtDate date = OurDate(day());
        benchmark::DoNotOptimize(date);
        benchmark::DoNotOptimize(date.dayabs());
      },
      [day]() mutable {
        std::chrono::year_month_day date = Civil(day());
        benchmark::DoNotOptimize(date);
        benchmark::DoNotOptimize(CountOf(date));
      });
  Add(
      "the day after, d_Date", kNoTarget,
      [date = Round([](int number) { return d_Date(OurDate(number)); })]() mutable {
        d_Date next = date();
        next++;
        benchmark::DoNotOptimize(next);
      },
      [date = Round(Civil)]() mutable {
        std::chrono::year_month_day next = Civil(CountOf(date()) + 1);
        benchmark::DoNotOptimize(next);
      });
}

std::tm Fields(int day) {
  const auto date = Civil(day);
  std::tm fields{};
  fields.tm_year = int(date.year()) - 1900;
  fields.tm_mon = static_cast<int>(unsigned(date.month())) - 1;
  fields.tm_mday = static_cast<int>(unsigned(date.day()));
  return fields;
}

OtString Printed(int day) {
  OtString text;
  OurDate(day).PrintToOtString(text, kFormat);
  return text;
}

void Text() {
  Add(
      "print a date", {2, 290},
      [date = Round(OurDate)]() mutable {
        OtString text;
        date().PrintToOtString(text, kFormat);
        benchmark::DoNotOptimize(text.StrGet());
      },
      [fields = Round(Fields)]() mutable {
        char buffer[32];
        const std::size_t length = std::strftime(buffer, sizeof buffer, kFormat, &fields());
        std::string text(buffer, length);
        benchmark::DoNotOptimize(text.data());
      });
  auto text = Round(Printed);
  Add(
      "scan a date", {1.6, 300},
      [text]() mutable {
        OtDate date(0, 0, 0);
        date.ScanFromOtString(text(), kFormat);
        benchmark::DoNotOptimize(date);
      },
      [text]() mutable {
        std::tm fields{};
        benchmark::DoNotOptimize(strptime(text().StrGet(), kFormat, &fields));
        benchmark::DoNotOptimize(fields);
      });
}

}  // namespace

void RegisterTemporal() {
  DayNumbers();
  Text();
}

}  // namespace bench
