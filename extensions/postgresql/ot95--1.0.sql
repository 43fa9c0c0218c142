-- ottext: texts with an order of their own.
\echo Use "CREATE EXTENSION ot95" to load this file. \quit

CREATE TYPE ottext;

CREATE FUNCTION ottext_in(cstring, oid, int4) RETURNS ottext
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ottext_out(ottext) RETURNS cstring
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ottext_recv(internal, oid, int4) RETURNS ottext
  AS 'MODULE_PATHNAME' LANGUAGE C STABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ottext_send(ottext) RETURNS bytea
  AS 'MODULE_PATHNAME' LANGUAGE C STABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ottext_typmod_in(cstring[]) RETURNS int4
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ottext_typmod_out(int4) RETURNS cstring
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ottext_typanalyze(internal) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C STABLE STRICT PARALLEL SAFE;

CREATE TYPE ottext (
  INPUT = ottext_in, OUTPUT = ottext_out, RECEIVE = ottext_recv, SEND = ottext_send,
  TYPMOD_IN = ottext_typmod_in, TYPMOD_OUT = ottext_typmod_out, ANALYZE = ottext_typanalyze,
  INTERNALLENGTH = VARIABLE, ALIGNMENT = int4, STORAGE = extended, CATEGORY = 'S', PREFERRED = false
);
COMMENT ON TYPE ottext IS 'a text in the order of a language: ottext(language [, options])';

-- Casts. A text becomes an ottext by itself, so that it is compared as its column wants.
CREATE FUNCTION ottext(text) RETURNS ottext
  AS 'MODULE_PATHNAME', 'ottext_of_text' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ottext(ottext, int4, boolean) RETURNS ottext
  AS 'MODULE_PATHNAME', 'ottext_coerce' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION text(ottext) RETURNS text
  AS 'MODULE_PATHNAME', 'ottext_to_text' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE CAST (text AS ottext) WITH FUNCTION ottext(text) AS IMPLICIT;
CREATE CAST (varchar AS ottext) WITH FUNCTION ottext(text) AS IMPLICIT;
CREATE CAST (bpchar AS ottext) WITH INOUT AS IMPLICIT;
CREATE CAST (name AS ottext) WITH INOUT AS IMPLICIT;
CREATE CAST (ottext AS text) WITH FUNCTION text(ottext) AS ASSIGNMENT;
CREATE CAST (ottext AS varchar) WITH FUNCTION text(ottext) AS ASSIGNMENT;
CREATE CAST (ottext AS ottext) WITH FUNCTION ottext(ottext, int4, boolean) AS IMPLICIT;

CREATE FUNCTION ottext_order(ottext) RETURNS text
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
COMMENT ON FUNCTION ottext_order(ottext) IS 'the order that a value carries; null for a literal';

-- Comparison. Through the support function what meets a column takes its order before a plan is made.
CREATE FUNCTION ottext_order_support(internal) RETURNS internal
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ottext_eq(ottext, ottext) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE SUPPORT ottext_order_support;
CREATE FUNCTION ottext_ne(ottext, ottext) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE SUPPORT ottext_order_support;
CREATE FUNCTION ottext_lt(ottext, ottext) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE SUPPORT ottext_order_support;
CREATE FUNCTION ottext_le(ottext, ottext) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE SUPPORT ottext_order_support;
CREATE FUNCTION ottext_gt(ottext, ottext) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE SUPPORT ottext_order_support;
CREATE FUNCTION ottext_ge(ottext, ottext) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE SUPPORT ottext_order_support;
CREATE FUNCTION ottext_ltsel(internal, oid, internal, int4) RETURNS float8
  AS 'MODULE_PATHNAME' LANGUAGE C STABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ottext_lesel(internal, oid, internal, int4) RETURNS float8
  AS 'MODULE_PATHNAME' LANGUAGE C STABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ottext_gtsel(internal, oid, internal, int4) RETURNS float8
  AS 'MODULE_PATHNAME' LANGUAGE C STABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ottext_gesel(internal, oid, internal, int4) RETURNS float8
  AS 'MODULE_PATHNAME' LANGUAGE C STABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ottext_matchsel(internal, oid, internal, int4) RETURNS float8
  AS 'MODULE_PATHNAME' LANGUAGE C STABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ottext_nmatchsel(internal, oid, internal, int4) RETURNS float8
  AS 'MODULE_PATHNAME' LANGUAGE C STABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ottext_boundsel(internal, oid, internal, int4) RETURNS float8
  AS 'MODULE_PATHNAME' LANGUAGE C STABLE STRICT PARALLEL SAFE;
