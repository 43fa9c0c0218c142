# A throw-away server for tests and measurements, to be sourced. It needs nothing of the system but the
# server's programs: the extension is found through extension_destdir, connections go by a socket in the
# folder of the server, and all of it goes when the script ends.
#   $1  the build folder of the library
# Sets work, stage; PGHOST, PGUSER and PGDATABASE for the programs of the server.

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
library=$(realpath "$1")
pg_config=${PG_CONFIG:-/usr/lib/postgresql/15/bin/pg_config}
bin=$("$pg_config" --bindir)
work=$(mktemp -d)
stage=$work/stage
as=()
if [[ $(id -u) -eq 0 ]]; then  # the server refuses to run as root
  chown postgres "$work"
  as=(runuser -u postgres --)
fi
export PGHOST=$work PGUSER=tester PGDATABASE=tests PGOPTIONS=
unset PGPORT PGDATA

# Quiet unless it fails.
silently() { "$@" > "$work/log" 2>&1 || { cat "$work/log" >&2; return 1; }; }

build_extension() {
  local built=$library/postgresql
  local make=(make -s -C "$built" -f "$here/Makefile" "VPATH=$here" "PG_CONFIG=$pg_config" "OT95=$library")
  mkdir -p "$built/src"
  silently "${make[@]}"
  silently "${make[@]}" "DESTDIR=$stage" install
  mkdir -p "$stage/lib"
  cp -a "$library"/lib/libot95*.so* "$stage/lib"
  chmod -R a+rX "$work"
}

# start NAME LIBRARIES [OPTION...]: the server of a data folder, made where there is none, with the
# library that LIBRARIES holds. One that runs is stopped.
start() {
  local data=$work/$1 libraries=$2
  shift 2
  stop
  if [[ ! -d $data ]]; then
    silently "${as[@]}" "$bin/initdb" -D "$data" -U tester -A trust -E UTF8 --no-locale --no-sync
  fi
  silently "${as[@]}" env LD_LIBRARY_PATH="$libraries" "$bin/pg_ctl" -D "$data" -w -l "$data.log" -o \
    "-k $work -c listen_addresses= -c extension_destdir=$stage -c fsync=off $*" start
  running=$data
}

stop() {
  [[ -n ${running:-} ]] || return 0
  silently "${as[@]}" "$bin/pg_ctl" -D "$running" -w -m fast stop
  running=
}

sql() { "$bin/psql" -X -q -v ON_ERROR_STOP=1 -At "$@"; }

trap 'stop || true; rm -rf "$work"' EXIT
