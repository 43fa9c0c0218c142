// Index keys and collation hashes of names.
#include <memory>

#include "collator.h"
#include "ot95/typemgr.h"
#include "workload.h"

namespace bench {

constexpr char kText = 11;

void RegisterKeys() {
  const Names& names = NamesOf("latin");
  const Collator tertiary = OpenCollator("");
  const Collator primary = OpenCollator("");
  ucol_setStrength(primary.get(), UCOL_PRIMARY);
  Add(
      "index key of a name", {8, 330},
      [cycle = Cycle(names)]() mutable {
        unsigned char key[OtINDEX_MAX_KEYLEN];
        OtString* text = const_cast<OtString*>(&cycle.Next().wide);
        benchmark::DoNotOptimize(CurrentFactory[11]->Translate(
            key, 0x80 | OT_FORMAT_BIG_ENDIAN, sizeof key, text, OT_FORMAT_MEMORY, sizeof *text, 1));
      },
      [tertiary, cycle = Cycle(names)]() mutable {
        unsigned char key[1024];
        const Name& name = cycle.Next();
        benchmark::DoNotOptimize(
            ucol_getSortKey(tertiary.get(), Units(name), Length(name), key, sizeof key));
      });
  Add(
      "byte-ordered key of a name", {7, 370},
      [cycle = Cycle(names), types = OtTypeMgr()]() mutable {
        unsigned char key[OtINDEX_MAX_KEYLEN];
        int status = 0;
        benchmark::DoNotOptimize(types.SortKey(kText, key, sizeof key, &cycle.Next().wide, 0,
                                               OT_CMP_NO_WILDCARDS, 1, OT_FORMAT_MEMORY, status));
      },
      [tertiary, cycle = Cycle(names)]() mutable {
        unsigned char key[1024];
        const Name& name = cycle.Next();
        benchmark::DoNotOptimize(
            ucol_getSortKey(tertiary.get(), Units(name), Length(name), key, sizeof key));
      });
  Add(
      "hash of a name", {8, 200},
      [cycle = Cycle(names)]() mutable {
        const OtString& text = cycle.Next().wide;
        benchmark::DoNotOptimize(HashString(text.GetCodeSetCode(), text.GetLanguageCode(),
                                            text.StrGet(), -1, OT_FORMAT_NATIVE));
      },
      [primary, cycle = Cycle(names)]() mutable {
        unsigned char key[1024];
        const Name& name = cycle.Next();
        const int size = ucol_getSortKey(primary.get(), Units(name), Length(name), key, sizeof key);
        benchmark::DoNotOptimize(std::hash<std::string_view>()(
            {reinterpret_cast<const char*>(key), static_cast<std::size_t>(size)}));
      });
}

}  // namespace bench
