#!/usr/bin/env bats
# A whole launch through the stand-in JVM: the argument vector, the environment
# it inherits, the working directory, redirections and failures; then the daemon
# start as seen from outside: the parent's exit, the child's session and umask,
# and the refusals that stop the start before the fork.

load ../lib/common

setup() { common_setup; }

# The value the stand-in printed for `key` (first match).
# Its whole argument vector, the words joined by "|".
jvm_words() { sed -n 's/^arg\[[0-9]*\]=//p' <<<"$output" | paste -sd'|'; }

@test "the JVM gets its words expanded, in order, the launcher's progress lines and a debug log" {
  export QV_WORD=expanded
  run --separate-stderr "$QORVEL" -g -l dbg.log -c '/cp/${QV_WORD}.jar' "$FAKE_JVM" one '$QV_WORD' '${QV_WORD}x' 'a b'
  [ "$status" -eq 0 ]
  eq "$(jvm_words)" "$FAKE_JVM|one|expanded|expandedx|a b"
  [ "$(seen 'env=CLASSPATH' <<<"$output")" = /cp/expanded.jar ]
  pid=$(seen pid <<<"$output")
  [ "$stderr" = "processid $pid"$'\n'"completed"$'\n'"fake_jvm stderr" ]
  # The debug log shows the mode, the environment and the vector.
  grep -qxF "running foreground mode" dbg.log
  grep -qxF "env: (VTX=/opt/app)." dbg.log
  grep -qxF "FCN: start_jvm() - UNIX, execute the process" dbg.log
  grep -qxF "CmdLine = ($FAKE_JVM one expanded expandedx a b )" dbg.log
}

@test "a set PATH gets the runtime and installation directories in front, which must be usable" {
  run --separate-stderr env PATH=/usr/bin:/bin "$QORVEL" "$FAKE_JVM"
  [ "$(seen env=PATH <<<"$output")" = /opt/jre/bin:/opt/app/bin:/opt/app/lib:/usr/bin:/bin ]
  run --separate-stderr env PATH= JREHOME= VTX= "$QORVEL" "$FAKE_JVM"
  [ "$(seen env=PATH <<<"$output")" = /bin:/bin:/lib: ]
  # Without PATH neither JREHOME nor VTX is needed and PATH stays unset.
  run --separate-stderr env -u PATH -u JREHOME -u VTX "$QORVEL" "$FAKE_JVM"
  [ "$status" -eq 0 ]
  ! grep -q '^env=PATH=' <<<"$output" || false
  # With it, a missing or overlong one ends the run before anything starts.
  run --separate-stderr env -u JREHOME "$QORVEL" "$FAKE_JVM"
  eq "$status:$stderr" "247:Unabled to get JREHOME environment variable. This is required for proper operation
Hint: JREHOME names the Java runtime's directory, the one holding bin/java; with PATH unset neither JREHOME nor VTX is needed"
  run --separate-stderr env -u VTX "$QORVEL" -d "$FAKE_JVM"
  [ "$status:$(sed -n 1p <<<"$stderr")" = "246:Unabled to get VTX environment variable. This is required for proper operation" ]
  run --separate-stderr env JREHOME="/$(head -c 1100 /dev/zero | tr '\0' j)" "$QORVEL" "$FAKE_JVM"
  eq "$status:$stderr" "247:Unable to add JAVA and VTX directories to PATH: JREHOME is too long"
  eq "$output" ""
}

