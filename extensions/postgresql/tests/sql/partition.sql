-- Partitions by an ottext: by hash and by range.
CREATE TABLE hashed (name ottext('sv', 'ignore-case'), number int) PARTITION BY HASH (name);
CREATE TABLE hashed0 PARTITION OF hashed FOR VALUES WITH (MODULUS 3, REMAINDER 0);
CREATE TABLE hashed1 PARTITION OF hashed FOR VALUES WITH (MODULUS 3, REMAINDER 1);
CREATE TABLE hashed2 PARTITION OF hashed FOR VALUES WITH (MODULUS 3, REMAINDER 2);
INSERT INTO hashed SELECT name, number FROM names;
SELECT min(c) * 2 > max(c) AS even FROM (SELECT count(*) c FROM hashed GROUP BY tableoid) p;
SELECT count(DISTINCT tableoid) FROM hashed WHERE name = 'STOCKHOLMS LÄN [SE-01]';
EXPLAIN (COSTS OFF) SELECT FROM hashed WHERE name = 'ÖREBRO';
PREPARE one(ottext) AS SELECT count(*) FROM hashed WHERE name = $1;
SET plan_cache_mode = force_generic_plan;
EXPLAIN (COSTS OFF) EXECUTE one('ÖREBRO');
RESET plan_cache_mode;
SET enable_partitionwise_join = on; SET enable_mergejoin = off;
ANALYZE hashed;
SELECT nodes('SELECT FROM hashed a JOIN hashed b USING (name)');

CREATE TABLE ranged (name ottext('sv', 'ignore-case')) PARTITION BY RANGE (name);
CREATE TABLE ranged_m PARTITION OF ranged FOR VALUES FROM (MINVALUE) TO ('N');
CREATE TABLE ranged_z PARTITION OF ranged FOR VALUES FROM ('N') TO ('Å');
CREATE TABLE ranged_ö PARTITION OF ranged FOR VALUES FROM ('å') TO (MAXVALUE);
INSERT INTO ranged VALUES ('malmö'), ('NORA'), ('Zinkgruvan'), ('åmål'), ('Örebro');
SELECT tableoid::regclass, name FROM ranged ORDER BY name;
EXPLAIN (COSTS OFF) SELECT FROM ranged WHERE name >= 'öa';
EXPLAIN (COSTS OFF) SELECT name FROM ranged WHERE name > 'm' AND name < 'nz' ORDER BY name;
CREATE TABLE crossing PARTITION OF ranged FOR VALUES FROM ('m') TO ('o');
