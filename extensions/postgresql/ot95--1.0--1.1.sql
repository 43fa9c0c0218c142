-- The other types: identifiers as types, and functions between stored bytes and the server's own types.
\echo Use "ALTER EXTENSION ot95 UPDATE TO '1.1'" to load this file. \quit

-- otobjid
CREATE TYPE otobjid;
CREATE FUNCTION otobjid_in(cstring) RETURNS otobjid
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otobjid_out(otobjid) RETURNS cstring
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otobjid_recv(internal) RETURNS otobjid
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otobjid_send(otobjid) RETURNS bytea
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE TYPE otobjid (INPUT = otobjid_in, OUTPUT = otobjid_out, RECEIVE = otobjid_recv, SEND = otobjid_send,
  INTERNALLENGTH = 10, ALIGNMENT = char);
COMMENT ON TYPE otobjid IS 'the identifier of an object: (high-low#block)';
CREATE FUNCTION otobjid(bytea) RETURNS otobjid
  AS 'MODULE_PATHNAME', 'otobjid_of_bytea' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION bytea(otobjid) RETURNS bytea
  AS 'MODULE_PATHNAME', 'otobjid_to_bytea' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE CAST (bytea AS otobjid) WITH FUNCTION otobjid(bytea);
CREATE CAST (otobjid AS bytea) WITH FUNCTION bytea(otobjid);
CREATE FUNCTION otobjid_eq(otobjid, otobjid) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otobjid_ne(otobjid, otobjid) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otobjid_lt(otobjid, otobjid) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otobjid_le(otobjid, otobjid) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otobjid_gt(otobjid, otobjid) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otobjid_ge(otobjid, otobjid) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE OPERATOR = (LEFTARG = otobjid, RIGHTARG = otobjid, FUNCTION = otobjid_eq,
  COMMUTATOR = =, NEGATOR = <>, RESTRICT = eqsel, JOIN = eqjoinsel, HASHES, MERGES);
CREATE OPERATOR <> (LEFTARG = otobjid, RIGHTARG = otobjid, FUNCTION = otobjid_ne,
  COMMUTATOR = <>, NEGATOR = =, RESTRICT = neqsel, JOIN = neqjoinsel);
CREATE OPERATOR < (LEFTARG = otobjid, RIGHTARG = otobjid, FUNCTION = otobjid_lt,
  COMMUTATOR = >, NEGATOR = >=, RESTRICT = scalarltsel, JOIN = scalarltjoinsel);
CREATE OPERATOR <= (LEFTARG = otobjid, RIGHTARG = otobjid, FUNCTION = otobjid_le,
  COMMUTATOR = >=, NEGATOR = >, RESTRICT = scalarlesel, JOIN = scalarlejoinsel);
CREATE OPERATOR > (LEFTARG = otobjid, RIGHTARG = otobjid, FUNCTION = otobjid_gt,
  COMMUTATOR = <, NEGATOR = <=, RESTRICT = scalargtsel, JOIN = scalargtjoinsel);
CREATE OPERATOR >= (LEFTARG = otobjid, RIGHTARG = otobjid, FUNCTION = otobjid_ge,
  COMMUTATOR = <=, NEGATOR = <, RESTRICT = scalargesel, JOIN = scalargejoinsel);
CREATE FUNCTION otobjid_cmp(otobjid, otobjid) RETURNS int4
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otobjid_sortsupport(internal) RETURNS void
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otobjid_hash(otobjid) RETURNS int4
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otobjid_hash_extended(otobjid, int8) RETURNS int8
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE OPERATOR CLASS otobjid_ops DEFAULT FOR TYPE otobjid USING btree AS
  OPERATOR 1 <, OPERATOR 2 <=, OPERATOR 3 =, OPERATOR 4 >=, OPERATOR 5 >,
  FUNCTION 1 otobjid_cmp(otobjid, otobjid), FUNCTION 2 otobjid_sortsupport(internal);
CREATE OPERATOR CLASS otobjid_ops DEFAULT FOR TYPE otobjid USING hash AS
  OPERATOR 1 =, FUNCTION 1 otobjid_hash(otobjid), FUNCTION 2 otobjid_hash_extended(otobjid, int8);

-- otclassid
CREATE TYPE otclassid;
CREATE FUNCTION otclassid_in(cstring) RETURNS otclassid
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otclassid_out(otclassid) RETURNS cstring
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otclassid_recv(internal) RETURNS otclassid
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otclassid_send(otclassid) RETURNS bytea
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE TYPE otclassid (INPUT = otclassid_in, OUTPUT = otclassid_out, RECEIVE = otclassid_recv, SEND = otclassid_send,
  INTERNALLENGTH = 4, ALIGNMENT = char);
