#!/usr/bin/env bats
# End to end with the real JVM: qorvel starts the machine's java on a class
# compiled here, and the class reports what it received.

bats_require_minimum_version 1.5.0

setup_file() {
  command -v javac >/dev/null || { echo "javac is needed (scripts/install-deps)" >&2; return 1; }
  mkdir -p "$BATS_FILE_TMPDIR/classes"
  javac -d "$BATS_FILE_TMPDIR/classes" "$QORVEL_SOURCE_DIR/examples/ShowLaunch.java"
}

setup() {
  cd "$BATS_TEST_TMPDIR"
  JREHOME=$(dirname "$(dirname "$(readlink -f "$(command -v java)")")")
  export JREHOME VTX=/opt/qv-app
}

@test "java is found through the PATH prefix and gets class path, options and words" {
  export QV_NAME=world
  run --separate-stderr env PATH=/qv-nowhere "$QORVEL" -c "$BATS_FILE_TMPDIR/classes" \
    java -Dqorvel.greeting='hello ${QV_NAME}' ShowLaunch one '$QV_NAME'
  [ "$status" -eq 0 ]
  grep -qxF "arg[0]=one" <<<"$output"
  grep -qxF "arg[1]=world" <<<"$output"
  grep -qxF "property qorvel.greeting=hello world" <<<"$output"
  grep -qxF "property java.class.path=$BATS_FILE_TMPDIR/classes" <<<"$output"
  grep -qxF "env CLASSPATH=$BATS_FILE_TMPDIR/classes" <<<"$output"
  grep -qxF "env PATH=$JREHOME/bin:/opt/qv-app/bin:/opt/qv-app/lib:/qv-nowhere" <<<"$output"
  [[ "$stderr" =~ ^processid\ [0-9]+$'\n'completed$'\n'ShowLaunch\ done$ ]]
}

@test "the JVM runs in the -w directory with -e variables and redirected streams" {
  mkdir run
  export QV_WHO=tester
  run --separate-stderr "$QORVEL" -c "$BATS_FILE_TMPDIR/classes" -w "$BATS_TEST_TMPDIR/run" -e 1 \
    -1 out.txt -2 'err.txt::append' java ShowLaunch <<<'DEMO_USER=${QV_WHO}-demo'
  [ "$status" -eq 0 ]
  grep -qxF "property user.dir=$BATS_TEST_TMPDIR/run" run/out.txt
  grep -qxF "env DEMO_USER=tester-demo" run/out.txt
  [ "$(cat run/err.txt)" = "ShowLaunch done" ]
}

@test "a daemon JVM's exit status comes back through -s" {
  run --separate-stderr "$QORVEL" -d -s -c /qv-no-classes java NoSuchClass
  [ "$status" -eq 1 ]
  [[ "$stderr" == *"NoSuchClass"* ]]
}
