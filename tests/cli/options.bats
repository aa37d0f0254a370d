#!/usr/bin/env bats
# The option scan as a user meets it: exit status, exact console bytes, and the
# debug log of -g with its banner, argument dump (the -u value masked) and trace.

load ../lib/common

setup() {
  common_setup
  unset JREHOME
}

usage_text() {
  printf '%s\n\n' "Use qorvel to setup a working environment prior to invoking the JVM"
  printf '%s\n' "Usage: qorvel -r umask -d -s -u [User:Group:Password] -w [Start in Directory] -c classpath -o [stdout|stderr] -e [envCount] -m [silent|verbose] -a [property-file::section] -x [property-file::section] -0 [stdin file] -1 [stdout file] -2 [stderr file] ..."
}

# Without arguments the usage exits 255. A bad option is reported (by the parser
# when "@" stands for the program), but not a ':' letter; the scan goes on, and
# the usage ends the run with 248.
@test "no argument or a bad option shows the usage on standard error" {
  while IFS='|' read -r code words reported; do
    run --separate-stderr "$QORVEL" $words
    expected=$(usage_text)
    [ -z "$reported" ] || expected="${reported/#@/$QORVEL}"$'\n'"$expected"
    [ "$status:$output" = "$code:" ] && [ "$stderr" = "$expected" ] || { echo "$words: $stderr"; false; }
  done <<'CASES'
255||
248|-z -m silent java Main|@: illegal option -- z
248|-d: java Main|
248|-c|@: option requires an argument -- c
248|-c -d java Main|@: option requires an argument -- c
248|-r 1000 -d java Main|Unable to set -r <umask> option, not an octal mask up to 0777: (1000)
248|-r 00007 -d java Main|Unable to set -r <umask> option, not an octal mask up to 0777: (00007)
CASES
  # A failing option ends the run at once, with its own code instead.
  run --separate-stderr "$QORVEL" -z -w '$QV_UNSET/x' java Main
  [ "$status:$stderr" = 253:"$QORVEL: illegal option -- z"$'\n'"Unabled to set -w <workDir> option, error in argument: (\$QV_UNSET/x)" ]
}

@test "options end at the first word, at '--', or at a dash inside a group" {
  mkdir bin && install -m 755 /dev/null bin/-s  # the dry run finds the program it shows
  while IFS='|' read -r words vector; do
    run --separate-stderr env PATH=/usr/bin:/bin JREHOME=/j VTX="$PWD" "$QORVEL" --dry-run $words
    [ "$status:${lines[0]}" = "0:$vector" ] || { echo "$words: $output"; false; }
  done <<'CASES'
true -d|true -d
-d -- true -s|true -s
-d - true|true
-d-s -s true|-s true
-c a -dsw/tmp true x|true x
CASES
}

@test "each expanded option fails with its code and message naming the argument, or silently" {
  while IFS='|' read -r option expected message; do
    run --separate-stderr "$QORVEL" "$option" '$QV_UNSET' java Main
    [ "$status" -eq "$expected" ] || { echo "$option gave $status"; return 1; }
    [ "$stderr" = "$message (\$QV_UNSET)" ] || { echo "$option: $stderr"; return 1; }
    run --separate-stderr "$QORVEL" -m silent "$option" '$QV_UNSET' java Main
    [ "$status:$stderr" = "$expected:" ] || { echo "$option is not silent: $stderr"; return 1; }
  done <<'CASES'
-c|254|Unabled to set -c <classpath> option, error in argument:
-w|253|Unabled to set -w <workDir> option, error in argument:
-0|244|Unabled to set -0 <file_stdin> option, error in argument:
-1|244|Unabled to set -1 <file_stdout> option, error in argument:
-2|244|Unabled to set -2 <file_stderr> option, error in argument:
CASES
  run --separate-stderr "$QORVEL" -c $'\xc3\xa9\xff${QV_UNSET}' java Main
  [ "$status:$stderr" = 254:$'Unabled to set -c <classpath> option, error in argument: (\xc3\xa9\xff${QV_UNSET})' ]
}

@test "-o stdout tags the lines, another destination shows nothing, silent mode shows -u errors" {
  run --separate-stderr "$QORVEL" -o stdout -c '$QV_UNSET' java Main
  eq "$status:$stderr" "254:"
  [ "$output" = '!+0099%Unabled to set -c <classpath> option, error in argument: ($QV_UNSET)' ]
  for destination in none STDERR; do
    run --separate-stderr "$QORVEL" -o "$destination" -c '$QV_UNSET' java Main
    [ "$status:$output$stderr" = 254: ]
  done
  run --separate-stderr "$QORVEL" -m silent -u '::secret' java Main
  [ "$status:$stderr" = 252:$'Format error in -u parameter\nsyntax is -u User:Group:Password' ]
}

