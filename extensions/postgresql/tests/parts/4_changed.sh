# A library with another Spanish order, where "ch" is a letter behind c, takes the place of this one. What was
# built with the old order is refused until it is built anew; nothing else is.
built=0
"$here/../../scripts/changed-orders" "$work/changed" > "$work/log" 2>&1 || built=$?
if [[ $built -eq 77 ]]; then
  echo 'left out: the packages that orders are made from are missing'
  return
fi
[[ $built -eq 0 ]] || { cat "$work/log"; return 1; }
chmod -R a+rX "$work/changed"
start data "$stage/lib"
sql -d postgres -c 'CREATE DATABASE changed'
sql -d changed << 'SQL'
CREATE EXTENSION ot95;
CREATE TABLE city (name ottext('es') PRIMARY KEY, german ottext('de') UNIQUE, folded ottext('es', 'ignore-case'));
INSERT INTO city SELECT n, n, n FROM unnest('{cuz,cha,co,d,chu,ca,zon}'::text[]) n;
CREATE INDEX city_folded ON city USING hash (folded);
CREATE INDEX city_upper ON city (upper(german));
CREATE TABLE parts (name ottext('es')) PARTITION BY RANGE (name);
CREATE TABLE parts_ch PARTITION OF parts FOR VALUES FROM ('c') TO ('d');
CREATE TABLE unread (name ottext('es') PRIMARY KEY);
CREATE TABLE empty_one (name ottext('es') PRIMARY KEY);
SQL
stop
start data "$work/changed:$stage/lib"

# refused STATEMENT NAME: each in a process of its own.
refused() {
  if sql -d changed -c "$1" > "$work/said" 2>&1; then
    echo "not refused: $1"; cat "$work/said"; return 1
  fi
  grep -q "\"$2\"" "$work/said" || { echo "$1: no word of $2:"; cat "$work/said"; return 1; }
}
answers() { # STATEMENT ANSWER
  local answer
  answer=$(sql -d changed -c "$1" 2>&1) || true
  [[ $answer == "$2" ]] || { printf 'wrong: %s\n%s\n' "$1" "$answer"; return 1; }
}

refused "SET enable_seqscan = off; SELECT name FROM city WHERE name = 'cha'" city_pkey
grep -q 'REINDEX INDEX city_pkey;' "$work/said"
refused "SET enable_seqscan = off; SELECT name FROM city WHERE name =~ 'ch*'" city_pkey
refused "SET enable_seqscan = off; SET enable_indexscan = off; SELECT name FROM city WHERE name >= 'ch'" city_pkey
refused "SET enable_seqscan = off; SELECT max(name) FROM city" city_pkey
refused "SET enable_seqscan = off; SELECT name FROM city WHERE folded = 'CHA'" city_folded
refused "SET enable_seqscan = off; SELECT name FROM city WHERE upper(german) = 'ZON'" city_upper
refused "INSERT INTO city VALUES ('new', 'new', 'new')" city_pkey
refused "UPDATE city SET german = 'new' WHERE german = 'cha'" city_pkey
refused "COPY unread FROM PROGRAM 'echo new'" unread_pkey
refused "PREPARE p(ottext) AS INSERT INTO unread VALUES (\$1); EXECUTE p('a')" unread_pkey
refused "DO \$\$ BEGIN INSERT INTO unread VALUES ('a'); END \$\$" unread_pkey
refused "SELECT * FROM parts" parts
refused "COPY parts FROM PROGRAM 'echo cia'" parts
refused "SET max_parallel_workers_per_gather = 2; SET parallel_setup_cost = 0; SET parallel_tuple_cost = 0; SET min_parallel_index_scan_size = 0;
  SET enable_seqscan = off; SET enable_bitmapscan = off; ALTER TABLE city SET (parallel_workers = 2); SELECT count(*) FROM city WHERE name > 'a'" city_pkey

answers 'SELECT relation, remedy FROM ot_check_orders() ORDER BY relation::text COLLATE "C"' \
'city_folded|REINDEX INDEX public.city_folded;
city_pkey|REINDEX INDEX public.city_pkey;
city_upper|REINDEX INDEX public.city_upper;
empty_one_pkey|REINDEX INDEX public.empty_one_pkey;
parts|
unread_pkey|REINDEX INDEX public.unread_pkey;'
answers "SET enable_seqscan = off; SELECT german FROM city WHERE german = 'zon'" zon
answers "EXPLAIN (COSTS OFF) SELECT FROM empty_one WHERE name = 'x'" \
"Index Only Scan using empty_one_pkey on empty_one
  Index Cond: (name = 'x'::ottext('es'))"
answers "SET enable_indexscan = off; SET enable_indexonlyscan = off; SET enable_bitmapscan = off; SELECT string_agg(name::text, ' ' ORDER BY name) FROM city" \
  'ca co cuz cha chu d zon'
answers "DELETE FROM city WHERE german = 'chu' RETURNING name" chu
answers "TRUNCATE empty_one; INSERT INTO empty_one VALUES ('a')" ''

answers 'REINDEX TABLE city; REINDEX INDEX unread_pkey' ''
answers 'SELECT count(*) FROM ot_check_orders()' 1
answers "SET enable_seqscan = off; SELECT string_agg(name::text, ' ') FROM (SELECT name FROM city ORDER BY name) c" 'ca co cuz cha d zon'
answers "SET enable_seqscan = off; SELECT name FROM city WHERE folded = 'CHA'" cha
answers "INSERT INTO city VALUES ('new', 'new', 'new') RETURNING name" new
answers "CREATE EXTENSION amcheck; SELECT bt_index_check('city_pkey', true)" ''
answers 'DROP TABLE parts; SELECT count(*) FROM ot_check_orders()' 0
stop
# And back: what was built since belongs to the other library.
start data "$stage/lib"
refused "SET enable_seqscan = off; SELECT name FROM city WHERE name = 'cha'" city_pkey
refused "INSERT INTO empty_one VALUES ('b')" empty_one_pkey