@test "-e: up to 60 lines become variables in order, unusable ones are reported, the rest is the JVM's" {
  export QV_BASE=base
  long="QV_LONG=$(head -c 2000 /dev/zero | tr '\0' a)"
  run --separate-stderr "$QORVEL" -e 100 "$FAKE_JVM" --read-stdin < <(
    printf 'QV_A=${QV_BASE}-1\r\nQV_B=${QV_A}-2\n%s\nQV_BAD=$QV_UNSET\n' "$long"
    for i in $(seq 5 61); do echo "QV_L$i=$i"; done)
  [ "$status" -eq 0 ]
  [ "$(seen env=QV_A <<<"$output")/$(seen env=QV_B <<<"$output")" = base-1/base-1-2 ]
  [ "$(seen env=QV_L60 <<<"$output")" = 60 ]
  ! grep -q -e '^env=QV_LONG=' -e '^env=QV_BAD=' -e '^env=QV_L61=' <<<"$output" || false
  [ "$(seen stdin <<<"$output")" = QV_L61=61 ]
  # Reports name the variable, never its value.
  [ "$(sed -n 1,2p <<<"$stderr")" = "Unabled to set environment: (QV_LONG=<value not shown>)"$'\n'"Unabled to set environment: (QV_BAD=<value not shown>)" ]
  run --separate-stderr "$QORVEL" -e 3 "$FAKE_JVM" --read-stdin < <(printf 'QV_X=1\nQV_Y=2\n')
  [ "$(seen env=QV_Y <<<"$output")" = 2 ]
}

@test "-e: a refused line changes nothing, values stay out of the debug log, a cut report keeps its line end" {
  export QV_BIG=$(head -c 1500 /dev/zero | tr '\0' b)
  name=$(head -c 300 /dev/zero | tr '\0' N)
  run --separate-stderr "$QORVEL" -g -l dbg.log -e 1 -e 1 -e 1 "$FAKE_JVM" < <(
    printf 'QV_A=secret-a\nQV_B=${QV_BIG}\n%s=$QV_UNSET\n' "$name")
  [ "$status" -eq 0 ]
  [ "$(seen env=QV_A <<<"$output")" = secret-a ]
  ! grep -q '^env=QV_B=' <<<"$output" || false
  [ "$(sed -n 1p <<<"$stderr")" = "Unabled to set environment: (QV_B=<value not shown>)" ]
  [ "$(sed -n 2p <<<"$stderr" | wc -c)" -eq 255 ]  # cut to 255 characters, line end included
  [ "$(sed -n 3p <<<"$stderr")" = "processid $(seen pid <<<"$output")" ]
  grep -qxF "env: (QV_A=<value not shown>)." dbg.log
  ! grep -q secret-a dbg.log || false
}

@test "-w is entered, and files from there reach the JVM even without descriptors 0, 1 and 2" {
  mkdir work
  printf 'from file\n' > work/in.txt
  export QV_WORK="$BATS_TEST_TMPDIR/work" QV_OUT=out
  "$QORVEL" -w '$QV_WORK' --pidfile=p.pid -0 in.txt -1 '${QV_OUT}.txt' -2 err.txt "$FAKE_JVM" --read-stdin 0<&- 1>&- 2>&-
  eq "$(seen 'arg\[0\]' work/out.txt)" "$FAKE_JVM"
  eq "$(seen cwd work/out.txt)" "$BATS_TEST_TMPDIR/work"
  eq "$(seen stdin work/out.txt)" "from file"
  eq "$(cat work/err.txt)" "fake_jvm stderr"
  [ -e p.pid ]  # named from the launch directory
  # One that cannot be entered stops the launch before the pid file (which
  # could not be made either) or the daemon child.
  touch afile
  while IFS='|' read -r code words text; do
    run --separate-stderr "$QORVEL" --pidfile=nodir/p2.pid $words "$FAKE_JVM"
    [ "$status:$output:$stderr" = "$code::$(printf '%b' "$text")" ] ||
      { echo "$words: $status $stderr"; false; }
  done <<'CASES'
2|-d -w nodir|Cannot enter working directory (nodir)\nNo such file or directory
20|--dry-run -w afile|Cannot enter working directory (afile)\nNot a directory
CASES
}

