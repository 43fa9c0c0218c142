// What there is: types, languages, code sets, versions.
#include <cstring>

#include "c/bridge.h"
#include "c/native.h"
#include "ot95/oin_version.h"
#include "ot95/version.h"

using ot95::c::Describe;
using ot95::c::Guarded;
using ot95::c::Table;

int ot95_version(ot95_versions* out) {
  return Guarded([&] {
    const OtTableVersions& tables = OtGetTableVersions();
    return Describe(out, ot95_versions{0,
                                       {OT_VERSION_MAJOR, OT_VERSION_MINOR, OT_VERSION_REVISION,
                                        OT_VERSION_BUILD, OT_VERSION_PATCH},
                                       OT95C_INTERFACE,
                                       tables.collation,
                                       tables.unicode,
                                       tables.cldr,
                                       OtTypeMgr::SortKeyVersion()});
  });
}

int ot95_type_count(size_t* count) {
  int number = 0;
  if (count == nullptr) return OT95_ERR_ARGUMENT;
  *count = static_cast<size_t>(Table::Of(number).count);
  return OT95_OK;
}

int ot95_type_by_name(const char* name, int* type) {
  return Guarded([&]() -> int {
    if (name == nullptr || type == nullptr) return OT95_ERR_ARGUMENT;
    int number = 0;
    const Table table = Table::Of(number);
    while (number < table.count && std::strcmp(table.rows[number]->name, name) != 0) ++number;
    if (number == table.count) return OT95_ERR_TYPE;
    *type = number;
    return OT95_OK;
  });
}

int ot95_type_describe(int type, ot95_type* out) {
  return Guarded([&]() -> int {
    const int given = type;
    const Table table = Table::Of(type);
    if (type >= table.count) return OT95_ERR_TYPE;
    const OtTypeDescriptor& row = *table.rows[type];
    const auto stored = [&] { return row.SizeGet(nullptr, OT_FORMAT_MEMORY, OT_FORMAT_NATIVE, 1); };
    return Describe(
        out, ot95_type{0, given, ot95::c::KindOf(static_cast<char>(type)), row.name, row.format,
                       row.memoryLength, row.isFixed != 0 && row.SizeGet != nullptr ? stored() : 0,
                       row.NullSizeGet != nullptr ? row.NullSizeGet(1) : 0, row.isFixed,
                       row.SetNull != nullptr});
  });
}

int ot95_language_by_tag(const char* tag, unsigned* language) {
  return Guarded([&]() -> int {
    if (tag == nullptr || language == nullptr) return OT95_ERR_ARGUMENT;
    const unsigned number = OtLanguageContext::LanguageOfTag(tag);
    if (number == 0) return OT95_ERR_LANGUAGE;
    *language = number;
    return OT95_OK;
  });
}

int ot95_language_describe(unsigned language, ot95_language* out) {
  return Guarded([&]() -> int {
    const OtLanguage* record =
        language > 0xff ? nullptr
                        : OtLanguageContext::QueryLanguage(static_cast<unsigned char>(language));
    if (record == nullptr) return OT95_ERR_LANGUAGE;
    return Describe(out, ot95_language{0, record->number, record->tag, record->name});
  });
}

int ot95_order_version(unsigned language, uint64_t* version) {
  return Guarded([&]() -> int {
    if (version == nullptr) return OT95_ERR_ARGUMENT;
    if (language > 0xff) return OT95_ERR_LANGUAGE;
    *version = OtLanguageContext::OrderVersion(static_cast<unsigned char>(language));
    return OT95_OK;
  });
}

int ot95_code_set_by_name(const char* name, unsigned* code_set) {
  return Guarded([&]() -> int {
    if (name == nullptr || code_set == nullptr) return OT95_ERR_ARGUMENT;
    const unsigned number = OtLanguageContext::CodeSetOfName(name);
    if (number == 0) return OT95_ERR_LANGUAGE;
    *code_set = number;
    return OT95_OK;
  });
}

int ot95_code_set_describe(unsigned code_set, ot95_code_set* out) {
  return Guarded([&]() -> int {
    if (code_set > OT_CS_UNICODE) return OT95_ERR_LANGUAGE;
    const OtCodeSet* record = OtLanguageContext::QueryCodeSet(static_cast<unsigned char>(code_set));
    if (record->number != code_set) return OT95_ERR_LANGUAGE;  // a stand-in
    const unsigned width = record->number > OT_CS_LAST_NARROW ? 2 : 1;
    return Describe(out, ot95_code_set{0, record->number, width, record->name});
  });
}
