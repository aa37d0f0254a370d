#!/usr/bin/env bats
# The launcher as a service starter meets it: what the JVM inherits, a console
# nobody reads, a waiting parent that passes signals on, the pid file, and the
# long options --help, --version, --dry-run; a warning, and values that do not fit.

load ../lib/common

setup() { common_setup; }



@test "the JVM inherits only the caller's descriptors and default signals; a new debug log is private" {
  "$FAKE_JVM" > direct.txt
  "$QORVEL" -g -l dbg.log -1 out.txt "$FAKE_JVM"
  eq "$(seen fds out.txt)" "$(seen fds direct.txt)"
  [ "$(stat -c %a dbg.log)" = 600 ]
  # A console that is a pipe nobody reads ends neither the launch nor the JVM's defaults.
  python3 -c 'import os, subprocess, sys
r, w = os.pipe(); os.close(r)
sys.exit(subprocess.run(sys.argv[1:], stderr=w).returncode)' "$QORVEL" -1 piped.txt -2 err.txt "$FAKE_JVM"
  (( (0x$(seen sigign piped.txt) & 0x1000) == 0 ))
  # A caller that ignores CHLD, INT and HUP and blocks USR1: the waiting parent
  # still sees the child's status, and the JVM none of it (bash ignores QUIT
  # and blocks CHLD itself).
  run perl -MPOSIX -e '$SIG{$_} = "IGNORE" for qw(CHLD INT HUP);
    sigprocmask(SIG_BLOCK, POSIX::SigSet->new(SIGUSR1)); exec @ARGV' \
    "$QORVEL" -d -s -1 hygiene.txt "$FAKE_JVM" --exit 3
  [ "$status" -eq 3 ]
  (( (0x$(seen sigign hygiene.txt) & 0x3) == 0 && (0x$(seen sigblk hygiene.txt) & 0x200) == 0 ))
}

@test "a waiting parent passes signals on, exits 128+N when one ends the child, and removes its pid file" {
  "$QORVEL" -d -s --pidfile=app.pid -1 out.txt "$FAKE_JVM" --wait-signals & parent=$!
  wait_for out.txt '^ready'
  eq "$(cat app.pid)" "$(seen pid out.txt)"
  [ "$(stat -c %a app.pid)" = 644 ]
  [ -z "$(ls -l /proc/$parent/fd | grep 'app\.pid')" ]  # the parent holds no descriptor on it
  kill -USR1 $parent
  wait_for out.txt '^signal=10$'
  kill -TERM $parent
  status=0; wait $parent || status=$?
  [ "$status" -eq 143 ]
  grep -qx 'signal=15' out.txt
  [ ! -e app.pid ]
  [ -z "$(ls -A | grep '^\.app\.pid')" ]
  "$QORVEL" -d -s --pidfile=app.pid -1 killed.txt "$FAKE_JVM" --wait-signals & parent=$!
  wait_for killed.txt '^ready'
  echo 1 > app.pid  # taken over by another instance: not the parent's to remove
  kill -KILL "$(seen pid killed.txt)"
  status=0; wait $parent || status=$?
  [ "$status:$(cat app.pid)" = 137:1 ]
}

@test "--pidfile: one running instance per file, named from the launch directory; -d returns once started" {
  mkdir sub
  while IFS='|' read -r name prepare options code check; do
    rm -f app.pid sub/app.pid out.txt && eval "$prepare"
    run --separate-stderr "$QORVEL" $options -1 out.txt "$FAKE_JVM"
    [ "$status" = "$code" ] && eval "$check" || { echo "$name: $status $stderr"; false; }
  done <<'CASES'
foreground_jvm_writes_its_own_id|:|--pidfile=app.pid|0|[ "$(cat app.pid)" = "$(seen pid out.txt)" ]
live_file_refused_untouched|echo $$ > app.pid|--pidfile app.pid|17|[ "$(cat app.pid):$stderr" = "$$:Pid file ($PWD/app.pid): already running (pid $$)" ] && [ ! -e out.txt ]
stale_file_replaced|echo 99999999 > app.pid|--pidfile=app.pid|0|[ "$(cat app.pid)" = "$(seen pid out.txt)" ]
relative_file_stays_in_the_launch_directory|echo other > sub/app.pid|-d -s --pidfile=app.pid -w sub|0|[ ! -e app.pid ] && [ "$(cat sub/app.pid)" = other ]
daemon_returns_with_the_file_in_place|:|-d --pidfile=app.pid|0|[ -s app.pid ]
daemon_start_failure_is_its_status|:|-d --pidfile=app.pid /nonexistent/java|2|[ ! -e app.pid ]
missing_directory|:|--pidfile=no/dir/app.pid|2|[ "$stderr" = "Unable to create pid file ($PWD/no/dir/app.pid)"$'\n'"No such file or directory" ] && [ ! -e out.txt ]
CASES
}

