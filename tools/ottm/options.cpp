// Options that several commands have.
#include "options.h"

#include <charconv>
#include <map>
#include <sstream>

#include "answer.h"
#include "ot95/text.h"

namespace ottm {
namespace {

const std::map<std::string, unsigned char> kForms = {{"native", OT_FORMAT_NATIVE},
                                                     {"big-endian", OT_FORMAT_BIG_ENDIAN},
                                                     {"memory", OT_FORMAT_MEMORY}};

const std::map<std::string, unsigned short> kOps = {{"no-wildcards", OT_CMP_NO_WILDCARDS},
                                                    {"ignore-case", OT_CMP_IGNORE_CASE},
                                                    {"ignore-accent", OT_CMP_IGNORE_ACCENT},
                                                    {"ignore-space", OT_CMP_IGNORE_SPACE},
                                                    {"order-only", OT_CMP_ORDER_ONLY},
                                                    {"ignore-symbols", OT_CMP_IGNORE_SYMBOLS},
                                                    {"default", OT_CMP_DEFAULT}};

const std::map<std::string, unsigned short> kRelations = {{"=", OT_OP_EQUAL},
                                                          {"<", OT_OP_LESS},
                                                          {">", OT_OP_GREATER},
                                                          {"<=", OT_OP_LESS | OT_OP_EQUAL},
                                                          {">=", OT_OP_GREATER | OT_OP_EQUAL},
                                                          {"<>", OT_OP_LESS | OT_OP_GREATER}};

template <class Map>
std::string NamesOf(const Map& map) {
  std::string names;
  for (const auto& [name, value] : map) names += (names.empty() ? "" : " ") + name;
  return names;
}

bool StartsNumber(const std::string& text) {
  return !text.empty() && text[0] >= '0' && text[0] <= '9';
}

}  // namespace

unsigned long NumberOf(const std::string& text, unsigned long most, const std::string& argument) {
  const bool hex = text.starts_with("0x") || text.starts_with("0X");
  const char* begin = text.data() + (hex ? 2 : 0);
  const char* end = text.data() + text.size();
  unsigned long number = 0;
  const auto [rest, error] = std::from_chars(begin, end, number, hex ? 16 : 10);
  if (error != std::errc() || rest != end || number > most) {
    throw BadInput(argument + ": expected a number from 0 to " + std::to_string(most) + ", found " +
                   Quoted(text));
  }
  return number;
}

void FactoryOption::Declare(CLI::App& app) {
  app.add_option("--factory", name, "The table of types")
      ->check(CLI::IsMember({"current", "legacy"}))
      ->capture_default_str();
}

OtTypeMgr FactoryOption::Manager() const {
  return OtTypeMgr(name == "legacy" ? 3 : 5);
}

void FormOption::Declare(CLI::App& app, const std::string& as, const std::string& meaning) {
  option = as;
  app.add_option(option, name, meaning + ": native, big-endian, memory, or a format byte")
      ->capture_default_str();
}

unsigned char FormOption::Format() const {
  if (const auto form = kForms.find(name); form != kForms.end()) return form->second;
  if (!StartsNumber(name)) {
    throw BadInput("form: expected " + NamesOf(kForms) + " or a number, found " + Quoted(name));
  }
  return static_cast<unsigned char>(NumberOf(name, 255, "form"));
}

unsigned char FormOption::DiskFormat() const {
  const unsigned char format = Format();
  if ((format & OT_FORMAT_MEMORY) == 0) return format;
  throw BadInput(option + ": expected a disk form, found '" + name + "'");
}

unsigned char FormOption::ValueFormat() const {
  return Format() == OT_FORMAT_MEMORY ? Format() : DiskFormat();
}

void OpOption::Declare(CLI::App& app) {
  app.add_option("--op", names, "A number, or names with commas: " + Expected())
      ->capture_default_str();
}

std::string OpOption::Expected() const {
  return (relations ? NamesOf(kRelations) + " " : "") + NamesOf(kOps);
}

unsigned short OpOption::Word() const {
  if (StartsNumber(names)) return static_cast<unsigned short>(NumberOf(names, 0xffff, "--op"));
  unsigned word = 0;
  std::istringstream list(names);
  for (std::string name; std::getline(list, name, ',');) {
    const auto op = kOps.find(name);
    const auto relation = kRelations.find(name);
    if (op != kOps.end()) {
      word |= op->second;
    } else if (relations && relation != kRelations.end()) {
      word |= relation->second;
    } else {
      throw BadInput("--op: expected a number or of " + Expected() + ", found " + Quoted(name));
    }
  }
  return static_cast<unsigned short>(word);
}

void ScanOptions::Declare(CLI::App& app, const std::string& option) {
  app.add_option(option, textFormat,
                 "Format to scan with; else the type's own, and for dates and times ISO 8601");
  app.add_flag("--lenient", lenient,
               "Take what the type makes of a text that it wraps, cuts or makes up");
}

void PrintOption::Declare(CLI::App& app) {
  app.add_option("--text-format", textFormat, "Format to print with; the type's own otherwise");
}

char TypeOf(const OtTypeMgr& manager, const std::string& name, const std::string& argument) {
  char id = 0;
  if (manager.Name2OtTypeId(name.c_str(), id) == 0) return id;
  if (StartsNumber(name)) {
    id = static_cast<char>(NumberOf(name, 40, argument));
    if (manager.NameGet(id, nullptr) != nullptr) return id;
  }
  throw BadInput(argument + ": expected a type of this table (see 'ottm types'), found " +
                 Quoted(name));
}

}  // namespace ottm