COMMENT ON TYPE otclassid IS 'a class and its version: (5v6)';
CREATE FUNCTION otclassid(bytea) RETURNS otclassid
  AS 'MODULE_PATHNAME', 'otclassid_of_bytea' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION bytea(otclassid) RETURNS bytea
  AS 'MODULE_PATHNAME', 'otclassid_to_bytea' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE CAST (bytea AS otclassid) WITH FUNCTION otclassid(bytea);
CREATE CAST (otclassid AS bytea) WITH FUNCTION bytea(otclassid);
CREATE FUNCTION otclassid_eq(otclassid, otclassid) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otclassid_ne(otclassid, otclassid) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otclassid_lt(otclassid, otclassid) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otclassid_le(otclassid, otclassid) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otclassid_gt(otclassid, otclassid) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otclassid_ge(otclassid, otclassid) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE OPERATOR = (LEFTARG = otclassid, RIGHTARG = otclassid, FUNCTION = otclassid_eq,
  COMMUTATOR = =, NEGATOR = <>, RESTRICT = eqsel, JOIN = eqjoinsel, HASHES, MERGES);
CREATE OPERATOR <> (LEFTARG = otclassid, RIGHTARG = otclassid, FUNCTION = otclassid_ne,
  COMMUTATOR = <>, NEGATOR = =, RESTRICT = neqsel, JOIN = neqjoinsel);
CREATE OPERATOR < (LEFTARG = otclassid, RIGHTARG = otclassid, FUNCTION = otclassid_lt,
  COMMUTATOR = >, NEGATOR = >=, RESTRICT = scalarltsel, JOIN = scalarltjoinsel);
CREATE OPERATOR <= (LEFTARG = otclassid, RIGHTARG = otclassid, FUNCTION = otclassid_le,
  COMMUTATOR = >=, NEGATOR = >, RESTRICT = scalarlesel, JOIN = scalarlejoinsel);
CREATE OPERATOR > (LEFTARG = otclassid, RIGHTARG = otclassid, FUNCTION = otclassid_gt,
  COMMUTATOR = <, NEGATOR = <=, RESTRICT = scalargtsel, JOIN = scalargtjoinsel);
CREATE OPERATOR >= (LEFTARG = otclassid, RIGHTARG = otclassid, FUNCTION = otclassid_ge,
  COMMUTATOR = <=, NEGATOR = <, RESTRICT = scalargesel, JOIN = scalargejoinsel);
CREATE FUNCTION otclassid_cmp(otclassid, otclassid) RETURNS int4
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otclassid_sortsupport(internal) RETURNS void
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otclassid_hash(otclassid) RETURNS int4
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otclassid_hash_extended(otclassid, int8) RETURNS int8
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE OPERATOR CLASS otclassid_ops DEFAULT FOR TYPE otclassid USING btree AS
  OPERATOR 1 <, OPERATOR 2 <=, OPERATOR 3 =, OPERATOR 4 >=, OPERATOR 5 >,
  FUNCTION 1 otclassid_cmp(otclassid, otclassid), FUNCTION 2 otclassid_sortsupport(internal);
CREATE OPERATOR CLASS otclassid_ops DEFAULT FOR TYPE otclassid USING hash AS
  OPERATOR 1 =, FUNCTION 1 otclassid_hash(otclassid), FUNCTION 2 otclassid_hash_extended(otclassid, int8);

-- otref
CREATE TYPE otref;
CREATE FUNCTION otref_in(cstring) RETURNS otref
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otref_out(otref) RETURNS cstring
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otref_recv(internal) RETURNS otref
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otref_send(otref) RETURNS bytea
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE TYPE otref (INPUT = otref_in, OUTPUT = otref_out, RECEIVE = otref_recv, SEND = otref_send,
  INTERNALLENGTH = 14, ALIGNMENT = char);
COMMENT ON TYPE otref IS 'a reference: (database:high-low#block, class)';
CREATE FUNCTION otref(bytea) RETURNS otref
  AS 'MODULE_PATHNAME', 'otref_of_bytea' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION bytea(otref) RETURNS bytea
  AS 'MODULE_PATHNAME', 'otref_to_bytea' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE CAST (bytea AS otref) WITH FUNCTION otref(bytea);
CREATE CAST (otref AS bytea) WITH FUNCTION bytea(otref);
CREATE FUNCTION otref_eq(otref, otref) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otref_ne(otref, otref) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otref_lt(otref, otref) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otref_le(otref, otref) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otref_gt(otref, otref) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otref_ge(otref, otref) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE OPERATOR = (LEFTARG = otref, RIGHTARG = otref, FUNCTION = otref_eq,
  COMMUTATOR = =, NEGATOR = <>, RESTRICT = eqsel, JOIN = eqjoinsel, HASHES, MERGES);
