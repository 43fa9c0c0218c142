// Calendar questions on the temporal value classes: date.
#include <charconv>
#include <map>
#include <type_traits>

#include "command.h"
#include "options.h"
#include "ot95/odmg.h"
#include "ot95/temporal.h"
#include "scanner.h"
#include "texts.h"

namespace ottm {
namespace {

/// Row name and text form of each class.
template <class T>
struct Facts;
template <>
struct Facts<OtDate> {
  static constexpr const char *name = "OtDate", *format = "%Y-%m-%d";
};
template <>
struct Facts<OtTime> {
  static constexpr const char *name = "OtTime", *format = "%H:%M:%S";
};
template <>
struct Facts<OtDateTime> {
  static constexpr const char *name = "OtDateTime", *format = "%Y-%m-%d %H:%M:%S";
};
template <>
struct Facts<d_Date> {
  static constexpr const char *name = "d_Date", *format = "%Y-%m-%d";
};
template <>
struct Facts<d_Time> {
  static constexpr const char *name = "d_Time", *format = "%H:%M:%S";
};
template <>
struct Facts<d_Timestamp> {
  static constexpr const char *name = "d_Timestamp", *format = "%Y-%m-%d %H:%M:%S";
};

Answer TextAnswer(const std::string& text) {
  Answer answer;
  answer.json = {{"text", text}};
  answer.human = text + "\n";
  return answer;
}

/// What an operation is asked about.
struct Arguments {
  std::vector<std::string> texts;
  ScanOptions scan;

  const std::string& operator[](std::size_t i) const { return texts[i]; }
};

template <class T>
Answer ValueText(T value, const Arguments& arguments) {
  OtTypeMgr manager;
  OtString text;
  const auto& format = arguments.scan.textFormat;
  manager.PrintToOtString(TypeOf(manager, Facts<T>::name), text, &value,
                          format ? format->c_str() : Facts<T>::format, 1);
  return TextAnswer(ToUtf8(text));
}

template <class T>
T Parse(const Arguments& arguments, std::size_t i) {
  OtTypeMgr manager;
  T value;
  ot95::tools::Scanner scanner(manager, TypeOf(manager, Facts<T>::name), arguments.scan.textFormat,
                               arguments.scan.lenient);
  Naming("ARG", [&] { scanner.Scan(&value, arguments[i], OT_CS_UNICODE, OT_LANG_NEUTRAL); });
  return value;
}

long Whole(const std::string& text) {
  long number = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (error == std::errc() && rest == end && number == static_cast<OtLong>(number)) return number;
  throw BadInput("ARG: expected a whole number of 32 bits, found " + Quoted(text));
}

d_Interval Seconds(const std::string& text) {
  return d_Interval::Of(static_cast<float>(Whole(text)));
}

Answer ValueAnswer(double value) {
  Answer answer;
  if (value == static_cast<double>(static_cast<long>(value))) {
    answer.json = {{"value", static_cast<long>(value)}};
    answer.human = std::to_string(static_cast<long>(value)) + "\n";
  } else {
    answer.json = {{"value", value}};
    answer.human = answer.json["value"].dump() + "\n";
  }
  return answer;
}

Answer YesOrNo(bool yes) {
  Answer answer;
  answer.json = {{"value", yes}};
  answer.human = yes ? "yes\n" : "no\n";
  answer.exit = yes ? 0 : 1;
  return answer;
}

template <class T>
Answer Add(const Arguments& arguments) {
  T value = Parse<T>(arguments, 0);
  if constexpr (std::is_same_v<T, OtDateTime>) {
    return ValueText(value.AddSeconds(Whole(arguments[1])), arguments);
  } else if constexpr (std::is_same_v<T, d_Date>) {
    const auto days = static_cast<int>(Whole(arguments[1]));
    return ValueText(T(value + d_Interval(days)), arguments);
  } else if constexpr (std::is_same_v<T, OtDate> || std::is_same_v<T, OtTime>) {
    return ValueText(T(value + Whole(arguments[1])), arguments);
  } else {
    return ValueText(T(value + Seconds(arguments[1])), arguments);
  }
}

template <class T>
Answer Diff(const Arguments& arguments) {
  const T a = Parse<T>(arguments, 0);
  const T b = Parse<T>(arguments, 1);
  if constexpr (std::is_same_v<T, OtDate>) {
    return ValueAnswer(static_cast<double>(a - b));
  } else if constexpr (std::is_same_v<T, OtTime>) {
    return ValueText(T(a - b), arguments);
  } else if constexpr (std::is_same_v<T, d_Time>) {
    return ValueAnswer(double{(a - b).seconds});
  } else {
    throw BadInput("--type: expected OtDate, OtTime or d_Time for diff");
  }
}

template <class T>
Answer Overlaps(const Arguments& arguments) {
  if constexpr (std::is_same_v<T, d_Date> || std::is_same_v<T, d_Time> ||
                std::is_same_v<T, d_Timestamp>) {
    return YesOrNo(overlaps(Parse<T>(arguments, 0), Parse<T>(arguments, 1), Parse<T>(arguments, 2),
                            Parse<T>(arguments, 3)) != 0);
  } else {
    throw BadInput("--type: expected d_Date, d_Time or d_Timestamp for overlaps");
  }
}

template <class T>
Answer CompareTwo(const Arguments& arguments) {
  const int order = Parse<T>(arguments, 0) != Parse<T>(arguments, 1);
  return ValueAnswer((order > 0) - (order < 0));
}

/// Questions that concern days alone, in the calendar of OtDate or of d_Date.
template <class T>
Answer OfDay(const std::string& operation, const Arguments& arguments) {
  if constexpr (std::is_same_v<T, OtDate>) {
    if (operation == "from-days") return ValueText(OtDate(Whole(arguments[0])), arguments);
    const OtDate date = Parse<OtDate>(arguments, 0);
    if (operation == "days") return ValueAnswer(static_cast<double>(date.dayabs()));
    if (operation == "weekday") return TextAnswer(ToUtf8(date.PrintDayOfTheDate()));
    if (operation == "valid") return YesOrNo(date.IsDate());
  } else if constexpr (std::is_same_v<T, d_Date>) {
    static constexpr const char* kNames[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                             "Thursday", "Friday", "Saturday"};
    const d_Date date = Parse<d_Date>(arguments, 0);
    if (operation == "day-of-year") return ValueAnswer(date.day_of_year());
    if (operation == "days-in-month") return ValueAnswer(date.days_in_month());
    const int weekday = date.day_of_week();
    if (operation == "weekday" && weekday >= 0 && weekday < 7) return TextAnswer(kNames[weekday]);
  }
  throw BadInput("OPERATION: " + operation + " has no answer for this --type");
}

class Date : public Command {
 public:
  const char* Name() const override { return "date"; }
  const char* Summary() const override { return "Answers calendar questions"; }
  const char* Example() const override { return "ottm date add 2000-02-28 2"; }
  void Declare(CLI::App& app) override {
    app.add_option("OPERATION", operation_,
                   "add A N, diff A B, compare A B, overlaps A1 A2 B1 B2, weekday A, days A, "
                   "from-days N, valid A, day-of-year A, days-in-month A")
        ->required();
    app.add_option("ARG", arguments_.texts,
                   "Values as 2000-12-31, 23:59:59 or both with a blank or T; N in "
                   "days for dates and in seconds otherwise")
        ->required();
    app.add_option("--type", type_, "Class of the values")
        ->check(
            CLI::IsMember({"OtDate", "OtTime", "OtDateTime", "d_Date", "d_Time", "d_Timestamp"}))
        ->capture_default_str();
    arguments_.scan.Declare(app);
  }