CREATE OPERATOR = (LEFTARG = ottext, RIGHTARG = ottext, FUNCTION = ottext_eq,
  COMMUTATOR = =, NEGATOR = <>, RESTRICT = eqsel, JOIN = eqjoinsel, HASHES, MERGES);
CREATE OPERATOR <> (LEFTARG = ottext, RIGHTARG = ottext, FUNCTION = ottext_ne,
  COMMUTATOR = <>, NEGATOR = =, RESTRICT = neqsel, JOIN = neqjoinsel);
CREATE OPERATOR < (LEFTARG = ottext, RIGHTARG = ottext, FUNCTION = ottext_lt,
  COMMUTATOR = >, NEGATOR = >=, RESTRICT = ottext_ltsel, JOIN = scalarltjoinsel);
CREATE OPERATOR <= (LEFTARG = ottext, RIGHTARG = ottext, FUNCTION = ottext_le,
  COMMUTATOR = >=, NEGATOR = >, RESTRICT = ottext_lesel, JOIN = scalarlejoinsel);
CREATE OPERATOR > (LEFTARG = ottext, RIGHTARG = ottext, FUNCTION = ottext_gt,
  COMMUTATOR = <, NEGATOR = <=, RESTRICT = ottext_gtsel, JOIN = scalargtjoinsel);
CREATE OPERATOR >= (LEFTARG = ottext, RIGHTARG = ottext, FUNCTION = ottext_ge,
  COMMUTATOR = <=, NEGATOR = <, RESTRICT = ottext_gesel, JOIN = scalargejoinsel);

-- Indexes. The support function for options takes none: through it the server calls the library whenever
-- it takes up an index.
CREATE FUNCTION ottext_cmp(ottext, ottext) RETURNS int4
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ottext_sortsupport(internal) RETURNS void
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ottext_hash(ottext) RETURNS int4
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ottext_hash_extended(ottext, int8) RETURNS int8
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ottext_index_options(internal) RETURNS void
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;

CREATE OPERATOR CLASS ottext_ops DEFAULT FOR TYPE ottext USING btree AS
  OPERATOR 1 <, OPERATOR 2 <=, OPERATOR 3 =, OPERATOR 4 >=, OPERATOR 5 >,
  FUNCTION 1 ottext_cmp(ottext, ottext), FUNCTION 2 ottext_sortsupport(internal),
  FUNCTION 5 ottext_index_options(internal);
CREATE OPERATOR CLASS ottext_ops DEFAULT FOR TYPE ottext USING hash AS
  OPERATOR 1 =,
  FUNCTION 1 ottext_hash(ottext), FUNCTION 2 ottext_hash_extended(ottext, int8),
  FUNCTION 3 ottext_index_options(internal);

CREATE FUNCTION ottext_larger(ottext, ottext) RETURNS ottext
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ottext_smaller(ottext, ottext) RETURNS ottext
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE AGGREGATE max(ottext) (SFUNC = ottext_larger, STYPE = ottext, SORTOP = >,
  COMBINEFUNC = ottext_larger, PARALLEL = SAFE);
CREATE AGGREGATE min(ottext) (SFUNC = ottext_smaller, STYPE = ottext, SORTOP = <,
  COMBINEFUNC = ottext_smaller, PARALLEL = SAFE);

-- Wildcards. A pattern is found in a B-tree between two bounds, which are sort keys.
CREATE TYPE otbound;
CREATE FUNCTION otbound_in(cstring) RETURNS otbound
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION otbound_out(otbound) RETURNS cstring
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE TYPE otbound (
  INPUT = otbound_in, OUTPUT = otbound_out,
  INTERNALLENGTH = VARIABLE, ALIGNMENT = int4, STORAGE = plain
);
COMMENT ON TYPE otbound IS 'an end of the keys of what a pattern means, made by the planner';
CREATE FUNCTION ottext_lower_bound(ottext) RETURNS otbound
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ottext_upper_bound(ottext) RETURNS otbound
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ottext_cmp_bound(ottext, otbound) RETURNS int4
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ottext_ge_bound(ottext, otbound) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ottext_lt_bound(ottext, otbound) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE OPERATOR >= (LEFTARG = ottext, RIGHTARG = otbound, FUNCTION = ottext_ge_bound,
  NEGATOR = <, RESTRICT = ottext_boundsel, JOIN = scalargejoinsel);
