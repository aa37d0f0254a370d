# Shared by every bats suite: the variables a suite runs with, a fresh
# directory per test, and assertions that say what they saw.

bats_require_minimum_version 1.5.0

# The programs under test and the stand-in JVM, as CTest passes them (see the
# README for running one file by hand). A missing one stops the suite with
# its name instead of a "command not found" in every test.
for var in QORVEL QORVEL_PROPS FAKE_JVM QORVEL_SOURCE_DIR; do
  if [ -z "${!var:-}" ]; then
    echo "$var is not set: run the suites through ctest, or as the README shows" >&2
    exit 1
  fi
done
unset var

# Each test in its own directory, with the fixed layout the stand-in reports.
common_setup() {
  cd "$BATS_TEST_TMPDIR" || return
  export JREHOME=/opt/jre VTX=/opt/app
  unset QV_UNSET CLASSPATH QRB_AUTH_DEBUG QRB_AUTH_DEBUG_FILE NOTIFY_SOCKET
}

# The value of NAME=value line $1 in file $2 (or standard input).
seen() { sed -n "s/^$1=//p" "${2:-/dev/stdin}" | head -n1; }

# Waits up to five seconds until file $1 has a line matching $2.
wait_for() {
  for _ in $(seq 1 100); do grep -q "$2" "$1" 2>/dev/null && return; sleep 0.05; done
  false
}

# eq ACTUAL EXPECTED: fails showing both, where a bare [ ... ] shows only itself.
eq() {
  [ "$1" = "$2" ] && return
  printf 'expected: %s\nactual:   %s\n' "$2" "$1" >&2
  return 1
}