  Answer Run() override {
    Expect();
    if (type_ == "OtDate") return RunFor<OtDate>();
    if (type_ == "OtTime") return RunFor<OtTime>();
    if (type_ == "OtDateTime") return RunFor<OtDateTime>();
    if (type_ == "d_Date") return RunFor<d_Date>();
    if (type_ == "d_Time") return RunFor<d_Time>();
    return RunFor<d_Timestamp>();
  }

 private:
  void Expect() const {
    static const std::map<std::string, std::size_t> counts = {
        {"add", 2},  {"diff", 2},      {"compare", 2}, {"overlaps", 4},    {"weekday", 1},
        {"days", 1}, {"from-days", 1}, {"valid", 1},   {"day-of-year", 1}, {"days-in-month", 1}};
    const auto count = counts.find(operation_);
    if (count == counts.end()) {
      throw BadInput("OPERATION: expected one of those 'ottm date --help' lists, found " +
                     Quoted(operation_));
    }
    if (arguments_.texts.size() == count->second) return;
    throw BadInput("ARG: expected " + std::to_string(count->second) + " for " + operation_ +
                   ", found " + std::to_string(arguments_.texts.size()));
  }

  template <class T>
  Answer RunFor() const {
    if (operation_ == "add") return Add<T>(arguments_);
    if (operation_ == "diff") return Diff<T>(arguments_);
    if (operation_ == "compare") return CompareTwo<T>(arguments_);
    if (operation_ == "overlaps") return Overlaps<T>(arguments_);
    return OfDay<T>(operation_, arguments_);
  }

  std::string operation_;
  Arguments arguments_;
  std::string type_ = "OtDate";
};

}  // namespace

void AddDateCommands(CommandList& list) {
  list.push_back(std::make_unique<Date>());
}

}  // namespace ottm
