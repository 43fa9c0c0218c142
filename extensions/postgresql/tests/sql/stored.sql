-- Stored values: every type there and back, and what can be asked of bytes.
SELECT count(*), count(DISTINCT name) FROM ot_types;
SELECT * FROM ot_types WHERE name IN ('long', 'OtString', 'OtNull_double');
SELECT tag, name FROM ot_languages WHERE tag IN ('sv', 'und') ORDER BY number;

CREATE TABLE examples (type text, value text);
INSERT INTO examples SELECT name, '7' FROM ot_types WHERE kind IN ('integer', 'real') AND name <> 'OtBoolean';
INSERT INTO examples SELECT name, '-1.5' FROM ot_types WHERE kind = 'real';
INSERT INTO examples SELECT name, 'Örebro län' FROM ot_types WHERE kind = 'text';
INSERT INTO examples VALUES ('OtBoolean', 'TRUE'), ('OtBoolean', 'f'), ('OtDate', '2000-02-29'), ('d_Date', '1999-12-31'),
  ('OtTime', '23:59:58'), ('d_Time', '23:59:58.25'), ('OtDateTime', '2000-02-29 12:34:56'), ('d_Timestamp', '2000-02-29 12:34:56.78'),
  ('OtObjId', '(1-2#3)'), ('OtClassId', '(5v6)'), ('OtRef', '(1:2-3#4, 5)'), ('OtBlob', '\x00ff10');
INSERT INTO examples SELECT name, '{NULL}' FROM ot_types WHERE is_nullable;
-- What is decoded is encoded as the same bytes, in both forms, and the one form becomes the other.
SELECT type, value, ot_encode(value, type, 'big-endian'), ot_decode(ot_encode(value, type), type) FROM examples ORDER BY type COLLATE "C", value COLLATE "C";
SELECT type, value FROM examples, ot_encode(value, type, 'native') n, ot_encode(value, type, 'big-endian') b
WHERE ot_translate(n, type, 'native', 'big-endian') <> b OR ot_translate(b, type, 'big-endian', 'native') <> n
  OR NOT (ot_verify(n, type)).ok OR (ot_verify(n, type)).consumed <> length(n)
  OR (type <> 'OtBlob' AND type !~ '^d_' AND ot_encode(coalesce(ot_decode(n, type), '{NULL}'), type) <> n)
  OR ot_compare(n, n, type) <> 0;

