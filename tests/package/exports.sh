#!/usr/bin/env bash
# Every symbol that the libraries in $1 export belongs to the public interface by its name. The data
# of the standard library's templates (type V) can't be hidden; it must not be of type u, though, one
# for the whole process, which would keep its library from being unloaded.
set -euo pipefail
family='[A-Za-z_0-9]*(Store|Load|SizeGet|Compare)'
public="(ot95_|Ot|d_|bks|OTDB_|___Ot|MemFile|CheckOtVersionNumber|DefaultConfig|DefaultTypeMgr)"
public+="|(GetOtTypeMgrInfo|GetSystemTimeInMSSinceTheEpoch|overlaps|operator|HashString|HashOtString)"
# The tables that public headers look characters up in.
tables="k(Order|CodeSet|Class)[A-Z][a-z]+|k(Classes|Tailorings|Contractions|LanguageRows|RecordNumbers)"
tables+="|k(UnicodeOrders|IdeographRanks)"
public+="|(CurrentFactory|LegacyFactory|ot95::(FindMarked|FinishedKeys::|$tables))|$family(\\(|$)"
strays=$(nm -DC --without-symbol-versions --defined-only "$1"/libot95{Obs,Oin,Otms}.so |
  awk 'NF > 2 && $2 != "A" && !($2 == "V" && $3 ~ /^std::/) { $1 = $2 = ""; sub(/^ */, ""); print }' |
  grep -vE "^((vtable|typeinfo|typeinfo name) for )?($public)" || true)
[[ -z $strays ]] || { printf 'exported without being public:\n%s\n' "$strays"; exit 1; }

# And every one has a version.
bare=$(nm -D --defined-only "$1"/libot95{Obs,Oin,Otms}.so | awk 'NF > 2 && $2 != "A" && $3 !~ /@/ { print $3 }')
[[ -z $bare ]] || { printf 'exported without a version:\n%s\n' "$bare"; exit 1; }

# The names of the C interface, one by one.
listed=$(dirname "$0")/c_symbols
nm -D --without-symbol-versions --defined-only "$1"/libot95Otms.so | awk '$3 ~ /^ot95_/ { print $3 }' | LC_ALL=C sort |
  diff "$listed" - || { echo "the C interface isn't the one of $listed"; exit 1; }
while read -r name; do
  grep -q "\`$name\`" "$(dirname "$0")/../../docs/c-interface.md" ||
    { echo "docs/c-interface.md doesn't name $name"; exit 1; }
done < "$listed"