@test "an output file is written over untruncated, appended to after '::', made 0664 less the umask, or reached through the caller's own link" {
  head -c 100000 /dev/zero | tr '\0' x > over.txt
  run bash -c "umask 002; '$QORVEL' -1 over.txt -2 new.txt '$FAKE_JVM'"
  [ "$status" -eq 0 ]
  [ "$(stat -c %s over.txt)" -eq 100000 ]
  eq "$(head -c 7 over.txt)$(tail -c 3 over.txt)" "arg[0]=xxx"
  eq "$(stat -c %a new.txt)" 664
  # What follows "::" is never expanded, and append sticks to a later -2 without it.
  printf 'old line\n' > out.txt
  run "$QORVEL" -1 'out.txt::append' -2 'other.txt::$QV_UNSET' -2 out.txt "$FAKE_JVM"
  [ "$status" -eq 0 ]
  eq "$(sed -n '1p;2p;$p' out.txt | paste -sd'|')" "old line|arg[0]=$FAKE_JVM|fake_jvm stderr"
  [ ! -e other.txt ]
  mkdir real && ln -s "$PWD/real/abs.txt" abs.txt && ln -s real/rel.txt rel.txt
  "$QORVEL" -1 abs.txt -2 rel.txt "$FAKE_JVM"
  eq "$(head -n1 real/abs.txt)|$(cat real/rel.txt)" "arg[0]=$FAKE_JVM|fake_jvm stderr"
}

# Runs one failing launch; checks the status and the console after the progress lines.
expect_failure() {
  local code=$1 text=$2; shift 2
  run --separate-stderr "$QORVEL" "$@"
  [ "$status" -eq "$code" ] || { echo "status $status for $*"; return 1; }
  [[ "$(sed -n 1p <<<"$stderr")" =~ ^processid\ [0-9]+$ ]] || { echo "$stderr"; return 1; }
  [ "$(sed 1,2d <<<"$stderr")" = "$(printf '%b' "$text")" ] || { echo "$stderr"; return 1; }
}

@test "launch failures give their code and message, in the redirected stream once there is one" {
  mkdir adir
  expect_failure 22 'Error accessing stdin redirection file: (nofile)\nError starting JVM, error 22.\nInvalid argument' -0 nofile "$FAKE_JVM"
  expect_failure 22 'Error accessing stdin redirection file: (adir)\nError starting JVM, error 22.\nInvalid argument' -0 adir "$FAKE_JVM"
  expect_failure 2 'Error opening stdout redirection file: (no/dir/out), error 2\nError starting JVM, error 2.\nNo such file or directory' -1 no/dir/out "$FAKE_JVM"
  expect_failure 21 'Error opening stdout redirection file: (adir), error 21\nError starting JVM, error 21.\nIs a directory' -1 adir "$FAKE_JVM"
  expect_failure 2 'Error starting JVM, error 2.\nNo such file or directory' no-such-program-qv
  expect_failure 22 'Error parsing argument: ($QV_UNSET/x)\nError starting JVM, error 22.\nInvalid argument' "$FAKE_JVM" ok '$QV_UNSET/x'
  expect_failure 22 'Error parsing file argument: ($QV_UNSET)\nError starting JVM, error 22.\nInvalid argument' '$QV_UNSET'
  half=$(head -c 65536 /dev/zero | tr '\0' a)
  expect_failure 7 'Error starting JVM, error 7.\nArgument list too long' "$FAKE_JVM" "$half" "${half}a"
  run "$QORVEL" "$FAKE_JVM" "$half" "$half"
  [ "$status" -eq 0 ]
  [ "$(seen 'arg\[2\]' <<<"$output")" = "$half" ]  # a word without a reference goes whole
  # A failure after a redirection is reported into the redirected stream.
  run --separate-stderr "$QORVEL" -1 out.txt -2 nodir/err "$FAKE_JVM"
  [ "$status" -eq 2 ]
  [ -e out.txt ]
  # A failed exec reaches the caller's console too, naming the program; every line ends.
  run --separate-stderr "$QORVEL" -2 err.txt no-such-program-qv
  [ "$status:$(sed 1,2d <<<"$stderr")" = 2:"Error starting JVM (no-such-program-qv), error 2."$'\n'"No such file or directory" ]
  [ "$(cat err.txt)" = "Error starting JVM, error 2."$'\n'"No such file or directory" ] && [ -z "$(tail -c 1 err.txt)" ]
}

