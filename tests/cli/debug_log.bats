#!/usr/bin/env bats
# The debug log of -g: banner, argument dump with the -u value masked, option trace.

bats_require_minimum_version 1.5.0

setup() {
  cd "$BATS_TEST_TMPDIR"
  unset QV_UNSET
}

stamp='[A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9][0-9] [0-9]{2}:[0-9]{2}:[0-9]{2} [0-9]{4}'

@test "-g anywhere opens qorvel.log in the current directory and appends each run" {
  run "$QORVEL" -z java Main -g
  [ "$status" -eq 248 ]
  run "$QORVEL" -z java Main -g
  [ "$(grep -c ' Opened$' qorvel.log)" -eq 2 ]
  [ "$(grep -c ' :: Log Closed$' qorvel.log)" -eq 2 ]
}

@test "the log names the system, dumps the arguments and traces every option" {
  run "$QORVEL" -g -l run.log -ds -r 027 -o stderr -m verbose -1 'out.log::x' -z java Main
  [ "$status" -eq 248 ]
  [ ! -e qorvel.log ]
  grep -Eq "^$stamp :: run.log Opened$" run.log
  grep -Eq "^$stamp :: MAIN -- qorvel process starter on $(uname -s)$" run.log
  diff -u - <(sed -n '/^qorvel startup argument list:$/,/^Bad option specified.$/p' run.log) <<EOF
qorvel startup argument list:
arg[0] = ($QORVEL)
arg[1] = (-g)
arg[2] = (-l)
arg[3] = (run.log)
arg[4] = (-ds)
arg[5] = (-r)
arg[6] = (027)
arg[7] = (-o)
arg[8] = (stderr)
arg[9] = (-m)
arg[10] = (verbose)
arg[11] = (-1)
arg[12] = (out.log::x)
arg[13] = (-z)
arg[14] = (java)
arg[15] = (Main)
FCN: processConfig() - process Configuration/Startup options.
Enabled -d option, DAEMON_START
Enabled -s option, SUSPEND_AFTER_START
Enabled -r option, umask = (027) (only valid with -d)
Enabled -o option, outputDesc = (stderr)
Enabled -m option, VERBOSE_MODE
Enabled -1 option, file_stdout = (out.log) oflags_stdout = (append)
Bad option specified.
EOF
}

@test "a -u value never reaches the log, separate, attached or inside a group" {
  run "$QORVEL" -g -u alice:staff:secret1 -ualice:staff:secret2 -du alice:staff:secret3 -z java
  [ "$status" -eq 248 ]
  ! grep -q secret qorvel.log
  grep -qxF 'arg[2] = (-u)' qorvel.log
  grep -qxF 'arg[3] = (<user group password not shown>)' qorvel.log
  grep -qxF 'arg[4] = (-u<user group password not shown>)' qorvel.log
  grep -qxF 'arg[6] = (<user group password not shown>)' qorvel.log
}

@test "console messages are copied into the log" {
  run "$QORVEL" -g -c '$QV_UNSET' java
  [ "$status" -eq 254 ]
  grep -qxF 'Unabled to set -c <classpath> option, error in argument: ($QV_UNSET)' qorvel.log
}

@test "an unwritable log path is ignored and the run goes on" {
  run --separate-stderr "$QORVEL" -g -l /nonexistent/dir/q.log -c '$QV_UNSET' java
  [ "$status" -eq 254 ]
  [ "$stderr" = 'Unabled to set -c <classpath> option, error in argument: ($QV_UNSET)' ]
}
