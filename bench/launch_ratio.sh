#!/usr/bin/env bash
# What qorvel costs on top of the plain tools doing the same work: 500 starts
# of /bin/true through qorvel (class path, working directory, redirections, an
# -e line, the PATH prefix) against env doing the same environment work, and
# `qorvel -d -s` against `setsid -f -w`. The runs are interleaved so drift in
# machine load hits both sides alike. Prints both ratios (qorvel / tool).
set -euo pipefail
qorvel=$(realpath "${QORVEL_BUILD:?}/launcher/qorvel")
runs=${RUNS:-500}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
: > in.txt
export JREHOME=/opt/jre VTX=/opt/app QV_LIB=$work/lib
new_path="$JREHOME/bin:$VTX/bin:$VTX/lib:$PATH"

launch_qorvel() {
  "$qorvel" -m silent -c '$QV_LIB/app.jar' -w "$work" -e 1 -0 in.txt -1 out.txt /bin/true \
    <<<'QV_MODE=${QV_LIB}/mode'
}
launch_env() {
  env -C "$work" CLASSPATH="$QV_LIB/app.jar" QV_MODE="$QV_LIB/mode" PATH="$new_path" \
    /bin/true <in.txt 1<>out.txt <<<'QV_MODE=${QV_LIB}/mode'
}

# Runs `a` and `b` alternately; prints "<a total us> <b total us>".
race() {
  local a=0 b=0 t0 t1 t2
  for ((i = 0; i < runs; i++)); do
    # Microseconds straight from the shell: a $(...) here would cost a fork.
    t0=${EPOCHREALTIME/./}; $1; t1=${EPOCHREALTIME/./}; $2; t2=${EPOCHREALTIME/./}
    a=$((a + 10#$t1 - 10#$t0)); b=$((b + 10#$t2 - 10#$t1))
  done
  echo "$a $b"
}

report() {
  read -r a b <<<"$2"
  awk -v name="$1" -v a="$a" -v b="$b" -v n="$runs" 'BEGIN {
    printf "%-32s qorvel %7.1f us  tool %7.1f us  ratio %.3f\n", name, a / n, b / n, a / b }'
}

race launch_qorvel launch_env >/dev/null  # warm the caches
report "foreground launch vs env" "$(race launch_qorvel launch_env)"
report "daemon -d -s vs setsid -f -w" \
  "$(race "$qorvel -m silent -d -s /bin/true" "setsid -f -w /bin/true")"