@test "--help and --version answer first; other long options are bad unless known" {
  run --separate-stderr "$QORVEL" --version
  [ "$status:$output" = "0:qorvel $(sed -n 's/^project(qorvel VERSION \([0-9.]*\).*/\1/p' "$QORVEL_SOURCE_DIR/CMakeLists.txt")" ]
  run --separate-stderr "$QORVEL" --help
  [ "$status" -eq 0 ]
  [ "$(sed -n 3p <<<"$output")" = "Usage: qorvel [options] program [program arguments]" ]
  [ "$(grep -c '^  -' <<<"$output")" -eq 26 ]
  for words in '-d --help' '--pidfile -d' --no-such-option; do
    run --separate-stderr "$QORVEL" $words java Main
    [ "$status" -eq 248 ] || { echo "$words: $status"; false; }
  done
  [ "$(sed -n 1p <<<"$stderr")" = "$QORVEL: unrecognized option '--no-such-option'" ]
}

@test "--dry-run prints the vector, the changed environment and what the start would use" {
  export QV_WORD='a b'
  run --separate-stderr env -u PATH "$QORVEL" --dry-run -e 1 -c /cp -d -r 027 -1 out.txt::a \
    --pidfile=app.pid "$FAKE_JVM" '${QV_WORD}' "it's" plain <<<'QV_SECRET=hidden'
  [ "$status:$stderr" = 0: ] && [ ! -e out.txt ] && [ ! -e app.pid ]
  [ "$(sed -n 1,3p <<<"$output")" = "$FAKE_JVM 'a b' 'it'\\''s' plain"$'\n'"QV_SECRET=<value not shown>"$'\n'"CLASSPATH=/cp" ]
  [ "$(grep -E '^(mode|umask|directory|stdout|pid file):' <<<"$output" | paste -sd'|')" = "mode: daemon|umask: 0027|directory: $PWD|stdout: out.txt (append)|pid file: $PWD/app.pid" ]
  run --separate-stderr "$QORVEL" --dry-run "$FAKE_JVM" '$QV_UNSET'
  eq "$status:$output" "22:"
}

@test "--dry-run fails where the start would, with its status, and makes nothing" {
  echo $$ > live.pid && mkdir empty && cd empty
  while IFS='|' read -r name options; do
    run --separate-stderr "$QORVEL" --dry-run $options "$FAKE_JVM"
    dry=$status
    [ -z "$(ls -A)" ] || { echo "$name: made $(ls -A)"; false; }
    run --separate-stderr "$QORVEL" $options "$FAKE_JVM"
    [ "$dry" = "$status" ] && [ "$status" != 0 ] || { echo "$name: dry run $dry, start $status"; false; }
  done <<'CASES'
pid_file_in_a_missing_directory|--pidfile=no/app.pid
live_pid_file|--pidfile=../live.pid
output_file_that_cannot_be_opened|-1 no/out.txt
program_not_on_the_path|-d no-such-program-qv
unknown_group|-d -u :no-such-group-qv
unknown_user|-u no-such-user-qv
unusable_password_file|-u root:: --password-file no-such-file
directory_that_cannot_be_entered|-w no-such-dir
CASES
}

@test "a missing section only warns; a value that does not fit its bound stops the launch with 22" {
  printf '[Common]\nclasspath=a.jar\n[Fit]\nclasspath=%s\n[Cut]\nclasspath=%s\n[Env]\njvmargs=$QV_LONG\n' \
    "$(head -c 1023 /dev/zero | tr '\0' f)" "$(head -c 1024 /dev/zero | tr '\0' c)" > app.properties
  run --separate-stderr "$QORVEL" -a app.properties::Srv.Prod -1 out.txt "$FAKE_JVM"
  [ "$status:$(grep ^Warning <<<"$stderr")" = "0:Warning: section (Srv.Prod) is not in file (app.properties)" ]
  run --separate-stderr "$QORVEL" -m silent -a app.properties::Srv -1 out.txt -2 err.txt "$FAKE_JVM"
  eq "$status:$stderr" "0:"
  export QV_LONG=$(head -c 2048 /dev/zero | tr '\0' v)
  while IFS='|' read -r code options words message; do
    run --separate-stderr "$QORVEL" $options -1 out.txt "$FAKE_JVM" $words
    [ "$status" -eq "$code" ] && [[ "$stderr" == *"$message"* ]] || { echo "$options: $status $stderr"; false; }
  done <<'CASES'
0|-a app.properties::Fit||
22|-a app.properties::Cut||Unable to set -a <property file> option, (classpath) is longer than 1023 characters in section (Cut) of file (app.properties)
22|-x app.properties::Env||(jvmargs) is longer than 2047 characters in section (Env)
22|-c $QV_LONG||Unable to set -c <classpath> option, longer than 2047 characters: ($QV_LONG)
22||$QV_LONG|Error parsing argument, longer than 2047 characters when expanded: ($QV_LONG)
CASES
}
