-- A shard: the same table everywhere, of which this node has one partition. A row that belongs to another
-- shard finds no partition here, and is refused.
CREATE TABLE place (
  id int, name ottext('und', 'ignore-case,ignore-accent'), code text, country text, language text,
  PRIMARY KEY (name, id)
) PARTITION BY HASH (name);
CREATE TABLE place_:remainder PARTITION OF place FOR VALUES WITH (MODULUS 3, REMAINDER :remainder);