CREATE OPERATOR <> (LEFTARG = otref, RIGHTARG = otref, FUNCTION = otref_ne,
  COMMUTATOR = <>, NEGATOR = =, RESTRICT = neqsel, JOIN = neqjoinsel);
CREATE OPERATOR < (LEFTARG = otref, RIGHTARG = otref, FUNCTION = otref_lt,
  COMMUTATOR = >, NEGATOR = >=, RESTRICT = scalarltsel, JOIN = scalarltjoinsel);
CREATE OPERATOR <= (LEFTARG = otref, RIGHTARG = otref, FUNCTION = otref_le,
  COMMUTATOR = >=, NEGATOR = >, RESTRICT = scalarlesel, JOIN = scalarlejoinsel);
CREATE OPERATOR > (LEFTARG = otref, RIGHTARG = otref, FUNCTION = otref_gt,
  COMMUTATOR = <, NEGATOR = <=, RESTRICT = scalargtsel, JOIN = scalargtjoinsel);
CREATE OPERATOR >= (LEFTARG = otref, RIGHTARG = otref, FUNCTION = otref_ge,
  COMMUTATOR = <=, NEGATOR = <, RESTRICT = scalargesel, JOIN = scalargejoinsel);
CREATE FUNCTION otref_cmp(otref, otref) RETURNS int4
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otref_sortsupport(internal) RETURNS void
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otref_hash(otref) RETURNS int4
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otref_hash_extended(otref, int8) RETURNS int8
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE OPERATOR CLASS otref_ops DEFAULT FOR TYPE otref USING btree AS
  OPERATOR 1 <, OPERATOR 2 <=, OPERATOR 3 =, OPERATOR 4 >=, OPERATOR 5 >,
  FUNCTION 1 otref_cmp(otref, otref), FUNCTION 2 otref_sortsupport(internal);
CREATE OPERATOR CLASS otref_ops DEFAULT FOR TYPE otref USING hash AS
  OPERATOR 1 =, FUNCTION 1 otref_hash(otref), FUNCTION 2 otref_hash_extended(otref, int8);

-- otseal
CREATE TYPE otseal;
CREATE FUNCTION otseal_in(cstring) RETURNS otseal
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otseal_out(otseal) RETURNS cstring
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otseal_recv(internal) RETURNS otseal
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otseal_send(otseal) RETURNS bytea
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE TYPE otseal (INPUT = otseal_in, OUTPUT = otseal_out, RECEIVE = otseal_recv, SEND = otseal_send,
  INTERNALLENGTH = 6, ALIGNMENT = char);
COMMENT ON TYPE otseal IS 'a seal: a number of 48 bits';
CREATE FUNCTION otseal(bytea) RETURNS otseal
  AS 'MODULE_PATHNAME', 'otseal_of_bytea' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION bytea(otseal) RETURNS bytea
  AS 'MODULE_PATHNAME', 'otseal_to_bytea' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE CAST (bytea AS otseal) WITH FUNCTION otseal(bytea);
CREATE CAST (otseal AS bytea) WITH FUNCTION bytea(otseal);
CREATE FUNCTION otseal_eq(otseal, otseal) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otseal_ne(otseal, otseal) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otseal_lt(otseal, otseal) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otseal_le(otseal, otseal) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otseal_gt(otseal, otseal) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otseal_ge(otseal, otseal) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE OPERATOR = (LEFTARG = otseal, RIGHTARG = otseal, FUNCTION = otseal_eq,
  COMMUTATOR = =, NEGATOR = <>, RESTRICT = eqsel, JOIN = eqjoinsel, HASHES, MERGES);
CREATE OPERATOR <> (LEFTARG = otseal, RIGHTARG = otseal, FUNCTION = otseal_ne,
  COMMUTATOR = <>, NEGATOR = =, RESTRICT = neqsel, JOIN = neqjoinsel);
CREATE OPERATOR < (LEFTARG = otseal, RIGHTARG = otseal, FUNCTION = otseal_lt,
  COMMUTATOR = >, NEGATOR = >=, RESTRICT = scalarltsel, JOIN = scalarltjoinsel);
CREATE OPERATOR <= (LEFTARG = otseal, RIGHTARG = otseal, FUNCTION = otseal_le,
  COMMUTATOR = >=, NEGATOR = >, RESTRICT = scalarlesel, JOIN = scalarlejoinsel);
CREATE OPERATOR > (LEFTARG = otseal, RIGHTARG = otseal, FUNCTION = otseal_gt,
  COMMUTATOR = <, NEGATOR = <=, RESTRICT = scalargtsel, JOIN = scalargtjoinsel);