@test "silent mode reports failures by the exit status alone; -o stdout tags the progress lines" {
  run --separate-stderr "$QORVEL" -m silent -0 nofile "$FAKE_JVM"
  [ "$status:$stderr" = 22: ]
  run --separate-stderr "$QORVEL" -m silent
  [ "$status:$stderr" = 245: ]
  run --separate-stderr "$QORVEL" -o stdout -1 out.txt "$FAKE_JVM"
  [ "$status" -eq 0 ]
  [ "$output" = "!+0099%processid $(seen pid out.txt)"$'\n\n'"!+0099%completed" ]
}

@test "-d detaches at once into a new session with the caller's umask; without -d, -s and -r change nothing" {
  run --separate-stderr bash -c "umask 002; '$QORVEL' -d -1 out.txt '$FAKE_JVM' --exit 3"
  [ "$status" -eq 0 ]
  wait_for out.txt '^groups='  # the detached child's last line
  eq "$(seen sid out.txt)/$(seen umask out.txt)/$(stat -c %a out.txt)" "$(seen pid out.txt)/0002/664"
  [ "$(seen ppid out.txt)" != "$$" ]
  run --separate-stderr bash -c "umask 002; '$QORVEL' -s -r 077 '$FAKE_JVM' --exit 4"
  [ "$status" -eq 4 ]
  eq "$(seen umask <<<"$output")" 0002
  [ "$(seen sid <<<"$output")" != "$(seen pid <<<"$output")" ]
}

@test "-s makes the parent wait and exit with the child's status, as the debug log follows" {
  run --separate-stderr "$QORVEL" -g -l dbg.log -d -s -r 0027 -1 out.txt "$FAKE_JVM" --exit 3
  [ "$status" -eq 3 ]
  [ "$(seen umask out.txt)" = 0027 ]
  [ "$(stat -c %a out.txt)" = 640 ]
  eq "$(seen sid out.txt)" "$(seen pid out.txt)"
  grep -qxF "FCN: child_start() - Start process as a background daemon" dbg.log
  grep -qxF "Waiting for process to exit..." dbg.log
  grep -qxF "Process has exited, rc = 768, exit status = 3" dbg.log
  grep -qxF "running daemon mode" dbg.log
  ! grep -q "Cannot become a child subreaper" dbg.log || false
  # Without a command the daemon child says so and exits 245.
  run --separate-stderr "$QORVEL" -d -s
  eq "$status:$stderr" "245:Incomplete argument list. No action taken"
}

@test "a group that is unknown or the superuser's stops the start with 9, an unknown user with 67" {
  while IFS='|' read -r spec code console; do
    run --separate-stderr "$QORVEL" -d -u "$spec" "$FAKE_JVM"
    [ "$status:$output" = "$code:" ] || { echo "$spec: $status"; false; }
    [ "$stderr" = "$(printf '%b' "${console}")" ] || { echo "$spec: $stderr"; false; }
  done <<'CASES'
:root|9|Group root is the superuser's: never switched to\nError attempting to start as a daemon, errno 9\nBad file descriptor
:#0|9|Group #0 is the superuser's: never switched to\nError attempting to start as a daemon, errno 9\nBad file descriptor
:#10x1|9|bad group id #10x1\nError attempting to start as a daemon, errno 9\nBad file descriptor
:q|9|bad group name q\nError attempting to start as a daemon, errno 9\nBad file descriptor
#10x1|67|bad user id #10x1\nUnknown user #10x1: nothing started\nError attempting to start as a daemon, errno 67
no-such-user-qv|67|bad user name no-such-user-qv\nUnknown user no-such-user-qv: nothing started\nError attempting to start as a daemon, errno 67
CASES
}
