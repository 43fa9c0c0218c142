// What the bytes of a file can be: guess.
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <map>

#include "colour.h"
#include "command.h"
#include "options.h"
#include "ot95/odmg.h"
#include "ot95/temporal.h"
#include "values.h"

namespace ottm {
namespace {

/// Whether a day is one of the calendar, in a year that is believed.
bool IsDay(int year, int month, int day) {
  constexpr int first = 1000, last = 2999;
  return year >= first && year <= last && month > 0 && day > 0 &&
         std::chrono::year_month_day(std::chrono::year(year),
                                     std::chrono::month(static_cast<unsigned>(month)),
                                     std::chrono::day(static_cast<unsigned>(day)))
             .ok();
}
template <class Date>
bool IsDate(const Date& date) {
  return IsDay(date.year, date.month, date.day);
}
template <class Date>
bool IsDateOf(const void* value) {
  return IsDate(*static_cast<const Date*>(value));
}
template <class Moment>
bool IsMomentOf(const void* value) {
  const auto& moment = *static_cast<const Moment*>(value);
  const auto isBelow = [](int number, int limit) { return number >= 0 && number < limit; };
  return IsDate(moment.date) && isBelow(moment.time.hour, 24) && isBelow(moment.time.minute, 60) &&
         isBelow(moment.time.second, 60);
}

/// What of bytes few would be at random: texts, blobs, and these, with what makes them believed.
const std::map<std::string, bool (*)(const void*)> kDates = {
    {"OtDate", IsDateOf<OtDate>},
    {"OtDateTime", IsMomentOf<OtDateTime>},
    {"d_Date", IsDateOf<d_Date>},
    {"d_Timestamp", IsMomentOf<d_Timestamp>}};

bool IsSought(const std::string& type) {
  return type.ends_with("String") || type == "OtBlob" || kDates.contains(type);
}

/// A type in a form, and what of the bytes it explains.
struct Reading {
  std::string type;
  std::string form;
  std::uint64_t values = 0, first = 0, bytes = 0;
  std::vector<std::string> samples;
};

/// Looks for the values of one type in one form.
class Seeker {
 public:
  Seeker(OtTypeMgr& manager, char id, unsigned char form)
      : manager_(manager),
        id_(id),
        form_(form),
        name_(manager.NameGet(id, nullptr)),
        value_(manager, id, 1) {}

  /// Everywhere, from the left, value behind value.
  void Seek(Bytes& bytes, Reading& reading) {
    for (std::size_t at = 0; at < bytes.size();) {
      const unsigned long taken = Take(bytes, at, reading);
      at += taken == 0 ? 1 : taken;
    }
  }

  /// From the beginning to the end, of bytes that any are values.
  void Fill(Bytes& bytes, Reading& reading, unsigned long size) {
    reading.values = bytes.size() / size;
    reading.bytes = bytes.size();
    for (std::size_t i = 0; i < std::min<std::uint64_t>(reading.values, kSamples); ++i) {
      value_.LoadVerified(bytes.data() + i * size, form_);
      reading.samples.push_back(value_.Print(0));
    }
  }

 private:
  static constexpr std::size_t kSamples = 4;

  unsigned long Take(Bytes& bytes, std::size_t at, Reading& reading) {
    const std::span<const unsigned char> rest(bytes.data() + at, bytes.size() - at);
    const Verdict verdict = VerifyBytes(manager_, id_, rest, form_, 1);
    if (verdict.status != 0) return 0;
    value_.LoadVerified(bytes.data() + at, form_);
    if (!Convinces()) return 0;
    if (reading.values++ == 0) reading.first = at;
    reading.bytes += verdict.consumed;
    if (reading.samples.size() < kSamples) reading.samples.push_back(value_.Print(0));
    return verdict.consumed;
  }

  bool Convinces() const {
    if (value_.IsNull(0)) return name_ == "OtString";  // six bytes that say no more than that
    if (const auto date = kDates.find(name_); date != kDates.end()) {
      return date->second(value_.Data());
    }
    return name_ == "OtBlob" ? value_.Store(form_).size() > 8 : IsReadable(value_.Print(0));
  }

  static bool IsReadable(const std::string& text) {
    const auto isControl = [](char c) { return (c >= 0 && c < ' ') || c == 0x7f; };
    return text.size() > 1 && std::none_of(text.begin(), text.end(), isControl) &&
           text.find("\xef\xbf\xbd") == std::string::npos;
  }

  OtTypeMgr& manager_;
  char id_;
  unsigned char form_;
  std::string name_;
  Values value_;
};

class Guess : public Command {
 public:
  const char* Name() const override { return "guess"; }
  const char* Summary() const override { return "Shows what the bytes of a file can be"; }
  const char* Example() const override { return "ottm guess places.bin"; }
  void Declare(CLI::App& app) override {
    app.add_option("FILE", file_, "The file, or - for standard input")->required();
    app.add_option("--offset", offset_, "Where to begin")->check(CLI::NonNegativeNumber);
    app.add_option("--limit", limit_, "Bytes to look at")
        ->check(CLI::PositiveNumber)
        ->capture_default_str();
    factory_.Declare(app);
  }