CREATE OPERATOR >= (LEFTARG = otseal, RIGHTARG = otseal, FUNCTION = otseal_ge,
  COMMUTATOR = <=, NEGATOR = <, RESTRICT = scalargesel, JOIN = scalargejoinsel);
CREATE FUNCTION otseal_cmp(otseal, otseal) RETURNS int4
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otseal_sortsupport(internal) RETURNS void
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otseal_hash(otseal) RETURNS int4
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otseal_hash_extended(otseal, int8) RETURNS int8
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE OPERATOR CLASS otseal_ops DEFAULT FOR TYPE otseal USING btree AS
  OPERATOR 1 <, OPERATOR 2 <=, OPERATOR 3 =, OPERATOR 4 >=, OPERATOR 5 >,
  FUNCTION 1 otseal_cmp(otseal, otseal), FUNCTION 2 otseal_sortsupport(internal);
CREATE OPERATOR CLASS otseal_ops DEFAULT FOR TYPE otseal USING hash AS
  OPERATOR 1 =, FUNCTION 1 otseal_hash(otseal), FUNCTION 2 otseal_hash_extended(otseal, int8);

-- Stored values. Of the forms the machine's own is the default, as in ottm.
CREATE FUNCTION ot_decode(bytes bytea, type text, form text DEFAULT 'native') RETURNS text
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ot_encode(value text, type text, form text DEFAULT 'native',
    language text DEFAULT 'und', code_set text DEFAULT 'Unicode') RETURNS bytea
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ot_integer(bytes bytea, type text, form text DEFAULT 'native') RETURNS int8
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ot_real(bytes bytea, type text, form text DEFAULT 'native') RETURNS float8
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ot_bytes(bytes bytea, type text DEFAULT 'OtBlob', form text DEFAULT 'native') RETURNS bytea
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ot_date(bytes bytea, type text DEFAULT 'OtDate', form text DEFAULT 'native') RETURNS date
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ot_time(bytes bytea, type text DEFAULT 'OtTime', form text DEFAULT 'native') RETURNS time
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ot_timestamp(bytes bytea, type text DEFAULT 'OtDateTime', form text DEFAULT 'native') RETURNS timestamp
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ot_compare(a bytea, b bytea, type text, form text DEFAULT 'native', options text DEFAULT '') RETURNS int4
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ot_match(value bytea, pattern bytea, type text, form text DEFAULT 'native', options text DEFAULT '') RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ot_hash(bytes bytea, type text, form text DEFAULT 'native') RETURNS int8
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ot_hash64(bytes bytea, type text, form text DEFAULT 'native', options text DEFAULT '',
    seed int8 DEFAULT 0) RETURNS int8
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ot_sort_key(bytes bytea, type text, form text DEFAULT 'native', options text DEFAULT '') RETURNS bytea
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ot_translate(bytes bytea, type text, form text, to_form text) RETURNS bytea
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ot_convert(bytes bytea, type text, form text, to_type text) RETURNS bytea
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ot_verify(bytes bytea, type text, form text DEFAULT 'native', count int4 DEFAULT 1,
    OUT ok boolean, OUT consumed int8, OUT reason text) RETURNS record
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;

-- Records: TYPE[:NAME][xCOUNT],... as ottm inspect has them.
CREATE FUNCTION ot_records(bytes bytea, layout text, form text DEFAULT 'native') RETURNS SETOF jsonb
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE ROWS 1000;
CREATE FUNCTION ot_records(large_object oid, layout text, form text DEFAULT 'native') RETURNS SETOF jsonb
  AS 'MODULE_PATHNAME', 'ot_records_large' LANGUAGE C STABLE STRICT ROWS 100000;

-- What the library knows.
CREATE FUNCTION ot_type_rows(OUT id int4, OUT name text, OUT kind text, OUT memory_size int4,
    OUT stored_size int4, OUT is_fixed boolean, OUT is_nullable boolean, OUT null_size int4,
    OUT format text)
  RETURNS SETOF record AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE ROWS 41;
CREATE VIEW ot_types AS SELECT * FROM ot_type_rows();
GRANT SELECT ON ot_types TO PUBLIC;
COMMENT ON VIEW ot_types IS 'the types of stored values; a stored_size of 0 depends on the value';
CREATE FUNCTION ot_language_rows(OUT number int4, OUT tag text, OUT name text, OUT order_version text)
  RETURNS SETOF record AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE ROWS 60;
CREATE VIEW ot_languages AS SELECT * FROM ot_language_rows();
GRANT SELECT ON ot_languages TO PUBLIC;
COMMENT ON VIEW ot_languages IS 'the languages of ottext, and the versions of their orders';
CREATE FUNCTION ot_version() RETURNS text
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