SELECT s AS statement, try('SELECT ' || s) AS answer FROM unnest(ARRAY[
  $$ot_date(ot_encode('2000-02-29', 'OtDate'))$$, $$ot_date(ot_encode('{NULL}', 'OtDate'))$$, $$ot_date('\xffffffff', 'd_Date')$$,
  $$ot_date('\x00000000', 'OtDate')$$, $$ot_date(ot_encode('5', 'long'), 'long')$$, $$ot_date(ot_encode('1:2:3', 'OtTime'), 'OtTime')$$,
  $$ot_time(ot_encode('23:59:58.25', 'd_Time'), 'd_Time')$$, $$ot_time('\x636363')$$,
  $$ot_timestamp(ot_encode('2000-02-29 12:34:56.78', 'd_Timestamp'), 'd_Timestamp')$$,
  $$ot_date(ot_encode('2000-02-29 12:34:56', 'OtDateTime'), 'OtDateTime')$$,
  $$ot_integer(ot_encode('4294967295', 'OtDWord'), 'OtDWord')$$, $$ot_integer(ot_encode('{NULL}', 'OtNull_int'), 'OtNull_int')$$,
  $$ot_integer(ot_encode('-9223372036854775808', 'OtInt64'), 'OtInt64')$$, $$ot_real(ot_encode('0.1', 'float'), 'float')$$,
  $$ot_bytes(ot_encode('\x00ff', 'OtBlob'))$$, $$ot_bytes(ot_encode('{NULL}', 'OtBlob'))$$,
  $$ot_encode('99999', 'short')$$, $$ot_encode('-1', 'OtWord')$$, $$ot_encode('x', 'long')$$, $$ot_encode('AB', 'char')$$,
  $$ot_encode('{NULL}', 'long')$$, $$ot_encode('2000-02-30', 'OtDate')$$, $$ot_encode('2000-02-29 1:00', 'OtDate')$$,
  $$ot_encode('1:2:3.5', 'OtTime')$$, $$ot_encode('infinity', 'OtDateTime')$$, $$ot_encode('x', 'OtObjId')$$,
  $$ot_encode('Ж', 'OtString', 'native', 'ru', 'ISO-8859-1')$$, $$ot_encode('é', 'OtString', 'big-endian', 'fr', 'ISO-8859-1')$$,
  $$ot_encode('x', 'OtString', 'native', 'xx')$$, $$ot_encode('x', 'nothing')$$, $$ot_encode('1', 'illegal')$$, $$ot_encode('1', 'long', 'memory')$$,
  $$ot_encode('1', 'long', '256')$$, $$ot_encode('1', 'long', '0x2')$$,
  $$ot_compare(ot_encode('a', 'OtString'), ot_encode('A', 'OtString'), 'OtString')$$,
  $$ot_compare(ot_encode('a', 'OtString'), ot_encode('A', 'OtString'), 'OtString', 'native', 'ignore-case')$$,
  $$ot_compare(ot_encode('ä', 'OtString', 'native', 'sv'), ot_encode('z', 'OtString', 'native', 'sv'), 'OtString')$$,
  $$ot_compare('\x', '\x', 'long')$$, $$ot_compare('\x00', '\x00', 'char', 'native', 'ignore')$$,
  $$ot_match(ot_encode('Orleans', 'OtString'), ot_encode('orl*', 'OtString'), 'OtString', 'native', 'ignore-case')$$,
  $$ot_hash(ot_encode('5', 'long'), 'long')$$, $$ot_hash(ot_encode('Orleans', 'OtString'), 'OtString')$$,
  $$ot_hash64(ot_encode('Orleans', 'OtString'), 'OtString', 'native', 'ignore-case') = ot_hash64(ot_encode('ORLEANS', 'OtString'), 'OtString', 'native', 'ignore-case')$$,
  $$ot_hash64(ot_encode('5', 'long'), 'long', 'native', '', 7)$$,
  $$ot_sort_key(ot_encode('-2', 'short'), 'short')$$, $$ot_convert(ot_encode('5', 'short', 'big-endian'), 'short', 'big-endian', 'long')$$,
  $$ot_verify('\x07d0', 'OtDate')$$, $$ot_verify('\x0500', 'short')$$, $$ot_verify('\x05000600', 'short', 'native', 2)$$, $$ot_verify('\x0500', 'short', 'native', 0)$$,
  $$ot_verify('\x0000000001', 'OtBlob')$$, $$ot_verify('\x0000000001', 'OtBoolean')$$, $$ot_decode('\x77', 'OtBoolean')$$
]) s;
SELECT key_order.n FROM (SELECT row_number() OVER (ORDER BY ot_sort_key(ot_encode(name, 'OtString', 'native', 'sv'), 'OtString')) n,
  row_number() OVER (ORDER BY name::ottext('sv')) m, name FROM (SELECT DISTINCT name FROM names WHERE number % 5 = 0) d) key_order
WHERE n <> m;

-- Any bytes, as any type, by every function: an answer or an error, and nothing else.
CREATE FUNCTION storm(rounds int) RETURNS bigint LANGUAGE plpgsql AS $$
DECLARE
  answers bigint := 0;
  type text; bytes bytea; form text; call text;
BEGIN
  PERFORM setseed(0.5);
  FOR round IN 1 .. rounds LOOP
    SELECT name INTO type FROM ot_types WHERE id = floor(random() * 41);
    SELECT coalesce(string_agg(decode(lpad(to_hex(floor(random() * CASE WHEN random() < 0.5 THEN 4 ELSE 256 END)::int), 2, '0'), 'hex'), ''), '')
      INTO bytes FROM generate_series(1, floor(random() * 40)::int);
    form := (ARRAY['native', 'big-endian', '0x82', '0x22', '0xf1'])[1 + floor(random() * 5)::int];
    FOREACH call IN ARRAY ARRAY['ot_decode($1, $2, $3)::text', 'ot_hash($1, $2, $3)::text', 'ot_hash64($1, $2, $3)::text',
      'ot_sort_key($1, $2, $3)::text', 'ot_verify($1, $2, $3)::text', 'ot_translate($1, $2, $3, ''big-endian'')::text',
      'ot_convert($1, $2, $3, ''OtString'')::text', 'ot_compare($1, $1, $2, $3)::text', 'ot_match($1, $1, $2, $3)::text',
      'ot_integer($1, $2, $3)::text', 'ot_real($1, $2, $3)::text', 'ot_date($1, $2, $3)::text', 'ot_timestamp($1, $2, $3)::text',
      'ot_bytes($1, $2, $3)::text', 'ot_records($1, $2 || '':a,'' || $2 || ''x3'', $3)::text', '($1::otref)::text'] LOOP
      BEGIN
        EXECUTE 'SELECT ' || call USING bytes, type, form;
        answers := answers + 1;
      EXCEPTION WHEN OTHERS THEN
        IF SQLSTATE LIKE 'XX%' THEN RAISE WARNING '% % % %: % %', call, type, form, bytes, SQLSTATE, SQLERRM; END IF;
      END;
    END LOOP;
  END LOOP;
  RETURN answers;
END $$;
SELECT storm(1500) > 1000 AS answered;
