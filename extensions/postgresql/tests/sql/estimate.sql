-- What the planner expects, beside what there is: within a factor of three, or a thousandth of the table.
CREATE TABLE measured (folded ottext('sv', 'ignore-case,ignore-accent'), sv ottext('sv'));
INSERT INTO measured SELECT name, name FROM names, generate_series(1, 4);
INSERT INTO measured SELECT 'Stockholm', 'Stockholm' FROM generate_series(1, 4000);  -- a most common value
INSERT INTO measured SELECT NULL, NULL FROM generate_series(1, 4000);
ALTER TABLE measured ALTER folded SET STATISTICS 200, ALTER sv SET STATISTICS 200;
ANALYZE measured;

CREATE FUNCTION held(condition text) RETURNS boolean LANGUAGE plpgsql AS $$
DECLARE
  query text := 'SELECT FROM measured WHERE ' || condition;
  guess numeric := expected(query);
  rows numeric;
  everything numeric;
BEGIN
  EXECUTE 'SELECT count(*) FROM measured WHERE ' || condition INTO rows;
  SELECT count(*) FROM measured INTO everything;
  IF guess > 3 * rows + everything / 1000 OR guess < rows / 3 - everything / 1000 THEN
    RAISE WARNING '%: expected %, there are %', condition, guess, rows;
    RETURN false;
  END IF;
  RETURN true;
END $$;
SELECT c AS condition, held(c) FROM unnest(ARRAY[
  $$folded < 'C'$$, $$folded <= 'stockholm'$$, $$folded < 'stockholm'$$, $$folded > 'stockholm'$$, $$folded >= 'stockholm'$$,
  $$folded >= 'Z'$$, $$folded > 'ö'$$, $$'M' < folded$$, $$'M' >= folded$$, $$folded < ''$$, $$folded >= ''$$,
  $$folded = 'stockholm'$$, $$folded <> 'stockholm'$$, $$folded = 'nowhere at all'$$,
  $$folded >= 'S' AND folded < 'T'$$, $$folded BETWEEN 'San' AND 'Sao'$$, $$folded > 'S' AND folded < 'T' AND folded > 'Sa'$$,
  $$sv >= 'Ma' AND sv < 'Mb'$$, $$folded < 'C' AND sv > 'B'$$,
  $$folded =~ 'San*'$$, $$folded =~ 's*'$$, $$folded =~ 'stock*'$$, $$folded =~ 'stockholm'$$, $$folded =~ '*'$$,
  $$folded =~ '*a*'$$, $$folded =~ 'zzz*'$$, $$folded !=~ 's*'$$, $$folded !=~ '*'$$, $$folded !=~ 'zzz*'$$,
  $$sv =~ 'S*'$$, $$sv =~ 'Stock*'$$, $$sv =~ '*a'$$, $$sv !=~ 'S*'$$
]) c;

-- Between two values of the histogram the place of a third one is its own: six prefixes in one of ten stretches.
ALTER TABLE measured ALTER folded SET STATISTICS 10;
ANALYZE measured (folded);
SELECT bool_and(held(format('folded =~ %L', p))) AS within, count(DISTINCT expected(format('SELECT FROM measured WHERE folded < %L', p)))
FROM unnest('{Ma,Mb,Mc,Me,Mi,Mo}'::text[]) p;

-- Without statistics, and with a parameter, there are guesses.
CREATE TABLE unmeasured (name ottext('sv'));
SELECT expected($$SELECT FROM unmeasured WHERE name < 'x'$$) > 0, expected($$SELECT FROM unmeasured WHERE name =~ 'x*'$$) > 0;
SELECT expected($$SELECT FROM measured WHERE folded =~ (SELECT 'x'::ottext)$$) > 0,
       expected($$SELECT FROM measured WHERE folded =~ NULL$$) >= 0, expected($$SELECT FROM measured WHERE sv < upper(sv)$$) > 0;

-- Values without an order stop no ANALYZE, nor do mixed ones.
CREATE TABLE bare (name ottext);
INSERT INTO bare SELECT name FROM names LIMIT 100;
ANALYZE bare;
INSERT INTO bare VALUES ('a'::ottext('sv')), ('a'::ottext('de'));
ANALYZE bare;
SELECT count(*) FROM pg_stats WHERE tablename = 'bare';
CREATE INDEX ON bare (name);
