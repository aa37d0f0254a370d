#!/usr/bin/env bats
# A whole foreground launch through the stand-in JVM: the argument vector, the
# environment it inherits, the working directory, redirections and failures.

bats_require_minimum_version 1.5.0

setup() {
  cd "$BATS_TEST_TMPDIR"
  export JREHOME=/opt/jre VTX=/opt/app
  unset QV_UNSET CLASSPATH QRB_AUTH_DEBUG
}

# The value the stand-in printed for `key` (first match).
seen() { sed -n "s/^$1=//p" "${2:-/dev/stdin}" | head -n1; }

@test "the JVM gets its words expanded, in order, and the launcher's progress lines" {
  export QV_WORD=expanded
  run --separate-stderr "$QORVEL" -c '/cp/${QV_WORD}.jar' "$FAKE_JVM" one '$QV_WORD' '${QV_WORD}x'
  [ "$status" -eq 0 ]
  [ "$(seen 'arg\[0\]' <<<"$output")" = "$FAKE_JVM" ]
  [ "$(seen 'arg\[1\]' <<<"$output")" = one ]
  [ "$(seen 'arg\[2\]' <<<"$output")" = expanded ]
  [ "$(seen 'arg\[3\]' <<<"$output")" = expandedx ]
  [ "$(seen 'env=CLASSPATH' <<<"$output")" = /cp/expanded.jar ]
  pid=$(seen pid <<<"$output")
  [ "$stderr" = "processid $pid"$'\n'"completed"$'\n'"fake_jvm stderr" ]
}

@test "PATH gets the runtime and installation directories in front" {
  run --separate-stderr env PATH=/usr/bin:/bin "$QORVEL" "$FAKE_JVM"
  [ "$status" -eq 0 ]
  [ "$(seen env=PATH <<<"$output")" = /opt/jre/bin:/opt/app/bin:/opt/app/lib:/usr/bin:/bin ]
}

@test "without PATH neither JREHOME nor VTX is needed and PATH stays unset" {
  run --separate-stderr env -u PATH -u JREHOME -u VTX "$QORVEL" "$FAKE_JVM"
  [ "$status" -eq 0 ]
  ! grep -q '^env=PATH=' <<<"$output"
}

@test "a missing JREHOME or VTX ends the run before anything starts" {
  run --separate-stderr env -u JREHOME "$QORVEL" "$FAKE_JVM"
  [ "$status" -eq 247 ]
  [ "$stderr" = "Unabled to get JREHOME environment variable. This is required for proper operation" ]
  run --separate-stderr env -u VTX "$QORVEL" -d "$FAKE_JVM"
  [ "$status" -eq 246 ]
  [ "$stderr" = "Unabled to get VTX environment variable. This is required for proper operation" ]
  [ "$output" = "" ]
}

@test "-e lines become variables in order and the rest of the input reaches the JVM" {
  export QV_BASE=base
  run --separate-stderr "$QORVEL" -e 3 "$FAKE_JVM" --read-stdin \
    < <(printf 'QV_A=${QV_BASE}-1\r\nQV_B=${QV_A}-2\nQV_C=3\nleft for the JVM\n')
  [ "$status" -eq 0 ]
  [ "$(seen env=QV_A <<<"$output")" = base-1 ]
  [ "$(seen env=QV_B <<<"$output")" = base-1-2 ]
  [ "$(seen env=QV_C <<<"$output")" = 3 ]
  [ "$(seen stdin <<<"$output")" = "left for the JVM" ]
}

@test "-e reads at most 60 lines and stops at the end of input" {
  run --separate-stderr "$QORVEL" -e 100 "$FAKE_JVM" --read-stdin \
    < <(for i in $(seq 1 61); do echo "QV_L$i=$i"; done)
  [ "$status" -eq 0 ]
  [ "$(seen env=QV_L60 <<<"$output")" = 60 ]
  ! grep -q '^env=QV_L61=' <<<"$output"
  [ "$(seen stdin <<<"$output")" = QV_L61=61 ]
  run --separate-stderr "$QORVEL" -e 3 "$FAKE_JVM" < <(printf 'QV_X=1\nQV_Y=2\n')
  [ "$status" -eq 0 ]
  [ "$(seen env=QV_Y <<<"$output")" = 2 ]
}

@test "-e lines that cannot be used are reported and skipped, the others applied" {
  long="QV_LONG=$(head -c 2000 /dev/zero | tr '\0' a)"
  run --separate-stderr "$QORVEL" -e 3 "$FAKE_JVM" \
    < <(printf '%s\nQV_BAD=$QV_UNSET\nQV_OK=yes\n' "$long")
  [ "$status" -eq 0 ]
  ! grep -q '^env=QV_LONG=' <<<"$output"
  ! grep -q '^env=QV_BAD=' <<<"$output"
  [ "$(seen env=QV_OK <<<"$output")" = yes ]
  # The report of the long line is cut to the console's 255 characters.
  [[ "$stderr" == "Unabled to set environment: (QV_LONG=aaa"*'aaaUnabled to set environment: (QV_BAD=$QV_UNSET)'$'\n'* ]]
}

@test "-w is entered and relative redirection files are taken from there" {
  mkdir work
  printf 'from file\n' > work/in.txt
  run --separate-stderr "$QORVEL" -w "$BATS_TEST_TMPDIR/work" -0 in.txt -1 out.txt -2 err.txt \
    "$FAKE_JVM" --read-stdin
  [ "$status" -eq 0 ]
  [ "$(seen cwd work/out.txt)" = "$BATS_TEST_TMPDIR/work" ]
  [ "$(seen stdin work/out.txt)" = "from file" ]
  [ "$(cat work/err.txt)" = "fake_jvm stderr" ]
  [ "$output" = "" ]
}

