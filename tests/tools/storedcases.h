#ifndef OT95_TESTS_TOOLS_STOREDCASES_H
#define OT95_TESTS_TOOLS_STOREDCASES_H

// Cases of values, stored and as text.

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>

#include "tools/cases.h"

class StoredCases : public CaseMaker {
 protected:
  using CaseMaker::CaseMaker;
  ~StoredCases() {
    for (const std::string& path : files_) std::remove(path.c_str());
  }

  /// A stored array, good or damaged.
  std::string Stored(size_t& count, bool maybeDamaged = true) {
    Given given{OT95_ERR_VALUE, ""};
    for (int tries = 0; given.status != OT95_OK && tries < 50; ++tries) {
      std::vector<std::string> texts(1 + Below(2));
      for (std::string& text : texts) text = AnyText();
      given = Scanned(type_, texts, form_);
      count = texts.size();
    }
    if (given.status != OT95_OK) {
      given = Give([&](ot95_buffer* out) { return ot95_default(type_, 0, form_, out); });
      count = 1;
    }
    if (maybeDamaged && Below(4) == 0) given.bytes.resize(1 + Below(given.bytes.size()));
    return given.bytes;
  }
  static std::string HexOf(const std::string& bytes) { return Hex(bytes.data(), bytes.size()); }
  static Json HexOrNull(const void* bytes, size_t size) {
    return size != 0 ? Json(Hex(bytes, size)) : Json();
  }
  Json Values(const ot95_array& array) {
    Json values = Json::array();
    for (size_t i = 0; i < array.count; ++i) {
      int isNull = 0;
      if (ot95_is_null(&array, i, &isNull) != OT95_OK) return Json();
      values.push_back(isNull != 0 ? Json() : Json(Printed(array, i).bytes));
    }
    return values;
  }

