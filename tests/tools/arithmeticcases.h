#ifndef OT95_TESTS_TOOLS_ARITHMETICCASES_H
#define OT95_TESTS_TOOLS_ARITHMETICCASES_H

// Cases of 64-bit numbers, dates and times.

#include <cstdio>

#include "tools/textcases.h"

class ArithmeticCases : public TextCases {
 protected:
  using TextCases::TextCases;

  Case Int64() {
    static constexpr const char* kOperators[] = {"+", "-", "*", "/", "%", "<<", ">>", "neg", "abs"};
    const int operation = static_cast<int>(Below(std::size(kOperators) + 1));
    const int64_t a = AnyNumber();
    int64_t b = AnyNumber(), result = 0;
    Case made{{"int64", "--"}, Json()};
    auto& words = made.arguments;
    int status = OT95_OK;
    if (operation == std::size(kOperators)) {
      const double real = static_cast<double>(a) / (1 + Below(1000));
      char text[40];
      std::snprintf(text, sizeof text, "%.17g", real);
      words.insert(words.end(), {"from-double", text});
      status = ot95_int64_from_real(real, &result);
    } else {
      if (operation == OT95_SHIFT_LEFT || operation == OT95_SHIFT_RIGHT) b = Below(70);
      if (Below(20) == 0) b = Below(3) - 1;
      const bool isUnary = operation >= OT95_NEGATE;
      if (!isUnary) words.push_back(std::to_string(a));
      words.push_back(kOperators[operation]);
      words.push_back(std::to_string(isUnary ? a : b));
      status = ot95_int64(operation, a, b, &result);
    }
    if (status != OT95_ERR_ARGUMENT) made.answer = {{"text", std::to_string(result)}};
    return made;
  }

  // Dates and times, by number: with a day, with a time of it, with both.
  static bool HasDay(int type) { return type != 13 && type != 23; }
  static bool HasTime(int type) { return type != 12 && type != 22; }
  ot95_moment AnyMoment(int type) {
    ot95_moment moment = {};
    if (HasDay(type)) {
      moment.year = static_cast<int>(1000 + Below(8000));
      moment.month = static_cast<int>(1 + Below(12));
      moment.day = static_cast<int>(1 + Below(28));
    }
    if (HasTime(type)) {
      moment.hour = static_cast<int>(Below(24));
      moment.minute = static_cast<int>(Below(60));
      moment.second = static_cast<int>(Below(60));
    }
    return moment;
  }
  static std::string TextOf(int type, const ot95_moment& moment) {
    ot95_value value = {OT95_KIND_MOMENT, 0, {}};
    value.as.moment = moment;
    const std::string stored =
        Give([&](ot95_buffer* out) { return ot95_encode(type, &value, 1, 1, out); }).bytes;
    const char* format = !HasTime(type)  ? "%Y-%m-%d"
                         : !HasDay(type) ? "%H:%M:%S"
                                         : "%Y-%m-%d %H:%M:%S";
    return Printed(ArrayOf(type, 1, stored), 0, format).bytes;
  }
  Case Date() {
    static constexpr int kTypes[] = {12, 13, 19, 22, 23, 24};
    static constexpr const char* kNames[] = {"OtDate", "OtTime", "OtDateTime",
                                             "d_Date", "d_Time", "d_Timestamp"};
    using Maker = Case (ArithmeticCases::*)(const std::string&);
    constexpr Maker makers[] = {&ArithmeticCases::Sum,      &ArithmeticCases::Difference,
                                &ArithmeticCases::Overlap,  &ArithmeticCases::OfDay,
                                &ArithmeticCases::Question, &ArithmeticCases::Question};
    const unsigned which = Below(std::size(kTypes));
    type_ = kTypes[which];
    for (ot95_moment& moment : moments_) moment = AnyMoment(type_);
    return (this->*makers[Below(std::size(makers))])(std::string("--type=") + kNames[which]);
  }

 private:
  std::string TextOf(int i) const { return TextOf(type_, moments_[i]); }
  int32_t Amount() { return static_cast<int32_t>(AnyNumber() % 100000); }

  Case Sum(const std::string& type) {
    const int32_t amount = Amount();
    ot95_moment result = {};
    Case made{{"date", "add", type, "--", TextOf(0), std::to_string(amount)}, Json()};
    if (ot95_moment_add(type_, &moments_[0], amount, &result) == OT95_OK) {
      made.answer = {{"text", TextOf(type_, result)}};
    }
    return made;
  }
  Case Difference(const std::string& type) {
    double difference = 0;
    Case made{{"date", "diff", type, "--", TextOf(0), TextOf(1)}, Json()};
    const int status = ot95_moment_difference(type_, &moments_[0], &moments_[1], &difference);
    if (status != OT95_OK) return made;
    made.answer = {{"value", difference}};
    if (type_ == 13) {  // a time of day there
      const auto seconds = static_cast<int>(difference);
      ot95_moment clock = {};
      clock.hour = seconds / 3600;
      clock.minute = seconds / 60 % 60;
      clock.second = seconds % 60;
      made.answer = {{"text", TextOf(type_, clock)}};
    }
    return made;
  }
  Case Overlap(const std::string& type) {
    int overlaps = 0;
    Case made{{"date", "overlaps", type, "--", TextOf(0), TextOf(1), TextOf(2), TextOf(3)}, Json()};
    if (ot95_moment_overlaps(type_, &moments_[0], &moments_[2], &overlaps) == OT95_OK) {
      made.answer = {{"value", overlaps != 0}};
    }
    return made;
  }
  Case OfDay(const std::string&) {
    const int32_t day = 1800000 + Amount() * 5;
    ot95_moment result = {};
    ot95_moment_of_day(day, &result);
    return {{"date", "from-days", "--", std::to_string(day)}, {{"text", TextOf(12, result)}}};
  }
  Case Question(const std::string& type) {
    static constexpr const char* kQuestions[] = {"days", "weekday", "day-of-year", "days-in-month",
                                                 "valid"};
    static constexpr const char* kWeekdays[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                "Thursday", "Friday", "Saturday"};
    const int question = static_cast<int>(Below(std::size(kQuestions)));
    int32_t answer = 0;
    Case made{{"date", kQuestions[question], type, "--", TextOf(0)}, Json()};
    if (ot95_moment_ask(type_, question, &moments_[0], &answer) != OT95_OK) return made;
    if (question == OT95_WEEKDAY) {
      made.answer = {{"text", kWeekdays[answer]}};
    } else if (question == OT95_IS_DATE) {
      made.answer = {{"value", answer != 0}};
    } else {
      made.answer = {{"value", answer}};
    }
    return made;
  }

  ot95_moment moments_[4] = {};
};

#endif
