// Application values: texts that know their language, dates, numbers that can be missing.
#include <cstring>
#include <iostream>
#include <map>

#include "ot95/oin.h"
#include "ot95/std.h"

namespace {

/// What an application has to say of a place.
struct Place {
  OtString name;
  OtDate founded;
  OtNull_long people;  ///< Null where nobody has counted.
};

OtString Swedish(const char* utf8) {
  const unsigned char language = OtLanguageContext::LanguageOfTag("sv");
  OtString text(OT_CS_UNICODE, language);
  OtMBS2OtString(utf8, text, static_cast<long>(std::strlen(utf8)));
  return text;
}

}  // namespace

int main() {
  const Place places[] = {{Swedish("Örebro"), OtDate(1404, 2, 29), OtNull_long(126009)},
                          {Swedish("Åmål"), OtDate(1643, 4, 1), OtNull_long(9065)},
                          {Swedish("Zorngården"), OtDate(1886, 7, 3), OtNull_long()}};

  // A map orders names as their language does: å, ä and ö come behind z.
  std::map<OtString, const Place*> byName;
  for (const Place& place : places) byName[place.name] = &place;
  for (const auto& [name, place] : byName) {
    std::cout << name << ", founded " << place->founded << ", " << place->people << " people\n";
  }

  // Comparison understands wildcards, and can leave case and accents out of account.
  for (const Place& place : places) {
    const bool found = place.name.Compare("zorn*", OT_CMP_IGNORE_CASE) == 0;
    std::cout << place.name << (found ? " matches zorn*\n" : " doesn't match zorn*\n");
  }

  // Days are counted by the calendar.
  std::cout << "between the first two: " << places[1].founded - places[0].founded << " days\n";
}
