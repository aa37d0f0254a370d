#!/usr/bin/env bash
# qorvel-props on a file of 100,000 sections, each with a reference to a
# common one: `check` (every finding) and `get` (one value of the last
# section, substituted), each against Python's configparser reading the same
# file and getting the same key (the reference, same run). Prints seconds and
# the ratio (qorvel-props / configparser).
set -euo pipefail
props=$(realpath "${QORVEL_BUILD:?}/props/qorvel-props")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
python3 - "$work/big.properties" <<'PY'
import sys
with open(sys.argv[1], "w") as f:
    f.write("[Base]\nroot=/opt\n")
    for i in range(100000):
        f.write(f"[S{i}]\nhome=!{{value-of:Base.root}}/s{i}\nport={i}\nname=service {i}\n")
PY

seconds() {  # the best of three runs of "$@", in seconds
  local best=
  for _ in 1 2 3; do
    local t0=${EPOCHREALTIME/./}
    "$@" >/dev/null
    local t=$((10#${EPOCHREALTIME/./} - 10#$t0))
    [[ -z $best || $t -lt $best ]] && best=$t
  done
  echo "$best"
}

reference=$(seconds python3 -c 'import configparser, sys
p = configparser.RawConfigParser(); p.read(sys.argv[1]); print(p["S99999"]["home"])' \
  "$work/big.properties")
for run in "check $work/big.properties" "get $work/big.properties S99999 home"; do
  # shellcheck disable=SC2086  # the words of the command
  t=$(seconds "$props" $run)
  awk -v name="${run%% *}" -v a="$t" -v b="$reference" 'BEGIN {
    printf "qorvel-props %-6s 100,000 sections  %6.3f s  configparser %6.3f s  ratio %.2f\n",
      name, a / 1e6, b / 1e6, a / b }'
done
