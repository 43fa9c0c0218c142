-- The coordinator: the table, whose partitions are tables of other servers. That the servers have the
-- extension, too, lets its operators go there.
CREATE EXTENSION postgres_fdw;
CREATE TABLE place (
  id int, name ottext('und', 'ignore-case,ignore-accent'), code text, country text, language text
) PARTITION BY HASH (name);

-- What comes in, before it goes to the shards; later it stands for what one machine would answer.
CREATE UNLOGGED TABLE incoming (
  id int, code text, name ottext('und', 'ignore-case,ignore-accent'), country text, number int, kind text,
  part_of text, language text, translated int, revised date
);
