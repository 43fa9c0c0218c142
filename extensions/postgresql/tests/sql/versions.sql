-- Which order an index was built in is recorded with each transaction that builds one.
CREATE VIEW recorded AS
  SELECT relation::regclass, filenode = coalesce(pg_relation_filenode(relation), 0) AS current, orders ~ ':[0-9a-f]{16}' AS told,
         regexp_replace(orders, ':\S+|/.*', '', 'g') AS languages
  FROM ot_index_orders WHERE relation::regclass::text ~ 'v_';
CREATE TABLE v_one (sv ottext('sv') PRIMARY KEY, de ottext('de', 'ignore-case'));
CREATE INDEX v_two ON v_one (de, sv);
CREATE INDEX v_expression ON v_one (lower(sv));
CREATE INDEX v_other ON v_one ((sv::text));
CREATE TABLE v_parts (name ottext('fr')) PARTITION BY HASH (name);
CREATE TABLE v_part PARTITION OF v_parts FOR VALUES WITH (MODULUS 1, REMAINDER 0);
CREATE INDEX v_partitioned ON v_parts USING hash (name);
SELECT * FROM recorded ORDER BY relation::text COLLATE "C";
INSERT INTO v_one VALUES ('a', 'b');
-- Whatever builds an index anew is noticed, and so is its end.
REINDEX INDEX v_one_pkey;
VACUUM FULL v_one;
SELECT bool_and(current) FROM recorded;
TRUNCATE v_one;
SELECT bool_and(current) FROM recorded;
ALTER TABLE v_one ALTER sv TYPE ottext('da');
SELECT * FROM recorded WHERE relation = 'v_one_pkey'::regclass;
REINDEX TABLE CONCURRENTLY v_one;
BEGIN; CREATE INDEX v_never ON v_one (de); ROLLBACK;
BEGIN; SAVEPOINT s; CREATE INDEX v_never ON v_one (de); ROLLBACK TO s; CREATE INDEX v_late ON v_one (de); COMMIT;
DROP INDEX v_two;
CREATE TABLE v_copy (LIKE v_one INCLUDING INDEXES);
CREATE MATERIALIZED VIEW v_seen AS SELECT * FROM v_one;
CREATE INDEX v_seen_sv ON v_seen (sv);
REFRESH MATERIALIZED VIEW v_seen;
SELECT * FROM recorded ORDER BY relation::text COLLATE "C";
SELECT count(*) FROM ot_check_orders();
-- Nobody but the library writes there, and everybody may look.
CREATE ROLE somebody;
GRANT CREATE ON SCHEMA public TO somebody;
SET ROLE somebody;
CREATE TABLE v_somebody (name ottext('sv') UNIQUE);
SELECT count(*) FROM ot_index_orders WHERE relation = 'v_somebody_name_key'::regclass;
SELECT try('DELETE FROM ot_index_orders');
RESET ROLE;
