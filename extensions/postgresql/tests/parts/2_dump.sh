# What a dump restores has the same values, orders and indexes; an archive with data in binary form too.
sql -d postgres -c 'CREATE DATABASE source' -c 'CREATE DATABASE restored'
sql -d source << SQL
CREATE EXTENSION ot95;
CREATE TABLE city (name ottext('sv', 'ignore-case,ignore-accent') PRIMARY KEY, old ottext('de'), id otobjid);
INSERT INTO city SELECT DISTINCT ON (x::ottext('sv', 'ignore-case,ignore-accent')) x, x, '(1-2#3)'
  FROM regexp_split_to_table(pg_read_file('$OT_NAMES'), '\n') x WHERE x <> '';
CREATE INDEX city_old ON city (old) WHERE old > 'M';
CREATE VIEW s AS SELECT * FROM city WHERE name =~ 'S*' AND name IN ('San Marino', 'Serbia');
CREATE TABLE parts (name ottext('sv')) PARTITION BY HASH (name);
CREATE TABLE part0 PARTITION OF parts FOR VALUES WITH (MODULUS 2, REMAINDER 0);
CREATE TABLE part1 PARTITION OF parts FOR VALUES WITH (MODULUS 2, REMAINDER 1);
INSERT INTO parts SELECT name FROM city;
SQL
"$bin/pg_dump" -Fc -d source -f "$work/source.dump"
"$bin/pg_restore" -j 2 -d restored "$work/source.dump"
state="SELECT md5(string_agg(c::text, chr(10) ORDER BY name)) FROM city c;
  SELECT count(*) FROM part0; SELECT name FROM s ORDER BY name; SELECT count(*) FROM ot_check_orders();
  SELECT relation::regclass, orders FROM ot_index_orders WHERE relation IN (SELECT oid FROM pg_class) ORDER BY relation::regclass::text COLLATE \"C\";
  SELECT pg_get_indexdef('city_old'::regclass)"
before=$(sql -d source -c "$state")
after=$(sql -d restored -c "$state")
diff <(echo "$before") <(echo "$after")
[[ $(sql -d restored -c 'SELECT count(*) FROM ot_index_orders') -eq 3 ]]

for format in text csv binary; do
  sql -d restored -c "CREATE TABLE copy_$format (LIKE city)" \
    -c "COPY city TO '$work/city.$format' (FORMAT $format)" -c "COPY copy_$format FROM '$work/city.$format' (FORMAT $format)"
  [[ $(sql -d restored -c "SELECT count(*) FROM city JOIN copy_$format c USING (name) WHERE ottext_order(c.old) = 'ottext(''de'')' AND c.old = city.old") -eq \
     $(sql -d restored -c 'SELECT count(*) FROM city') ]]
done
# Bytes that are no such copy are refused.
printf 'PGCOPY\n\377\r\n\0\0\0\0\0\0\0\0\0\0\3\0\0\0\2\377\376\0\0\0\1a\0\0\0\12%s\377\377' '0123456789' > "$work/bad"
chmod a+r "$work/bad"
! sql -d restored -c "COPY copy_binary FROM '$work/bad' (FORMAT binary)" 2> "$work/said"
grep -q 'invalid byte sequence' "$work/said"
