-- A million names as ottext and as text by ICU, and what is measured on them: a line a run, workload, side
-- and milliseconds of the processor.
SET client_min_messages = warning;
CREATE EXTENSION ot95;
CREATE EXTENSION unaccent;
CREATE COLLATION nocase (provider = icu, locale = 'sv-u-ks-level2', deterministic = false);
CREATE FUNCTION plain(text) RETURNS text LANGUAGE sql IMMUTABLE PARALLEL SAFE
  AS $$ SELECT lower(public.unaccent('public.unaccent', $1)) $$;

\getenv names OT_NAMES
CREATE UNLOGGED TABLE loaded (number serial, name text COLLATE "C");
COPY loaded (name) FROM :'names';
CREATE UNLOGGED TABLE names (
  icu text COLLATE "sv-x-icu", bytes text COLLATE "C", nocase text COLLATE nocase, sv ottext('sv'), sv_nocase ottext('sv', 'ignore-case'),
  letters ottext('sv', 'ignore-case,ignore-accent'));
INSERT INTO names SELECT name, name, name, name, name, name FROM loaded, generate_series(1, 4) copy
  ORDER BY md5(number::text || copy) LIMIT 1000000;
-- Each side has a table of its own column, as a user would.
DO $$
DECLARE side text;
BEGIN
  FOREACH side IN ARRAY '{icu,bytes,nocase,sv,sv_nocase,letters}'::text[] LOOP
    EXECUTE format('CREATE UNLOGGED TABLE n_%1$s AS SELECT %1$s AS name FROM names', side);
    EXECUTE format('CREATE UNLOGGED TABLE d_%1$s AS SELECT DISTINCT %1$s AS name FROM names', side);
    EXECUTE format('CREATE UNLOGGED TABLE p_%1$s AS SELECT name FROM d_%1$s ORDER BY md5(name::text)', side);
  END LOOP;
END $$;
VACUUM ANALYZE;

CREATE TABLE work (number serial, workload text, side text, before text, statement text);
INSERT INTO work (workload, side, before, statement)
SELECT w.workload, side, format(w.before, side), format(w.statement, side)
FROM unnest('{icu,bytes,nocase,sv,sv_nocase}'::text[]) side, (VALUES
  ('CREATE INDEX', 'DROP INDEX IF EXISTS i_%1$s', 'CREATE INDEX i_%1$s ON n_%1$s (name)'),
  ('ORDER BY', 'SET LOCAL enable_indexscan = off; SET LOCAL enable_indexonlyscan = off', 'SELECT name FROM n_%1$s ORDER BY name OFFSET 1000000'),
  ('equality join', 'SET LOCAL enable_mergejoin = off; SET LOCAL enable_nestloop = off; SET LOCAL enable_indexonlyscan = off',
   'SELECT count(*) FROM n_%1$s JOIN d_%1$s USING (name)'),
  ('each name looked up',
   'SET LOCAL enable_mergejoin = off; SET LOCAL enable_hashjoin = off; SET LOCAL enable_nestloop = on; SET LOCAL enable_memoize = off; SET LOCAL enable_indexonlyscan = on; SET LOCAL enable_seqscan = on',
   'SELECT count(*) FROM p_%1$s JOIN n_%1$s USING (name)')) w(workload, before, statement);
CREATE INDEX n_letters_name ON n_letters (name);
CREATE TABLE n_plain AS SELECT icu::text COLLATE "C" AS name FROM names;
CREATE INDEX n_plain_name ON n_plain (plain(name) text_pattern_ops);
VACUUM ANALYZE n_letters;
VACUUM ANALYZE n_plain;
INSERT INTO work (workload, side, before, statement) VALUES
  ('San*', 'sv_nocase', 'SET LOCAL enable_indexscan = on', $$SELECT count(*) FROM n_letters WHERE name =~ 'San*'$$),
  ('San*', 'nocase', 'SET LOCAL enable_indexscan = on', $$SELECT count(*) FROM n_plain WHERE plain(name) LIKE 'san%'$$),
  ('San* of a table without an index for it', 'sv_nocase', 'SET LOCAL enable_indexscan = on', $$SELECT count(*) FROM n_letters WHERE name =~ 'San*'$$),
  ('San* of a table without an index for it', 'nocase', 'SET LOCAL enable_indexscan = off; SET LOCAL enable_bitmapscan = off', $$SELECT count(*) FROM n_plain WHERE plain(name) LIKE 'san%'$$);

-- The processor's time of this process in milliseconds: others on the machine don't count.
CREATE FUNCTION cpu() RETURNS float8 LANGUAGE sql VOLATILE
  AS $$ SELECT split_part(pg_read_file('/proc/self/schedstat'), ' ', 1)::float8 / 1e6 $$;
CREATE TABLE runs (workload text, side text, taken float8);
-- What is short is run again, as the processor's time is told in steps of some milliseconds.
CREATE FUNCTION run(w work) RETURNS float8 LANGUAGE plpgsql AS $$
DECLARE
  began float8;
  times int := 0;
BEGIN
  EXECUTE w.before;
  began := cpu();
  LOOP
    EXECUTE w.statement;
    times := times + 1;
    EXIT WHEN cpu() - began > 200;
  END LOOP;
  RETURN (cpu() - began) / times;
END $$;
CREATE PROCEDURE measure(rounds int) LANGUAGE plpgsql AS $$
DECLARE chosen text; w work;
BEGIN
  FOR chosen IN SELECT k.workload FROM work k GROUP BY 1 ORDER BY min(number) LOOP
    FOR round IN 1 .. rounds LOOP
      FOR w IN SELECT * FROM work k WHERE k.workload = chosen ORDER BY number LOOP
        INSERT INTO runs VALUES (w.workload, w.side, run(w));
        COMMIT;
      END LOOP;
    END LOOP;
    IF chosen = 'CREATE INDEX' THEN EXECUTE 'ANALYZE'; END IF;
  END LOOP;
END $$;
