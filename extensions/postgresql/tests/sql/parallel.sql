-- More than one process.
SET parallel_setup_cost = 0; SET parallel_tuple_cost = 0; SET min_parallel_table_scan_size = 0; SET min_parallel_index_scan_size = 0;
SET max_parallel_workers_per_gather = 2; SET max_parallel_maintenance_workers = 2;
CREATE TABLE many AS SELECT number, folded FROM places, generate_series(1, 4);
ALTER TABLE many SET (parallel_workers = 2);
ANALYZE many;
CREATE INDEX many_folded ON many (folded);
SELECT bt_index_check('many_folded', true);
SET enable_indexscan = off; SET enable_bitmapscan = off; SET enable_indexonlyscan = off;
SELECT nodes($$SELECT count(*) FROM many WHERE folded =~ 's*a'$$);
SELECT nodes('SELECT folded FROM many ORDER BY folded');
SELECT nodes('SELECT folded, count(*) FROM many GROUP BY folded');
CREATE TEMP TABLE in_parallel AS
  SELECT (SELECT count(*) FROM many WHERE folded =~ 's*a') matches, (SELECT min(folded) FROM many)::text least,
         (SELECT md5(string_agg(lower(folded)::text, ',')) FROM (SELECT folded FROM many WHERE number < 2000 ORDER BY folded) o) hashed;
SET max_parallel_workers_per_gather = 0;
SELECT p.matches = (SELECT count(*) FROM many WHERE folded =~ 's*a') AS matches,
       p.least = (SELECT min(folded) FROM many)::text AS least FROM in_parallel p;
RESET enable_indexscan; RESET enable_bitmapscan;
SET max_parallel_workers_per_gather = 2; SET enable_seqscan = off;
SELECT nodes($$SELECT count(*) FROM many WHERE folded =~ 's*a'$$);
SELECT p.matches = (SELECT count(*) FROM many WHERE folded =~ 's*a') AS matches FROM in_parallel p;
DROP TABLE many;