@test "an overlong value for any option is refused with its code or cut, never a crash" {
  long=$(head -c 20000 /dev/zero | tr '\0' x)
  while IFS='|' read -r option code message; do
    run --separate-stderr "$QORVEL" "$option" "$long" java Main
    [ "$status" -eq "$code" ] || { echo "$option gave $status"; false; }
    [[ "$stderr" == "$message"* ]] || { echo "$option: ${stderr:0:80}"; false; }
    [ "${#stderr}" -le 1024 ] || { echo "$option: the value reached the console uncut"; false; }
  done <<'CASES'
-a|241|Unable to set -a <property file> option, error in argument: (xxx
-x|254|Unable to set -a <property file> option, error in argument: (xxx
-u|252|Format error in -u parameter
-w|253|Unabled to set -w <workDir> option, error in argument: (xxx
-1|244|Unabled to set -1 <file_stdout> option, error in argument: (xxx
-2|244|Unabled to set -2 <file_stderr> option, error in argument: (xxx
-r|248|Unable to set -r <umask> option, not an octal mask up to 0777: (xxx
-0|244|Unabled to set -0 <file_stdin> option, error in argument: (xxx
-c|22|Unable to set -c <classpath> option, longer than 2047 characters: (xxx
CASES
  # The others take the value, cut where it is cut, and the run goes on to miss JREHOME.
  for option in -e -m -l -o; do
    run "$QORVEL" "$option" "$long" java Main
    [ "$status" -eq 247 ] || { echo "$option gave $status"; false; }
  done
  # A word of thousands of characters: after -z the cluster reads as -x with its argument.
  run "$QORVEL" "-z$long" java Main
  [ "$status" -eq 254 ]
}

stamp='[A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9][0-9] [0-9]{2}:[0-9]{2}:[0-9]{2} [0-9]{4}'

@test "the log names the system, dumps the arguments, traces every option and copies the console" {
  run "$QORVEL" -g -lrun.log -dsr027 -ostderr -mverbose -1out.log::x -z java
  [ "$status" -eq 248 ]
  [ ! -e qorvel.log ]
  grep -Eq "^$stamp :: run.log Opened$" run.log
  grep -Eq "^$stamp :: MAIN -- qorvel process starter on $(uname -s)$" run.log
  diff -u - <(sed -n '/^qorvel startup argument list:$/,/^Usage: /p' run.log) <<EOF
qorvel startup argument list:
arg[0] = ($QORVEL)
arg[1] = (-g)
arg[2] = (-lrun.log)
arg[3] = (-dsr027)
arg[4] = (-ostderr)
arg[5] = (-mverbose)
arg[6] = (-1out.log::x)
arg[7] = (-z)
arg[8] = (java)
FCN: processConfig() - process Configuration/Startup options.
Enabled -d option, DAEMON_START
Enabled -s option, SUSPEND_AFTER_START
Enabled -r option, umask = (027) (only valid with -d)
Enabled -o option, outputDesc = (stderr)
Enabled -m option, VERBOSE_MODE
Enabled -1 option, file_stdout = (out.log) oflags_stdout = (append)
Bad option specified.
$(usage_text)
EOF
}

@test "-g anywhere appends to qorvel.log, and a -u value never reaches it in any form" {
  for _ in 1 2; do
    run "$QORVEL" -u alice:staff:secret1 -ualice:staff:secret2 -du alice:staff:secret3 -u -secret4 -msilent -w /tmp -z java -g
    [ "$status" -eq 248 ]
  done
  [ "$(grep -c ' Opened$' qorvel.log)" -eq 2 ]
  [ "$(grep -c ' :: Log Closed$' qorvel.log)" -eq 2 ]
  grep -qx 'Enabled -m option, SILENT_MODE' qorvel.log
  grep -qxF 'Enabled -w option, cwd = (/tmp)' qorvel.log
  ! grep -q secret qorvel.log || false
  masked='<user group password not shown>'
  eq "$(sed -n 's/^arg\[[1-5]\] = //p' qorvel.log | head -n5 | paste -sd' ')" "(-u) ($masked) (-u$masked) (-du) ($masked)"
}

@test "the log traces the long options, each -e variable (value hidden) and the password file" {
  printf 'A=1\nB=two\n' > env.txt
  printf 'pw\n' > pw && chmod 600 pw
  # Two lines for -e 3: the end of the input ends the list.
  JREHOME=/opt/jre "$QORVEL" -g --dry-run --pidfile=app.pid --password-file=pw --rlimit=nofile=64 -e 3 \
    -u "$(id -un)" "$FAKE_JVM" < env.txt > /dev/null || true
  diff -u - <(grep -E '^(Enabled|set \(|Password taken)' qorvel.log) <<EOF
Enabled --dry-run option
Enabled --pidfile option, file = ($PWD/app.pid)
Enabled --password-file option, file = (pw)
Enabled --rlimit option, nofile=64
Enabled -e option, setting 3 environment variables.
set (A=<value not shown>)
set (B=<value not shown>)
Password taken from (pw)
EOF
  "$QORVEL" -g --stop --pidfile=app.pid --timeout=1 --signal=HUP > /dev/null || true
  diff -u - <(grep -E '^Enabled' qorvel.log | tail -n4) <<EOF
Enabled --stop option
Enabled --pidfile option, file = ($PWD/app.pid)
Enabled --timeout option, 1 s
Enabled --signal option, signal 1
EOF
}
