-- ottext as a value.
SELECT s AS statement, try('SELECT ' || s) AS answer FROM unnest(ARRAY[
  $$'Örebro'::ottext('sv')$$,
  $$ottext_order('x'::ottext('sv', 'ignore-case, ignore-accent'))$$,
  $$ottext_order('x'::ottext)$$,
  $$ottext_order('x'::ottext('SV')::ottext('de'))$$,
  $$ottext_order('x'::ottext('sv')::ottext)$$,
  $$format_type('ottext'::regtype, 9 + 256)$$,
  $$'x'::ottext('xx')$$,
  $$'x'::ottext('sv', 'ignore-cases')$$,
  $$'x'::ottext('sv', '', '')$$,
  $$'x'::ottext(1)$$,
  $$upper('straße'::ottext('de'))$$,
  $$upper('i'::ottext('tr'))$$,
  $$lower('ÅÄÖ'::ottext('sv'))$$,
  $$upper('ßß'::ottext)$$,
  $$length('Åmål 😀'::ottext('sv'))$$,
  $$substring('Ängelholm'::ottext('sv') FROM 2 FOR 3)$$,
  $$substring('Ängelholm'::ottext('sv'), 7)$$,
  $$ottext_order(substring('Ängelholm'::ottext('sv'), 7))$$,
  $$substring('x'::ottext, 1, -1)$$,
  $$position('GEL' IN 'Ängelholm'::ottext('sv', 'ignore-case'))$$,
  $$position('GEL' IN 'Ängelholm'::ottext('sv'))$$,
  $$position('ang' IN 'Ängelholm'::ottext('sv', 'ignore-case,ignore-accent'))$$,
  $$position('ang' IN 'Ängelholm'::ottext('de', 'ignore-case,ignore-accent'))$$,
  $$position('ss' IN 'Große Straße'::ottext('de', 'ignore-accent'))$$,
  $$position('' IN 'x'::ottext('de'))$$,
  $$position('a' IN 'b'::ottext)$$,
  $$'a'::ottext('sv') || 'b'$$,
  $$'a' || 'b'::ottext('sv')$$,
  $$ottext_order('a'::ottext('sv') || 'b'::text)$$,
  $$'a'::ottext('sv') || 'b'::ottext('de')$$,
  $$ottext('x'::text)$$,
  $$pg_typeof(coalesce('x'::ottext('sv'), 'y'::text))$$,
  $$text('x'::ottext) || 1$$,
  $$octet_length(ottext_send('ÅÄ'::ottext('sv')))$$,
  $$repeat('x', 32765) = repeat('X', 32765)::ottext('sv', 'ignore-case')$$,
  $$length(repeat('x', 32765)::ottext)$$,
  $$repeat('x', 32766)::ottext$$,
  $$length(repeat('😀', 16382)::ottext)$$,
  $$repeat('😀', 16383)::ottext$$,
  $$repeat('x', 32765)::ottext || 'y'$$,
  $$upper(repeat('ß', 20000)::ottext('de'))$$,
  $$''::ottext('sv') = ''$$
]) s;

-- As text and as bytes, through arrays, records and jsonb.
SELECT array_agg(name ORDER BY name), max(row(name)::text) FROM (VALUES ('b'::ottext('sv')), ('a')) v(name);
SELECT to_jsonb('x"y'::ottext('sv')), array_to_string(ARRAY['a', 'b']::ottext('sv')[], ',');
SELECT max(name), min(name) FROM unnest(ARRAY['å', 'ä', 'z']::ottext('sv')[]) name;
SELECT CASE 'A'::ottext('sv', 'ignore-case') WHEN 'a' THEN 'folded' ELSE 'exact' END,
       nullif('A'::ottext('sv', 'ignore-case'), 'a') IS NULL AS same,
       'A'::ottext('sv', 'ignore-case') IS DISTINCT FROM 'a' AS other;

-- Compressed and out of line.
CREATE TEMP TABLE long_texts (name ottext('sv', 'ignore-case'));
INSERT INTO long_texts SELECT string_agg(md5((i * g)::text), ' ') || g
  FROM generate_series(1, 900) i, generate_series(1, 3) g GROUP BY g;
INSERT INTO long_texts SELECT upper(name) FROM long_texts;
SELECT count(DISTINCT name), count(*), max(length(name)) > 29000 AS are_long FROM long_texts;
