-- What the other files share: the names of the world in three languages, and helpers.
SET client_min_messages = warning;
CREATE EXTENSION ot95;
CREATE EXTENSION amcheck;
\getenv names OT_NAMES
CREATE TABLE names (number serial PRIMARY KEY, name text);
COPY names (name) FROM :'names';
SELECT count(*) > 5000 AS enough FROM names;

CREATE TABLE places (number int, sv ottext('sv'), folded ottext('sv', 'ignore-case,ignore-accent'));
INSERT INTO places SELECT number, name, name FROM names;

-- Rows that a plan expects.
CREATE FUNCTION expected(query text) RETURNS numeric LANGUAGE plpgsql AS $$
DECLARE plan json;
BEGIN
  EXECUTE 'EXPLAIN (FORMAT JSON) ' || query INTO plan;
  RETURN plan -> 0 -> 'Plan' ->> 'Plan Rows';
END $$;

-- The nodes of a plan.
CREATE FUNCTION nodes(query text) RETURNS text LANGUAGE plpgsql AS $$
DECLARE plan jsonb;
BEGIN
  EXECUTE 'EXPLAIN (FORMAT JSON) ' || query INTO plan;
  RETURN (SELECT string_agg(node #>> '{}', ', ')
          FROM jsonb_path_query(plan, 'strict $.**."Node Type"') node);
END $$;

-- What a statement answers, or the message of its error.
CREATE FUNCTION try(statement text) RETURNS text LANGUAGE plpgsql AS $$
DECLARE answer text;
BEGIN
  EXECUTE statement INTO answer;
  RETURN answer;
EXCEPTION WHEN OTHERS THEN RETURN 'error: ' || SQLERRM;
END $$;
