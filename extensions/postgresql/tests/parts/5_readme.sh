# The examples of the README, one session: each answers what stands behind it.
sql -d postgres -c 'CREATE DATABASE readme'
"$here/tests/examples" "$here/README.md" "$bin/psql" -X -q -d readme
