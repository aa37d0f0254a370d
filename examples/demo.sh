#!/usr/bin/env bash
# A first look at qorvel: a debug-logged option scan with expanded values.
set -u
qorvel=${QORVEL_BIN:?}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export APP_HOME=$work

echo "\$ qorvel -g -l \$APP_HOME/qorvel.log -c '\$APP_HOME/lib' -w '\$APP_HOME' -u demo:staff:secret -1 '\$APP_HOME/out.log::append' java Main"
"$qorvel" -g -l "$work/qorvel.log" -c '$APP_HOME/lib' -w '$APP_HOME' -u demo:staff:secret \
  -1 '$APP_HOME/out.log::append' java Main
echo "exit status: $?"
echo
echo "--- debug log ---"
cat "$work/qorvel.log"
