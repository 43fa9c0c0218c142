# Servers of PostgreSQL with the extension, in a folder that goes when the script ends; to be sourced with
# the build folder of the library. Each node listens at a free port of this machine, with a password.

. "$(dirname "${BASH_SOURCE[0]}")/../../extensions/postgresql/tests/cluster.sh" "$1"

declare -A port
secret=$(od -An -N16 -tx1 /dev/urandom | tr -d ' \n')
printf '%s\n' "$secret" > "$work/secret"
chmod a+r "$work/secret"  # in a folder that is the servers' alone
export PGUSER=cluster PGDATABASE=cluster PGPASSWORD=$secret
read -r -a free <<< "$(scripts/free-ports 5)"
for name in coordinator shard_0 shard_1 shard_2 shard_new; do
  port[$name]=${free[0]}
  free=("${free[@]:1}")
done

at() { # NODE, options of psql
  local node=$1
  shift
  "$bin/psql" -X -q -At -v ON_ERROR_STOP=1 -h 127.0.0.1 -p "${port[$node]}" "$@"
}

control() { # NODE, options of pg_ctl
  local node=$1
  shift
  "${as[@]}" env LD_LIBRARY_PATH="$stage/lib" "$bin/pg_ctl" -D "$work/$node" -w -l "$work/$node.log" \
    "$@" > "$work/$node.control" 2>&1 || { cat "$work/$node.control" "$work/$node.log" >&2; return 1; }
}

start_node() {
  control "$1" -o "-p ${port[$1]} -k $work -c listen_addresses=127.0.0.1 -c wal_level=logical \
    -c fsync=off -c shared_buffers=32MB -c max_wal_size=512MB -c extension_destdir=$stage" start
}

make_node() {
  "${as[@]}" "$bin/initdb" -D "$work/$1" -U cluster -E UTF8 --no-locale --no-sync --auth=scram-sha-256 \
    --pwfile="$work/secret" > "$work/$1.initdb" 2>&1 || { cat "$work/$1.initdb" >&2; return 1; }
  start_node "$1"
  at "$1" -d postgres -c 'CREATE DATABASE cluster'
  at "$1" -c 'CREATE EXTENSION ot95'
}

# Background jobs, one after the other: the first that failed ends the script.
wait_for() {
  local job
  for job in "$@"; do wait "$job"; done
}

stop_nodes() {
  local node
  for node in "${!port[@]}"; do
    [[ ! -e $work/$node/postmaster.pid ]] || control "$node" -m immediate stop || true
  done
  rm -rf "$work"
}
trap stop_nodes EXIT
trap 'exit 1' INT TERM HUP
