#!/usr/bin/env bats
# The launcher beside a supervisor or as a container's entrypoint: --stop and
# --status on the pid file, --rlimit, orphans reaped by the waiting parent,
# and readiness sent to NOTIFY_SOCKET.

load ../lib/common

setup() { common_setup; }


# The children of process $1, and those of them that are zombies.
children() { cat /proc/"$1"/task/*/children 2>/dev/null; }
zombies() { for pid in $(children "$1"); do sed -n 's/.*) Z .*/'"$pid"'/p' /proc/"$pid"/stat; done; }
# Whether process $1 runs: there and no zombie (which a container's init may never reap).
running() { [ -e /proc/"$1" ] && ! grep -q ') Z ' /proc/"$1"/stat 2>/dev/null; }

@test "--stop: TERM ends the JVM's group, KILL follows --timeout, nothing running is no failure" {
  "$QORVEL" -d -s --pidfile=app.pid -1 out.txt "$FAKE_JVM" --wait-signals & parent=$!
  wait_for out.txt '^ready'
  run --separate-stderr "$QORVEL" --stop --pidfile=app.pid
  eq "$status:$stderr" "0:Stopped pid $(seen pid out.txt) (SIGTERM)"
  status=0; wait $parent || status=$?
  [ "$status" -eq 143 ] && grep -qx 'signal=15' out.txt && [ ! -e app.pid ]
  # A JVM deaf to TERM, with a child of its group that is too: both get KILL.
  "$QORVEL" -d --pidfile=app.pid sh -c 'trap "" TERM; sleep 60 & echo ~$! > child; wait'
  wait_for child .
  SECONDS=0
  run --separate-stderr "$QORVEL" --stop --pidfile app.pid --timeout=2 --signal=term
  [ "$status" -eq 0 ] && ((SECONDS >= 2)) && [ ! -e app.pid ]
  [[ "$stderr" == *"still runs 2 s after SIGTERM: sending SIGKILL"*"(SIGKILL)" ]]
  ! running "$(cat child)" || false
  # One whose parent never reaps it has stopped once it is a zombie.
  perl -e 'my $pid = fork // die; exec @ARGV if !$pid;
    open my $f, ">", "app.pid"; print $f "$pid\n"; close $f; sleep 30' sleep 60 & keeper=$!
  wait_for app.pid . && pid=$(cat app.pid)
  SECONDS=0
  run --separate-stderr "$QORVEL" --stop --pidfile=app.pid --timeout=5
  eq "$status:$stderr" "0:Stopped pid $pid (SIGTERM)"
  ((SECONDS < 5))
  kill $keeper
  run --separate-stderr "$QORVEL" --stop --pidfile=app.pid
  eq "$status:$stderr" "0:Nothing running: no pid file ($PWD/app.pid)"
  echo 99999999 > app.pid
  run --separate-stderr "$QORVEL" --stop --pidfile=app.pid
  eq "$status:$stderr" "0:Nothing running: pid file ($PWD/app.pid) names no running process"
  ln -sf /etc/hostname app.pid  # a pid file is never read through a link
  run --separate-stderr "$QORVEL" --stop --pidfile=app.pid
  eq "$status:$stderr" "1:Unable to read pid file ($PWD/app.pid)"$'\n'"Too many levels of symbolic links"
}

@test "--status: 0 running with its pid, 1 for a stale file or a reused id, 3 without one, 4 unreadable" {
  while IFS='|' read -r content code message; do
    rm -f app.pid && eval "$content"
    run --separate-stderr "$QORVEL" --status --pidfile=app.pid
    message=$(eval "echo \"$message\"")
    [ "$status:$output" = "$code:$message" ] || { echo "$content: $status $output"; false; }
  done <<'CASES'
echo $$ > app.pid|0|running (pid $$)
echo 99999999 > app.pid|1|not running: pid file ($PWD/app.pid) names no running process
echo $$ > app.pid; touch -d '1 hour ago' app.pid|1|not running: pid file ($PWD/app.pid) names no running process
:|3|not running: no pid file ($PWD/app.pid)
ln -s /etc/hostname app.pid|4|
CASES
}

@test "--rlimit reaches the JVM; bad values and options foreign to --stop and --status are bad options" {
  run --separate-stderr "$QORVEL" --rlimit=nofile=200:300 --rlimit=core=0 "$FAKE_JVM"
  [ "$status:$(seen nofile <<<"$output")" = 0:200:300 ]
  run --separate-stderr "$QORVEL" --dry-run --rlimit=nofile=200 --rlimit core=unlimited:unlimited "$FAKE_JVM"
  [ "$status:$(grep ^limits: <<<"$output")" = "0:limits: nofile=200 core=unlimited:unlimited" ]
  run --separate-stderr "$QORVEL" --rlimit=nofile=$(($(ulimit -Hn) + 1)) "$FAKE_JVM"
  [ "$status:$(sed -n 1p <<<"$stderr")" = "22:Unable to set resource limit nofile to $(($(ulimit -Hn) + 1)):$(ulimit -Hn)" ]
  while IFS='|' read -r words message; do
    run --separate-stderr "$QORVEL" $words "$FAKE_JVM"
    message=$(eval "echo \"$message\"")
    [ "$status:$(sed -n 1p <<<"$stderr")" = "248:$message" ] || { echo "$words: $status $stderr"; false; }
  done <<'CASES'
--rlimit=nofile=2:1|Unable to set --rlimit option, the soft limit is above the hard one: (nofile=2:1)
--rlimit=nofile=1k|Unable to set --rlimit option, a limit is not a number or unlimited: (nofile=1k)
--stop --pidfile=app.pid|$QORVEL: --stop takes no command: ($FAKE_JVM)
--status --pidfile=app.pid --timeout=1 --|$QORVEL: --status takes no --timeout
--timeout=5|$QORVEL: --timeout and --signal are for --stop only
--stop --pidfile=app.pid --signal=NOPE|Unable to set --signal option, not a signal name kill -l lists: (NOPE)
CASES
}

@test "the waiting parent reaps orphans as PID 1 and as their subreaper, and keeps its child's status" {
  ns=(unshare --pid --fork --mount-proc)
  [ "$(id -u)" -eq 0 ] || ns=(unshare --user --map-root-user --pid --fork --mount-proc)
  "${ns[@]}" "$QORVEL" -d -s sh -c '(sleep 1 &); sleep 3; exit 3' 2>/dev/null & outer=$!
  sleep 2
  qorvel=$(children $outer)
  [ -n "$qorvel" ] && [ -n "$(children "$qorvel")" ] && [ -z "$(zombies "$qorvel")" ]
  status=0; wait $outer || status=$?
  [ "$status" -eq 3 ]
  "$QORVEL" -d -s bash -c '( (sleep 1; grep PPid /proc/~$BASHPID/status > orphan.txt) & ); sleep 2' & parent=$!
  status=0; wait $parent || status=$?
  [ "$status:$(cat orphan.txt)" = "0:PPid:"$'\t'"$parent" ]
}

@test "NOTIFY_SOCKET gets MAINPID of the JVM and READY=1 once it runs, at a path or an abstract name; nothing when the start fails" {
  for socket in "$PWD/notify.sock" "@qv-notify-$$"; do
    rm -f bound notify.txt out.txt
    python3 -c 'import socket, sys
name = sys.argv[1]
listener = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
listener.bind("\0" + name[1:] if name[0] == "@" else name)
open("bound", "w").write("bound\n")
listener.settimeout(20)
message = listener.recv(4096).decode()
pid = dict(line.split("=", 1) for line in message.split())["MAINPID"]
print(message + "program=" + open(f"/proc/{pid}/cmdline").read().split("\0")[1])' "$socket" > notify.txt & listener=$!
    wait_for bound bound
    NOTIFY_SOCKET=$socket "$QORVEL" -d -s -1 out.txt "$FAKE_JVM" --wait-signals & parent=$!
    wait $listener
    wait_for out.txt '^ready'
    kill -TERM $parent
    wait $parent || true
    [ "$(cat notify.txt)" = "MAINPID=$(seen pid out.txt)"$'\n'"READY=1"$'\n'"program=$FAKE_JVM" ]
  done
  # A start that failed is never ready: the first datagram is the test's own.
  rm -f bound
  python3 -c 'import socket, sys
listener = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
listener.bind(sys.argv[1])
open("bound", "w").write("bound\n")
listener.settimeout(20)
print(listener.recv(4096).decode())' "$PWD/failed.sock" > notify.txt & listener=$!
  wait_for bound bound
  run env NOTIFY_SOCKET="$PWD/failed.sock" "$QORVEL" -d -s no-such-program-qv
  [ "$status" -eq 2 ]
  python3 -c 'import socket, sys
socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM).sendto(b"end", sys.argv[1])' "$PWD/failed.sock"
  wait $listener
  eq "$(cat notify.txt)" end
}
