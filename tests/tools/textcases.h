#ifndef OT95_TESTS_TOOLS_TEXTCASES_H
#define OT95_TESTS_TOOLS_TEXTCASES_H

// Cases of texts under a collation.

#include "tools/storedcases.h"

class TextCases : public StoredCases {
 protected:
  using StoredCases::StoredCases;

  /// Two texts under a language's collation.
  Case Pair(unsigned op) {
    language_ = kLanguages[Below(std::size(kLanguages))];
    a_ = AnyText() + AnyText() + "x";  // a null has no place in a collation
    b_ = Below(3) == 0 ? a_ : AnyText() + AnyText() + "x";
    ot95_collation_open(language_, options_, &collation_);
    return {{"strcmp", Op(op), std::string("--language=") + language_, "--", a_, b_}, Json()};
  }
  Case Strcmp() {
    Case made = Pair(0x10);
    int sign = 0;
    if (ot95_collation_compare(collation_, a_.data(), a_.size(), b_.data(), b_.size(), &sign) ==
        OT95_OK) {
      made.answer = {{"sign", sign}};
    }
    ot95_free(collation_);
    return made;
  }
  Case Match() {
    Case made = Pair(0);
    int matches = 0;
    if (ot95_collation_match(collation_, a_.data(), a_.size(), b_.data(), b_.size(), &matches) ==
        OT95_OK) {
      made.answer = {{"matches", matches}};
    }
    ot95_free(collation_);
    return made;
  }
  Case EditCase() {
    Pair(0);
    const bool upper = Below(2) != 0;
    const auto change = upper ? ot95_collation_upper : ot95_collation_lower;
    const Given given =
        Give([&](ot95_buffer* out) { return change(collation_, a_.data(), a_.size(), out); });
    ot95_free(collation_);
    return {{"edit", upper ? "upper" : "lower", std::string("--language=") + language_, "--", a_},
            {{"text", given.bytes}}};
  }

  Case Edit() {
    static constexpr struct {
      const char* name;
      int operation;
      const char* arguments;  // t: a text, p: a place, n: a count, c: a character, f: sought
    } kEdits[] = {{"trim", OT95_TRIM, ""},       {"cut", OT95_CUT, "pn"},
                  {"copy", OT95_COPY, "pn"},     {"insert", OT95_INSERT, "tp"},
                  {"replace", OT95_WRITE, "tp"}, {"replace-all", OT95_REPLACE_ALL, "ft"},
                  {"fill", OT95_FILL, "nc"},     {"expand", OT95_EXPAND, "nc"}};
    const auto& chosen = kEdits[Below(std::size(kEdits))];
    Pair(0);
    const std::string texts[] = {AnyText() + "x", Below(2) != 0 ? "o" : "S", "\xc3\xa9"};
    ot95_edit edit = {sizeof edit, chosen.operation, Span(a_), {"", 0}, {"", 0}, 0, OT95_REST};
    Case made{{"edit", chosen.name, std::string("--language=") + language_, "--", a_}, Json()};
    for (const char* kind = chosen.arguments; *kind != 0; ++kind) {
      if (*kind == 'p' || *kind == 'n') {
        (*kind == 'p' ? edit.place : edit.count) = Below(9);
        made.arguments.push_back(std::to_string(*kind == 'p' ? edit.place : edit.count));
      } else {
        const std::string& text = texts[*kind == 't' ? 0 : *kind == 'f' ? 1 : 2];
        (*kind == 'f' ? edit.from : edit.with) = Span(text);
        made.arguments.push_back(text);
      }
    }
    const Given given =
        Give([&](ot95_buffer* out) { return ot95_collation_edit(collation_, &edit, out); });
    ot95_free(collation_);
    if (given.status == OT95_OK) made.answer = {{"text", given.bytes}};
    return made;
  }
  Case Find() {
    options_ &= ~unsigned{OT95_ORDER_ONLY};
    Pair(0);
    const std::string sought = AnyText();
    int found = 0;
    size_t place = 0;
    const int status = ot95_collation_find(collation_, a_.data(), a_.size(), sought.data(),
                                           sought.size(), &found, &place);
    ot95_free(collation_);
    Case made{{"edit", "find", Op(), std::string("--language=") + language_, "--", a_, sought},
              Json()};
    if (status == OT95_OK) made.answer = {{"value", found != 0 ? Units(a_, place) : -1}};
    return made;
  }
  /// 16-bit units of the first bytes of a text.
  static long Units(const std::string& utf8, size_t bytes) {
    long units = 0;
    for (size_t i = 0; i < bytes; ++i) {
      const auto byte = static_cast<unsigned char>(utf8[i]);
      units += (byte & 0xc0) == 0x80 ? 0 : byte >= 0xf0 ? 2 : 1;
    }
    return units;
  }
  Case Split() {
    Pair(0);
    const std::string separator = Below(2) != 0 ? "o" : " ";
    a_ += separator + " " + AnyText() + separator + separator + "y";
    Json items = Json::array();
    Given given;
    for (size_t place = 0; given.status == OT95_OK;) {
      size_t next = place;
      given = Give([&](ot95_buffer* out) {
        next = place;
        return ot95_collation_split(collation_, a_.data(), a_.size(), separator.data(), 1, &next,
                                    out);
      });
      if (given.status == OT95_OK) items.push_back(given.bytes);
      place = next;
    }
    ot95_free(collation_);
    Case made{{"edit", "split", std::string("--language=") + language_, "--", a_, separator},
              Json()};
    if (given.status == OT95_ERR_ENDS) made.answer = {{"items", items}};
    return made;
  }
  Case Orders() {
    Pair(0);
    std::vector<ot95_order> orders(64);
    size_t count = 0;
    ot95_collation_orders(collation_, a_.data(), a_.size(), orders.data(), orders.size(), &count);
    ot95_free(collation_);
    Case made{{"orders", std::string("--language=") + language_, "--", a_}, {{"rows", {}}}};
    for (size_t i = 0; i < count; ++i) {
      made.answer["rows"].push_back({{"order", orders.at(i).word},
                                     {"script", orders.at(i).script},
                                     {"key", orders.at(i).key}});
    }
    return made;
  }

 private:
  const char* language_ = nullptr;
  std::string a_, b_;
  ot95_collation* collation_ = nullptr;
};

#endif