  Case Encode() {
    const std::vector<std::string> texts = {AnyText(), AnyText()};
    const bool isStrict = Below(2) != 0;
    ot95_scan_options options = {sizeof options, 253, 1, nullptr, 0};
    if (isStrict) options.flags = OT95_STRICT;
    const Given given = Scanned(type_, texts, form_, &options);
    Case made{{"encode", Type(), Form()}, Json()};
    if (!isStrict) made.arguments.push_back("--lenient");
    made.arguments.insert(made.arguments.end(), {"--", texts[0], texts[1]});
    if (given.status == OT95_OK) made.answer = {{"bytes", given.Hex()}};
    return made;
  }
  Case Decode() {
    size_t count = 0, end = 0;
    const std::string bytes = Stored(count);
    const ot95_array array = ArrayOf(type_, form_, bytes, count);
    Case made{{"decode", Type(), HexOf(bytes), Form(), "--count=" + std::to_string(count)}, Json()};
    if (ot95_verify(&array, &end) == OT95_OK) {
      made.answer = {{"consumed", end}, {"values", Values(array)}};
    }
    return made;
  }
  Case Verify() {
    size_t count = 0, end = 0;
    const std::string bytes = Stored(count);
    const ot95_array array = ArrayOf(type_, form_, bytes, count);
    const bool ok = ot95_verify(&array, &end) == OT95_OK;
    return {{"verify", Type(), HexOf(bytes), Form(), "--count=" + std::to_string(count)},
            {{"ok", ok}, {"consumed", end}}};
  }
  Case Key() {
    type_ = 11;
    size_t count = 0;
    const std::string bytes = Stored(count, false);
    const ot95_array array = ArrayOf(type_, form_, bytes, count);
    const unsigned target = form_ | OT95_FORM_KEY;
    const Given key = Give([&](ot95_buffer* out) { return ot95_translate(&array, target, out); });
    return {{"translate", Type(), HexOf(bytes), "--from=" + std::to_string(form_),
             "--to=" + std::to_string(target), "--count=" + std::to_string(count)},
            {{"bytes", key.Hex()}}};
  }
  Case Compare() {
    size_t count = 0, other = 0;
    const std::string a = Stored(count, false);
    std::string b = Stored(other, false);
    while (other != count) b = Stored(other, false);
    const ot95_array first = ArrayOf(type_, form_, a, count);
    const ot95_array second = ArrayOf(type_, form_, b, count);
    int sign = 0;
    Case made{{"compare", Type(), HexOf(a), HexOf(b), "--hex", Form(), Op(),
               "--count=" + std::to_string(count)},
              Json()};
    if (ot95_compare(&first, &second, options_, &sign) == OT95_OK) made.answer = {{"sign", sign}};
    return made;
  }
  Case Hash() {
    size_t count = 0;
    const std::string bytes = Stored(count, false);
    const ot95_array array = ArrayOf(type_, form_, bytes, count);
    uint32_t hash = 0;
    Case made{{"hash", Type(), HexOf(bytes), "--hex", Form(), "--count=" + std::to_string(count)},
              Json()};
    if (ot95_hash(&array, &hash) == OT95_OK) made.answer = {{"hash", hash}, {"status", 0}};
    return made;
  }
  Case Print() {
    const std::string text = AnyText();
    const Given stored = Scanned(type_, {text}, form_);
    Case made{{"print", Type(), "--lenient", "--", text}, Json()};
    if (stored.status == OT95_OK) {
      made.answer = {{"text", Printed(ArrayOf(type_, form_, stored.bytes), 0).bytes}};
    }
    return made;
  }
  Case Convert() {
    const int target = static_cast<int>(Below(40));
    const std::string text = AnyText();
    const Given source = Scanned(type_, {text}, OT95_FORM_NATIVE);
    const ot95_array array = ArrayOf(type_, OT95_FORM_NATIVE, source.bytes);
    const Given given =
        Give([&](ot95_buffer* out) { return ot95_convert(&array, target, OT95_FORM_NATIVE, out); });
    Case made{{"convert", Type(), std::to_string(target), "--lenient", "--", text}, Json()};
    if (given.status == OT95_OK) {
      made.answer = {{"values", Values(ArrayOf(target, OT95_FORM_NATIVE, given.bytes))}};
    }
    return made;
  }
  Case DefaultValue() {
    const bool nullable = Below(2) != 0;
    const Given given =
        Give([&](ot95_buffer* out) { return ot95_default(type_, nullable, form_, out); });
    const ot95_array array = ArrayOf(type_, form_, given.bytes);
    int isNull = 0;
    ot95_is_null(&array, 0, &isNull);
    Case made{{"default", Type()}, {{"text", Printed(array, 0).bytes}, {"isNull", isNull != 0}}};
    if (nullable) made.arguments.push_back("--nullable");
    return made;
  }
  std::string IndexKey(const std::string& bytes) {
    const bool isText = type_ == 11 || type_ == 20 || type_ == 21;
    if (!isText) return bytes.substr(0, OT95_KEY_ROOM);
    const ot95_array array = ArrayOf(type_, form_, bytes);
    return Give(
               [&](ot95_buffer* out) { return ot95_translate(&array, form_ | OT95_FORM_KEY, out); })
        .bytes;
  }
  Case Estimate() {
    const std::string texts[] = {AnyText(), AnyText(), AnyText()};
    std::string stored[3];
    Case made{{"estimate", Type(), texts[0], Form(), "--lenient", "--low=" + texts[1],
               "--high=" + texts[2]},
              Json()};
    const unsigned relation = 1 + Below(7);
    const unsigned wildcards = Below(2) * OT95_WILDCARDS;
    made.arguments.push_back("--op=" + std::to_string(relation | (wildcards != 0 ? 0 : 0x10)));
    for (int i = 0; i < 3; ++i) {
      const Given given = Scanned(type_, {texts[i]}, form_);
      if (given.status != OT95_OK || texts[i].empty()) return Encode();
      stored[i] = given.bytes;
    }
    const std::string low = IndexKey(stored[1]), high = IndexKey(stored[2]);
    const ot95_array operand = ArrayOf(type_, form_, stored[0]);
    const ot95_span ends[] = {Span(low), Span(high)};
    ot95_estimate_result result = {};
    result.struct_size = sizeof result;
    if (ot95_estimate(&operand, relation | wildcards, &ends[0], &ends[1], &result) != OT95_OK) {
      return made;
    }
    made.answer = {{"share", result.share},
                   {"lower", HexOrNull(result.lower, result.lower_size)},
                   {"upper", HexOrNull(result.upper, result.upper_size)}};
    return made;
  }
  Case SortKey() {
    size_t count = 0;
    const std::string bytes = Stored(count, false);
    const ot95_array array = ArrayOf(type_, form_, bytes, count);
    const Given key = Give([&](ot95_buffer* out) { return ot95_sort_key(&array, options_, out); });
    Case made{{"sort-key", Type(), HexOf(bytes), "--hex", Form(), Op(),
               "--count=" + std::to_string(count)},
              Json()};
    if (key.status == OT95_OK) made.answer = {{"bytes", key.Hex()}, {"status", 0}};
    return made;
  }
  Case SortRange() {
    size_t count = 0;
    const std::string bytes = Stored(count, false);
    const ot95_array array = ArrayOf(type_, form_, bytes, count);
    const unsigned relation = 1 + Below(7);
    std::string lower(1 << 17, 0), upper = lower;
    ot95_buffer from = {lower.data(), lower.size(), 0}, to = {upper.data(), upper.size(), 0};
    Case made{{"sort-range", Type(), HexOf(bytes), "--hex", Form(), Op(relation),
               "--count=" + std::to_string(count)},
              Json()};
    const int status =
        ot95_sort_range(&array, relation | options_ | OT95_WILDCARDS, options_, &from, &to);
    if (status == OT95_OK || status == OT95_ERR_NOT_SUPPORTED) {  // without ends, then
      made.answer = {{"lower", HexOrNull(from.data, from.size)},
                     {"upper", HexOrNull(to.data, to.size)}};
    }
    return made;
  }
  Case Hash64() {
    size_t count = 0;
    const std::string bytes = Stored(count, false);
    const ot95_array array = ArrayOf(type_, form_, bytes, count);
    const uint64_t seed = random_();
    uint64_t hash = 0;
    Case made{{"hash64", Type(), HexOf(bytes), "--hex", Form(), Op(),
               "--seed=" + std::to_string(seed), "--count=" + std::to_string(count)},
              Json()};
    if (ot95_hash64(&array, options_, seed, &hash) == OT95_OK) {
      made.answer = {{"hash", std::to_string(hash)}};
    }
    return made;
  }

