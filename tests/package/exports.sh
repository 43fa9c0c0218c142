#!/usr/bin/env bash
# Every symbol that the libraries in $1 export belongs to the public interface by its name. What
# templates of the standard library keep once a process (type u) can't be hidden.
set -euo pipefail
family='[A-Za-z_0-9]*(Store|Load|SizeGet|Compare)'
public="(Ot|d_|bks|OTDB_|___Ot|MemFile|CheckOtVersionNumber|DefaultConfig|DefaultTypeMgr)"
public+="|(GetOtTypeMgrInfo|GetSystemTimeInMSSinceTheEpoch|overlaps|operator|HashString|HashOtString)"
public+="|(CurrentFactory|LegacyFactory|ot95::kOrderTables)|$family(\\(|$)"
strays=$(nm -DC --defined-only "$1"/libot95{Obs,Oin,Otms}.so |
  awk 'NF > 2 && $2 != "u" { $1 = $2 = ""; sub(/^ */, ""); print }' |
  grep -vE "^((vtable|typeinfo|typeinfo name) for )?($public)" || true)
[[ -z $strays ]] || { printf 'exported without being public:\n%s\n' "$strays"; exit 1; }
