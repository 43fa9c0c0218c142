# The version before becomes this one, and has all that a new one has.
sql -d postgres -c 'CREATE DATABASE upgraded' -c 'CREATE DATABASE fresh'
sql -d upgraded << 'SQL'
CREATE EXTENSION ot95 VERSION '1.0';
CREATE TABLE city (name ottext('sv') PRIMARY KEY);
INSERT INTO city VALUES ('Åmål'), ('Zorn');
ALTER EXTENSION ot95 UPDATE;
SELECT name || ot_decode(ot_encode('!', 'OtString'), 'OtString') FROM city WHERE name =~ 'å*';
SQL
sql -d fresh -c 'CREATE EXTENSION ot95'
objects="SELECT pg_describe_object(classid, objid, 0) FROM pg_depend WHERE refclassid = 'pg_extension'::regclass
  AND refobjid = (SELECT oid FROM pg_extension WHERE extname = 'ot95') AND deptype = 'e' ORDER BY 1"
upgraded=$(sql -d upgraded -c "$objects")
[[ $(wc -l <<< "$upgraded") -gt 150 ]]
diff <(echo "$upgraded") <(sql -d fresh -c "$objects")
# Another schema than the path's serves as well, and what is dropped may come again in the same session.
sql -d postgres -c 'CREATE DATABASE elsewhere'
answer=$(sql -d elsewhere << 'SQL'
SET client_min_messages = warning;
CREATE EXTENSION ot95;
CREATE TABLE gone (name ottext('sv') PRIMARY KEY);
DROP EXTENSION ot95 CASCADE;
CREATE TABLE unrelated (number int PRIMARY KEY);
INSERT INTO unrelated VALUES (1);
CREATE SCHEMA "Odd one";
CREATE EXTENSION ot95 SCHEMA "Odd one";
CREATE TABLE city (name "Odd one".ottext('sv', 'ignore-case') PRIMARY KEY);
INSERT INTO city VALUES ('Åmål'), ('Zorn');
SET enable_seqscan = off;
EXPLAIN (COSTS OFF) SELECT FROM city WHERE name OPERATOR("Odd one".=~) 'å*';
SELECT name FROM city WHERE name OPERATOR("Odd one".=~) 'å*';
SELECT count(*) FROM "Odd one".ot_index_orders;
SQL
)
[[ $answer == *'Index Cond: '*'otbound'*$'\nÅmål\n1' ]] || { echo "$answer"; exit 1; }
# Operator classes are as the server wants them. All it has to say is that bounds have two operators, and none
# the other way: an index holds texts, and is looked through between two bounds.
diff <(sql -d fresh -c "SELECT opcname, amname FROM pg_opclass o JOIN pg_am a ON a.oid = opcmethod
  WHERE opcname ~ '^ot' AND NOT amvalidate(o.oid)" 2>&1) - << 'SAID'
INFO:  operator family "ottext_ops" of access method btree is missing operator(s) for types ottext and otbound
INFO:  operator family "ottext_ops" of access method btree is missing cross-type operator(s)
ottext_ops|btree
SAID
