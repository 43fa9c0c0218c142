# The files of a server serve another one: a copy of its folder, with the versions of its orders.
stop
"${as[@]}" cp -r "$work/data" "$work/copied"
start copied "$stage/lib"
sql -d source -c "SELECT count(*) FROM ot_check_orders(); SET enable_seqscan = off; SELECT name FROM city WHERE name =~ 'san mar?no'" |
  diff - <(printf '0\nSan Marino\n')
stop
# As pg_upgrade takes them into a server that was made anew.
"${as[@]}" "$bin/initdb" -D "$work/upgraded" -U tester -A trust -E UTF8 --no-locale --no-sync > "$work/log" || { cat "$work/log"; exit 1; }
mkdir "$work/upgrading"
[[ ${#as[@]} -eq 0 ]] || chown postgres "$work/upgrading"
silently "${as[@]}" env -C "$work/upgrading" LD_LIBRARY_PATH="$stage/lib" "$bin/pg_upgrade" -U tester -b "$bin" -B "$bin" \
  -d "$work/copied" -D "$work/upgraded" -s "$work" \
  -o "-c extension_destdir=$stage" -O "-c extension_destdir=$stage" || { cat "$work"/upgraded/pg_upgrade_output.d/*/log/*.log; exit 1; }
start upgraded "$stage/lib"
sql -d source -c "SELECT count(*) FROM ot_check_orders(); SELECT count(*) FROM ot_index_orders; SET enable_seqscan = off; SELECT name FROM city WHERE name =~ 'san mar?no'" |
  diff - <(printf '0\n3\nSan Marino\n')
stop