  Answer Run() override {
    Bytes bytes = Read();
    const std::vector<Reading> readings = ReadingsOf(bytes);
    Answer answer;
    Json rows = Json::array();
    for (const Reading& reading : readings) rows.push_back(ToJson(reading, bytes.size()));
    answer.json = {{"offset", offset_},
                   {"bytes", bytes.size()},
                   {"more", more_},
                   {"readings", std::move(rows)}};
    answer.human = Table(readings, bytes.size());
    answer.exit = readings.empty() ? 1 : 0;
    return answer;
  }

 private:
  /// The bytes to look at; `more_` tells whether others follow.
  Bytes Read() {
    ot95::tools::InputFile input(file_);
    Bytes bytes, buffer(1 << 16);
    std::uint64_t skipped = 0;
    more_ = false;
    while (const std::size_t got =
               input.Read(reinterpret_cast<char*>(buffer.data()), buffer.size())) {
      const auto skip = static_cast<std::size_t>(std::min<std::uint64_t>(got, offset_ - skipped));
      skipped += skip;
      bytes.insert(bytes.end(), buffer.begin() + static_cast<std::ptrdiff_t>(skip),
                   buffer.begin() + static_cast<std::ptrdiff_t>(got));
      more_ = bytes.size() > limit_;
      if (more_) break;
    }
    bytes.resize(static_cast<std::size_t>(std::min<std::uint64_t>(bytes.size(), limit_)));
    return bytes;
  }

  std::vector<Reading> ReadingsOf(Bytes& bytes) const {
    std::vector<Reading> sought, numbers;
    OtTypeMgr manager = factory_.Manager();
    for (const unsigned char form : {OT_FORMAT_NATIVE, OT_FORMAT_BIG_ENDIAN}) {
      for (char id = 0; id < kTypes; ++id) {
        const char* name = manager.NameGet(id, nullptr);
        if (name == nullptr) continue;
        Reading reading;
        reading.type = name;
        reading.form = form == OT_FORMAT_NATIVE ? "native" : "big-endian";
        Seeker seeker(manager, id, form);
        if (IsSought(name)) {
          seeker.Seek(bytes, reading);
          if (reading.values != 0) sought.push_back(std::move(reading));
        } else if (const unsigned long size = SizeOfNumber(manager, id);
                   size > 1 && !bytes.empty() && bytes.size() % size == 0) {
          seeker.Fill(bytes, reading, size);
          numbers.push_back(std::move(reading));
        }
      }
    }
    const auto explainsMore = [](const Reading& a, const Reading& b) { return a.bytes > b.bytes; };
    std::stable_sort(sought.begin(), sought.end(), explainsMore);
    sought.insert(sought.end(), numbers.begin(), numbers.end());
    return sought;
  }

  /// Of a type that any bytes are values of and that prints as a number; else 0.
  static unsigned long SizeOfNumber(OtTypeMgr& manager, char id) {
    const std::string format = manager.ExchangeFormat(id, nullptr);
    const bool isNumber = format.starts_with('%') && format.find_first_of("dluf") != format.npos &&
                          format.find(' ') == format.npos;
    const std::string name = manager.NameGet(id, nullptr);
    if (!isNumber || name.starts_with("OtNull_")) return name == "OtInt64" ? 8 : 0;
    return manager.DiskLenGet(id, nullptr, OT_FORMAT_NATIVE, 1, OT_FORMAT_MEMORY);
  }

  static Json ToJson(const Reading& reading, std::uint64_t size) {
    return {{"type", reading.type},
            {"form", reading.form},
            {"values", reading.values},
            {"first", reading.first},
            {"bytes", reading.bytes},
            {"share", static_cast<double>(reading.bytes) / static_cast<double>(size)},
            {"samples", reading.samples}};
  }

  std::string Table(const std::vector<Reading>& readings, std::uint64_t size) const {
    std::string text = std::to_string(size) + " bytes from offset " + std::to_string(offset_) +
                       (more_ ? ", and there are more (see --limit)\n" : "\n");
    const auto line = [](const std::string& type, const std::string& form,
                         const std::string& values, const std::string& first,
                         const std::string& share) {
      char cells[128];
      std::snprintf(cells, sizeof cells, "%-14s %-10s %9s %9s %6s  ", type.c_str(), form.c_str(),
                    values.c_str(), first.c_str(), share.c_str());
      return std::string(cells);
    };
    text +=
        ot95::tools::Painted(line("type", "form", "values", "first", "share") + "values begin with",
                             ot95::tools::Colour::kHeading, STDOUT_FILENO) +
        "\n";
    for (const Reading& reading : readings) {
      const std::uint64_t share = reading.bytes * 100 / size;
      std::string samples;
      for (const std::string& sample : reading.samples)
        samples += (samples.empty() ? "" : " | ") + ot95::tools::Escaped(sample);
      text += line(reading.type, reading.form, std::to_string(reading.values),
                   std::to_string(offset_ + reading.first), std::to_string(share) + "%") +
              samples + "\n";
    }
    return text;
  }

  std::string file_;
  std::uint64_t offset_ = 0;
  std::uint64_t limit_ = 1 << 20;
  bool more_ = false;
  FactoryOption factory_;
};

}  // namespace

void AddGuessCommands(CommandList& list) {
  list.push_back(std::make_unique<Guess>());
}

}  // namespace ottm