  /// A value as the command line shows it: a number where it reads like one.
  static Json Shown(const ot95_array& array, size_t index) {
    int isNull = 0;
    ot95_is_null(&array, index, &isNull);
    if (isNull != 0) return Json();
    const std::string text = Printed(array, index).bytes;
    ot95_type type = {};
    type.struct_size = sizeof type;
    ot95_type_describe(array.type, &type);
    if (std::string(type.format) == "%s" || std::string(type.format) == "%c") return text;
    const Json number = Json::parse(text, nullptr, false);
    return number.is_number() ? number : Json(text);
  }
  Case Inspect() {
    std::vector<ot95_member> members(1 + Below(3));
    std::string layout, bytes;
    const size_t records = 1 + Below(3);
    for (ot95_member& member : members) {
      member = {static_cast<int>(Below(40)), 1};
      layout += (layout.empty() ? "" : ",") + std::to_string(member.type) + ":m" +
                std::to_string(&member - members.data());
    }
    for (size_t i = 0; i < records; ++i) {
      for (const ot95_member& member : members) {
        type_ = member.type;
        size_t count = 0;
        const std::string stored = Stored(count, false);
        bytes += count == 1 ? stored : Default(member.type);
      }
    }
    if (Below(3) == 0) bytes.resize(1 + Below(bytes.size()));
    const std::string path =
        testing::TempDir() + "/c_interface_records" + std::to_string(files_.size());
    std::ofstream(path, std::ios::binary) << bytes;
    files_.push_back(path);
    return {{"inspect", path, "--layout=" + layout, Form()}, Records(members, bytes)};
  }
  /// The default value of a type, stored.
  std::string Default(int type) const {
    return Give([&](ot95_buffer* out) { return ot95_default(type, 0, form_, out); }).bytes;
  }
  Json Records(const std::vector<ot95_member>& members, const std::string& bytes) const {
    Json answer = {{"records", Json::array()}, {"damage", Json()}};
    for (size_t at = 0, record = 0; at < bytes.size(); ++record) {
      std::vector<ot95_array> arrays(members.size());
      size_t end = 0;
      if (ot95_record(members.data(), members.size(), form_, bytes.data() + at, bytes.size() - at,
                      arrays.data(), &end) != OT95_OK) {
        answer["damage"] = {{"record", record}, {"offset", at + end}};
        break;
      }
      Json values = Json::object();
      for (size_t i = 0; i < arrays.size(); ++i) {
        values["m" + std::to_string(i)] = Shown(arrays[i], 0);
      }
      answer["records"].push_back({{"offset", at}, {"values", values}});
      at += end;
    }
    return answer;
  }

 private:
  std::vector<std::string> files_;
};

#endif
