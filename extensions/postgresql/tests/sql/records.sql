-- Records of an old database as rows.
CREATE TABLE pages (page bytea);
INSERT INTO pages SELECT string_agg(ot_encode(name, 'OtString', 'big-endian', 'sv') || ot_encode((number * 10)::text, 'long', 'big-endian')
    || ot_encode(CASE WHEN number % 3 = 0 THEN '{NULL}' ELSE '1' END, 'OtNull_short', 'big-endian'), '' ORDER BY number)
FROM names WHERE number <= 500;
SELECT r FROM pages, ot_records(page, 'OtString:name,long:people,OtNull_short', 'big-endian') r LIMIT 3;
SELECT count(*), count(*) FILTER (WHERE r -> 'values' ->> 'name' = n.name AND (r -> 'values' ->> 'people')::int = n.number * 10
  AND (r -> 'values' -> 'OtNull_short' = 'null') = (n.number % 3 = 0)) AS same
FROM pages, ot_records(page, 'OtString:name,long:people,OtNull_short', 'big-endian') WITH ORDINALITY r(r, number) JOIN names n USING (number);

-- The same from a large object, longer than what is read at once.
SELECT lo_from_bytea(4711, string_agg(page, '')) FROM pages, generate_series(1, 20);
SELECT count(*), max((r ->> 'offset')::int) = 20 * max(length(page)) - (SELECT length(ot_encode(name, 'OtString')) + 7 FROM names WHERE number = 500) AS to_its_end
FROM pages, ot_records(4711, 'OtString:name,long:people,OtNull_short', 'big-endian') r;
SELECT count(*), max(jsonb_array_length(r -> 'values' -> 'byte')) FROM ot_records(4711, 'OtByte:bytex1000') r;
SELECT try('SELECT count(*) FROM ot_records(4712::oid, ''long'')');
CREATE ROLE anybody;
SET ROLE anybody;
SELECT try('SELECT count(*) FROM ot_records(4711, ''long'')');
RESET ROLE;
SELECT lo_unlink(4711);

-- Layouts, arrays, damage.
SELECT l AS layout, try(format('SELECT string_agg(r::text, '' '') FROM ot_records(%L::bytea, %L) r', '\x0500060007000800'::bytea, l)) AS answer
FROM unnest('{short,shortx2,short:ax2,"short:a,short:bx3","short,short","short:a,short:a",shortx3,shortx0,shortx1000001,"","short,",:a,nothing,illegal,"short:x","shortx2:x","OtNull_shortx2","OtStringx2","short:a:b"}'::text[]) l;
SELECT r FROM ot_records('\x0500' || ot_encode('Tours', 'OtString') || '\x0600ffff', 'short:n,OtString:name') r;
SELECT r -> 'values' FROM ot_records(ot_encode('7', 'OtString') || ot_encode('7', 'OtByte') || ot_encode('1.5', 'double') || ot_encode('TRUE', 'OtBoolean')
  || ot_encode('a"b\c', 'OtString'), 'OtString:text,OtByte:byte,double:real,OtBoolean:truth,OtString:quoted') r;
SELECT count(*) FROM ot_records(''::bytea, 'short') r;
