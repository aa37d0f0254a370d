#!/usr/bin/env bats
# The daemon start as seen from outside: the parent's exit, the child's
# session and umask, and the refusals that stop the start before the fork.

bats_require_minimum_version 1.5.0

setup() {
  cd "$BATS_TEST_TMPDIR"
  export JREHOME=/opt/jre VTX=/opt/app
  unset QRB_AUTH_DEBUG
}

seen() { sed -n "s/^$1=//p" "${2:-/dev/stdin}" | head -n1; }

# Waits until the detached child has written its last line.
wait_for() { for _ in $(seq 1 100); do grep -q "$2" "$1" 2>/dev/null && return 0; sleep 0.05; done; false; }

@test "-d detaches: the parent exits 0 at once, the child leads a new session with umask 0" {
  run --separate-stderr "$QORVEL" -d -1 out.txt "$FAKE_JVM" --exit 3
  [ "$status" -eq 0 ]
  wait_for out.txt '^groups='
  [ "$(seen sid out.txt)" = "$(seen pid out.txt)" ]
  [ "$(seen umask out.txt)" = 0000 ]
  [ "$(seen ppid out.txt)" != "$$" ]
}

@test "-s makes the parent wait and exit with the child's status" {
  run --separate-stderr "$QORVEL" -d -s -r 027 -1 out.txt "$FAKE_JVM" --exit 3
  [ "$status" -eq 3 ]
  [ "$(seen umask out.txt)" = 0027 ]
  [ "$(stat -c %a out.txt)" = 640 ]
  [ "$(seen sid out.txt)" = "$(seen pid out.txt)" ]
}

@test "-s and -r change nothing without a daemon start" {
  run --separate-stderr bash -c "umask 022; '$QORVEL' -s -r 077 '$FAKE_JVM' --exit 4"
  [ "$status" -eq 4 ]
  [ "$(seen umask <<<"$output")" = 0022 ]
  [ "$(seen sid <<<"$output")" != "$(seen pid <<<"$output")" ]
}

@test "without a command the daemon child reports it and exits 245" {
  run --separate-stderr "$QORVEL" -d -s
  [ "$status" -eq 245 ]
  [ "$stderr" = "Incomplete argument list. No action taken" ]
}

@test "the debug log follows the daemon start and the wait" {
  run "$QORVEL" -g -l dbg.log -d -s -1 out.txt "$FAKE_JVM" --exit 3
  [ "$status" -eq 3 ]
  grep -qxF "FCN: child_start() - Start process as a background daemon" dbg.log
  grep -qxF "Waiting for process to exit..." dbg.log
  grep -qxF "Process has exited, rc = 768, exit status = 3" dbg.log
  grep -qxF "running daemon mode" dbg.log
}

@test "a group that is unknown or the superuser's stops the start with 9" {
  while IFS='|' read -r name spec console; do
    run --separate-stderr "$QORVEL" -d -u "$spec" "$FAKE_JVM"
    [ "$status" -eq 9 ] || { echo "$name: $status"; false; }
    [ "$stderr" = "$(printf '%b' "${console}Error attempting to start as a daemon, errno 9\nBad file descriptor")" ] ||
      { echo "$name: $stderr"; false; }
  done <<'CASES'
root_group_by_name|:root|
root_group_by_number|:#0|
number_with_junk|:#10x1|bad group id #10x1\n
unknown_name|:no-such-group-qv|bad group name no-such-group-qv\n
CASES
}

@test "a user that cannot be resolved is reported and the JVM runs under our own identity" {
  run --separate-stderr "$QORVEL" -s -u '#10x1' "$FAKE_JVM"
  [ "$status" -eq 0 ]
  [ "$(sed -n 1p <<<"$stderr")" = "bad user id #10x1" ]
  [ "$(seen uid <<<"$output")" = "$(id -u)" ]
  run --separate-stderr "$QORVEL" -s -u no-such-user-qv "$FAKE_JVM"
  [ "$status" -eq 0 ]
  [ "$(sed -n 1p <<<"$stderr")" = "bad user name no-such-user-qv" ]
  [ "$(seen uid <<<"$output")" = "$(id -u)" ]
}

@test "a password for a user without an account is refused with 5, silent mode included" {
  QRB_AUTH_DEBUG= run --separate-stderr "$QORVEL" -m silent -d -u 'no-such-user-qv::secret' "$FAKE_JVM"
  [ "$status" -eq 5 ]
  [ "$stderr" = "ERROR validating password:Cannot access password entry." ]
  [ "$(cat authdbg.log)" = "IN qorvel - ERROR validating password: Cannot access password entry." ]
  ! grep -q secret authdbg.log
}