CREATE OPERATOR < (LEFTARG = ottext, RIGHTARG = otbound, FUNCTION = ottext_lt_bound,
  NEGATOR = >=, RESTRICT = ottext_boundsel, JOIN = scalarltjoinsel);
ALTER OPERATOR FAMILY ottext_ops USING btree ADD
  OPERATOR 1 < (ottext, otbound), OPERATOR 4 >= (ottext, otbound),
  FUNCTION 1 (ottext, otbound) ottext_cmp_bound(ottext, otbound);

CREATE FUNCTION ottext_match_support(internal) RETURNS internal
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ottext_match(ottext, ottext) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE SUPPORT ottext_match_support;
CREATE FUNCTION ottext_nmatch(ottext, ottext) RETURNS boolean
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE SUPPORT ottext_order_support;
CREATE OPERATOR =~ (LEFTARG = ottext, RIGHTARG = ottext, FUNCTION = ottext_match,
  NEGATOR = !=~, RESTRICT = ottext_matchsel, JOIN = likejoinsel);
CREATE OPERATOR !=~ (LEFTARG = ottext, RIGHTARG = ottext, FUNCTION = ottext_nmatch,
  NEGATOR = =~, RESTRICT = ottext_nmatchsel, JOIN = nlikejoinsel);
COMMENT ON OPERATOR =~ (ottext, ottext) IS 'matches a pattern: * for any run of characters, ? for one';

-- Texts.
CREATE FUNCTION ottext_concat(ottext, ottext) RETURNS ottext
  AS 'MODULE_PATHNAME' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ottext_concat(ottext, text) RETURNS ottext
  AS 'MODULE_PATHNAME', 'ottext_concat_text' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION ottext_concat(text, ottext) RETURNS ottext
  AS 'MODULE_PATHNAME', 'text_concat_ottext' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE OPERATOR || (LEFTARG = ottext, RIGHTARG = ottext, FUNCTION = ottext_concat);
CREATE OPERATOR || (LEFTARG = ottext, RIGHTARG = text, FUNCTION = ottext_concat);
CREATE OPERATOR || (LEFTARG = text, RIGHTARG = ottext, FUNCTION = ottext_concat);
CREATE FUNCTION upper(ottext) RETURNS ottext
  AS 'MODULE_PATHNAME', 'ottext_upper' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION lower(ottext) RETURNS ottext
  AS 'MODULE_PATHNAME', 'ottext_lower' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION length(ottext) RETURNS int4
  AS 'MODULE_PATHNAME', 'ottext_length' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
-- SUBSTRING(x FROM 1 FOR 2) and POSITION(x IN y) are looked up there.
CREATE FUNCTION pg_catalog.substring(ottext, int4) RETURNS ottext
  AS 'MODULE_PATHNAME', 'ottext_substring' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION pg_catalog.substring(ottext, int4, int4) RETURNS ottext
  AS 'MODULE_PATHNAME', 'ottext_substring' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;
CREATE FUNCTION pg_catalog.position(ottext, ottext) RETURNS int4
  AS 'MODULE_PATHNAME', 'ottext_position' LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE;

-- The versions of orders that indexes were built in. It is the library's to write; a dump leaves it out,
-- because what is restored is built anew.
CREATE TABLE ot_index_orders (
  relation oid CONSTRAINT ot_index_orders_pkey PRIMARY KEY,
  filenode oid NOT NULL,
  orders text NOT NULL
);
GRANT SELECT ON ot_index_orders TO PUBLIC;
COMMENT ON TABLE ot_index_orders IS 'the versions of orders that indexes over ottext were built in';
CREATE FUNCTION ot_check_orders(
    OUT relation regclass, OUT "table" regclass, OUT built text, OUT library text, OUT remedy text)
  RETURNS SETOF record AS 'MODULE_PATHNAME' LANGUAGE C STABLE STRICT;
COMMENT ON FUNCTION ot_check_orders() IS 'indexes and partitions of another order than this library''s';
