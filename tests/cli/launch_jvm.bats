#!/usr/bin/env bats
# End to end with the real JVM: qorvel starts the machine's java on a class
# compiled here, and the class reports what it received.

load ../lib/common

setup_file() {
  command -v javac >/dev/null || { echo "javac is needed (scripts/install-deps)" >&2; return 1; }
  mkdir -p "$BATS_FILE_TMPDIR/classes"
  javac -d "$BATS_FILE_TMPDIR/classes" "$QORVEL_SOURCE_DIR/examples/ShowLaunch.java"
}

setup() {
  common_setup
  JREHOME=$(dirname "$(dirname "$(readlink -f "$(command -v java)")")")
  export JREHOME VTX=/opt/qv-app
}

@test "java, found through the PATH prefix, gets class path, options, words, -e variables and -w" {
  mkdir run
  export QV_NAME=world QV_WHO=tester
  classes=$BATS_FILE_TMPDIR/classes
  run --separate-stderr env PATH=/qv-nowhere "$QORVEL" -c "$classes" -w "$BATS_TEST_TMPDIR/run" \
    -e 1 -1 out.txt -2 'err.txt::append' \
    java -Dqorvel.greeting='hello ${QV_NAME}' ShowLaunch one '$QV_NAME' <<<'DEMO_USER=${QV_WHO}-demo'
  [ "$status" -eq 0 ]
  [[ "$stderr" =~ ^processid\ [0-9]+$'\n'completed$ ]]
  eq "$(cat run/err.txt)" "ShowLaunch done"
  diff -u - run/out.txt <<EOF
arg[0]=one
arg[1]=world
property qorvel.greeting=hello world
property user.dir=$BATS_TEST_TMPDIR/run
property java.class.path=$classes
property java.security.policy=null
env CLASSPATH=$classes
env PATH=$JREHOME/bin:/opt/qv-app/bin:/opt/qv-app/lib:/qv-nowhere
env DEMO_USER=tester-demo
EOF
}
