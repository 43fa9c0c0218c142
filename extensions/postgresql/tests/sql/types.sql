-- Identifiers as types.
SELECT s AS statement, try('SELECT ' || s) AS answer FROM unnest(ARRAY[
  $$'(1-2#3)'::otobjid$$, $$'{NULL}'::otobjid$$, $$'(1-2#3)'::otobjid = '(1-2#9)'$$, $$'(1-2#3)'::otobjid < '(1-3#0)'$$,
  $$'(1-2#3'::otobjid$$, $$''::otobjid$$, $$'(65536-2#3)'::otobjid$$, $$'(1-4294967296#3)'::otobjid$$, $$'(-1-2#3)'::otobjid$$,
  $$'(5v6)'::otclassid$$, $$'(5v6)'::otclassid > '(5v5)'$$, $$'(65536v0)'::otclassid$$,
  $$'(1:2-3#4, 5)'::otref$$, $$'(1:2-3#4, 5)'::otref = '(1:2-3#7, 8)'$$, $$'(1:2-3#4,5)'::otref$$,
  $$'281474976710655'::otseal$$, $$'281474976710656'::otseal$$, $$'-1'::otseal$$, $$'x'::otseal$$, $$'9'::otseal < '10'$$,
  $$'(1-2#3)'::otobjid::bytea$$, $$'\x00000003000000020001'::bytea::otobjid$$, $$'\x0000'::bytea::otobjid$$,
  $$'\x'::bytea::otseal$$, $$encode(otseal_send('42'), 'hex')$$,
  $$otobjid_hash('(1-2#3)') = otobjid_hash('(1-2#9)')$$, $$otobjid_hash_extended('(1-2#3)', 0)$$
]) s;

-- Sorting by whole keys gives the order of the comparison; equal ones meet.
CREATE TABLE objects AS SELECT ('(' || 1 + n % 3 || '-' || (n * 7919) % 1000 || '#' || n || ')')::otobjid AS id,
  ('(' || n % 5 || 'v' || n % 7 || ')')::otclassid AS class, (n * 65537)::text::otseal AS seal,
  ('(' || n % 2 || ':' || 1 + n % 3 || '-' || (n * 7919) % 1000 || '#' || n || ', 4)')::otref AS ref
FROM generate_series(1, 3000) n;
SELECT count(*) FROM (SELECT id, lag(id) OVER (ORDER BY id) a, class, lag(class) OVER (ORDER BY class) b,
  seal, lag(seal) OVER (ORDER BY seal) c, ref, lag(ref) OVER (ORDER BY ref) d FROM objects) o
WHERE a > id OR b > class OR c > seal OR d > ref;
SELECT count(DISTINCT id), count(DISTINCT class), count(DISTINCT seal), count(DISTINCT ref) FROM objects;
CREATE INDEX objects_id ON objects (id);
CREATE INDEX objects_ref ON objects (ref, class);
CREATE INDEX objects_seal ON objects USING hash (seal);
SELECT bt_index_check(i, true) FROM unnest('{objects_id,objects_ref}'::regclass[]) i;
ANALYZE objects;
EXPLAIN (COSTS OFF) SELECT FROM objects WHERE seal = '65537';
SELECT count(*) FROM objects a JOIN objects b ON a.ref = b.ref AND a.id = b.id WHERE a.id = '(1-2#0)';
SET enable_sort = off;
SELECT count(*) FROM (SELECT id FROM objects GROUP BY id) g;
