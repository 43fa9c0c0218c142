-- One shard becomes a partition of the coordinator's table.
CREATE SERVER :server FOREIGN DATA WRAPPER postgres_fdw
  OPTIONS (host '127.0.0.1', port :'port', dbname 'cluster', extensions 'ot95', fetch_size '1000',
           async_capable 'true');
CREATE USER MAPPING FOR CURRENT_USER SERVER :server OPTIONS (user 'cluster', password :'secret');
CREATE FOREIGN TABLE place_:remainder PARTITION OF place FOR VALUES WITH (MODULUS 3, REMAINDER :remainder)
  SERVER :server OPTIONS (table_name 'place');