@test "create mode writes over an existing file without truncating it" {
  head -c 100000 /dev/zero | tr '\0' x > out.txt
  run "$QORVEL" -1 out.txt "$FAKE_JVM"
  [ "$status" -eq 0 ]
  [ "$(stat -c %s out.txt)" -eq 100000 ]
  [ "$(head -c 7 out.txt)" = "arg[0]=" ]
  [ "$(tail -c 3 out.txt)" = xxx ]
}

@test "append mode keeps the old content and adds after it" {
  printf 'old line\n' > out.txt
  run "$QORVEL" -1 'out.txt::append' -2 'out.txt::a' "$FAKE_JVM"
  [ "$status" -eq 0 ]
  [ "$(head -n1 out.txt)" = "old line" ]
  [ "$(sed -n 2p out.txt)" = "arg[0]=$FAKE_JVM" ]
  [ "$(tail -n1 out.txt)" = "fake_jvm stderr" ]
}

@test "new output files get 0664 less the umask" {
  run bash -c "umask 022; '$QORVEL' -1 new.txt '$FAKE_JVM'"
  [ "$status" -eq 0 ]
  [ "$(stat -c %a new.txt)" = 644 ]
}

# Runs one failing launch; checks the status and the console after the progress lines.
expect_failure() {
  local code=$1 text=$2; shift 2
  run --separate-stderr "$QORVEL" "$@"
  [ "$status" -eq "$code" ] || { echo "status $status for $*"; return 1; }
  [[ "$(sed -n 1p <<<"$stderr")" =~ ^processid\ [0-9]+$ ]] || { echo "$stderr"; return 1; }
  [ "$(sed 1,2d <<<"$stderr")" = "$(printf '%b' "$text")" ] || { echo "$stderr"; return 1; }
}

@test "files reach the JVM even when the launcher was started without descriptors 0 and 1" {
  printf 'from file\n' > in.txt
  "$QORVEL" -0 in.txt -1 out.txt "$FAKE_JVM" --read-stdin 0<&- 1>&- 2>/dev/null
  [ "$(seen 'arg\[0\]' out.txt)" = "$FAKE_JVM" ]
  [ "$(seen stdin out.txt)" = "from file" ]
}

@test "redirection failures give their code and message" {
  mkdir adir
  expect_failure 22 'Error accessing stdin redirection file: (nofile)\nError starting JVM, error 22.\nInvalid argument' -0 nofile "$FAKE_JVM"
  expect_failure 22 'Error accessing stdin redirection file: (adir)\nError starting JVM, error 22.\nInvalid argument' -0 adir "$FAKE_JVM"
  expect_failure 2 'Error opening stdout redirection file: (no/dir/out), error 2\nError starting JVM, error 2.\nNo such file or directory' -1 no/dir/out "$FAKE_JVM"
  expect_failure 21 'Error opening stdout redirection file: (adir), error 21\nError starting JVM, error 21.\nIs a directory' -1 adir "$FAKE_JVM"
}

@test "a failure after a redirection is reported into the redirected stream" {
  run --separate-stderr "$QORVEL" -1 out.txt -2 adir/err "$FAKE_JVM"
  [ "$status" -eq 2 ]
  [ -e out.txt ]
  run --separate-stderr "$QORVEL" -2 err.txt no-such-program-qv
  [ "$status" -eq 2 ]
  [ "$stderr" = "$(printf 'processid %s\ncompleted' "$(sed -n 's/^processid //p' <<<"$stderr")")" ]
  [ "$(cat err.txt)" = "Error starting JVM, error 2."$'\n'"No such file or directory" ]
}

@test "command words that cannot be passed on give their code and message" {
  expect_failure 2 'Error starting JVM, error 2.\nNo such file or directory' no-such-program-qv
  expect_failure 22 'Error parsing argument: ($QV_UNSET/x)\nError starting JVM, error 22.\nInvalid argument' "$FAKE_JVM" ok '$QV_UNSET/x'
  expect_failure 22 'Error parsing file argument: ($QV_UNSET)\nError starting JVM, error 22.\nInvalid argument' '$QV_UNSET'
  half=$(head -c 65536 /dev/zero | tr '\0' a)
  expect_failure 7 'Error starting JVM, error 7.\nArgument list too long' "$FAKE_JVM" "$half" "${half}a"
  run "$QORVEL" "$FAKE_JVM" "$half" "$half"
  [ "$status" -eq 0 ]
}

@test "silent mode reports failures by the exit status alone" {
  run --separate-stderr "$QORVEL" -m silent -0 nofile "$FAKE_JVM"
  [ "$status" -eq 22 ]
  [ "$stderr" = "" ]
  run --separate-stderr "$QORVEL" -m silent
  [ "$status" -eq 245 ]
  [ "$stderr" = "" ]
}

@test "tagged console lines carry the progress on standard output" {
  run --separate-stderr "$QORVEL" -o stdout -1 out.txt "$FAKE_JVM"
  [ "$status" -eq 0 ]
  pid=$(seen pid out.txt)
  [ "$output" = "!+0099%processid $pid"$'\n\n'"!+0099%completed" ]
}

@test "the debug log shows the vector, the mode and the environment" {
  run "$QORVEL" -g -l dbg.log -1 out.txt "$FAKE_JVM" 'a b'
  [ "$status" -eq 0 ]
  grep -qxF "CmdLine = ($FAKE_JVM a b )" dbg.log
  grep -qxF "running foreground mode" dbg.log
  grep -qxF "FCN: start_jvm() - UNIX, execute the process" dbg.log
  grep -qxF "env: (VTX=/opt/app)." dbg.log
  grep -qxF "dump_Env() - complete." dbg.log
}
