#!/usr/bin/env bats
# -a and -x: class path, JVM options and policy file taken from a section of a
# properties file, its parents and its operating-system child.

load ../lib/common

setup() {
  common_setup
  export VTX="$BATS_TEST_TMPDIR/vtx" QV_LIB=/opt/lib
  mkdir -p vtx/properties
  cat >app.properties <<'PROPS'
[Common]
classpath=${QV_LIB}/a.jar,
    ${QV_LIB}/b.jar
jvmargs=-Xmx64m -Dorigin=common
policyfile=/etc/app.policy

[Common.Linux]
jvmargs=-Xmx64m -Dorigin=linux

[Tools]
classpath=t
PROPS
  printf '[Common]\nclasspath=installed.jar\n' >vtx/properties/JavaTools.properties
}

# The JVM words the stand-in received after its own name, joined by "|".
jvm_words() { sed -n 's/^arg\[[1-9][0-9]*\]=//p' <<<"$output" | paste -sd'|'; }
classpath() { sed -n 's/^env=CLASSPATH=//p' <<<"$output"; }

@test "-a puts the class path, the options of the os section and the policy before the words" {
  run --separate-stderr "$QORVEL" -a app.properties "$FAKE_JVM" Main one
  [ "$status" -eq 0 ]
  eq "$(jvm_words)" "-classpath|/opt/lib/a.jar: /opt/lib/b.jar|-Xmx64m|-Dorigin=linux|-Djava.security.policy=/etc/app.policy|Main|one"
  [ -z "$(classpath)" ]
  run --separate-stderr "$QORVEL" -a 'app.properties::Tools' "$FAKE_JVM" Main
  [ "$(jvm_words)" = "-classpath|t|Main" ]  # a value of one character is kept
  # An empty argument reads the installed default file.
  run --separate-stderr "$QORVEL" -a '' "$FAKE_JVM" Main
  eq "$(jvm_words)" "-classpath|installed.jar|Main"
}

@test "-x moves the class path into CLASSPATH and keeps options and policy, as the debug log shows" {
  run --separate-stderr "$QORVEL" -g -l dbg.log -x 'app.properties::$QV_UNSET' "$FAKE_JVM" Main
  [ "$status" -eq 0 ]
  eq "$(classpath)" "/opt/lib/a.jar: /opt/lib/b.jar"
  eq "$(jvm_words)" "-Xmx64m|-Dorigin=linux|-Djava.security.policy=/etc/app.policy|Main"
  grep -qxF "Processing -a option, propFile = (app.properties) section = (Common)" dbg.log
  grep -qxF "Processing -a option, classpath = (/opt/lib/a.jar: /opt/lib/b.jar) " dbg.log
  grep -qxF "Processing -a option, jvmargs = (-Xmx64m -Dorigin=linux) " dbg.log
  grep -qxF "Processing -a option, policyfile = (/etc/app.policy) " dbg.log
  grep -qxF "Enabled -x option, set (CLASSPATH=/opt/lib/a.jar: /opt/lib/b.jar)" dbg.log
  # Without a class path in the section CLASSPATH stays as it was.
  CLASSPATH=/kept run --separate-stderr "$QORVEL" -x 'app.properties::Nowhere' "$FAKE_JVM" Main
  eq "$(classpath)|$(jvm_words)" "/kept|Main"
}

@test "a missing file ends -a with 241 and -x with 254; an unexpandable file part names -a" {
  while IFS='|' read -r vtx hint; do
    if [ -n "$vtx" ]; then where=(VTX="$vtx"); else where=(-u VTX); fi
    run --separate-stderr env "${where[@]}" "$QORVEL" -a missing.properties "$FAKE_JVM"
    [ "$status:$stderr" = "241:Unable to read properties from section (Common) in file (missing.properties)
Hint: $hint" ] || { echo "$vtx: $stderr"; false; }
  done <<'CASES'
/opt/app|no file (missing.properties) here, nor in /opt/app/properties
|no file (missing.properties) here, and VTX is unset, so $VTX/properties was not searched
CASES
  run --separate-stderr "$QORVEL" -x 'missing.properties::Tools' "$FAKE_JVM"
  [ "$status" -eq 254 ]
  [ "$(sed -n 3p <<<"$stderr")" = "Unable to set -x option, error in argument: (missing.properties::Tools)" ]
  run --separate-stderr "$QORVEL" -a '$QV_UNSET/p::Tools' "$FAKE_JVM"
  eq "$status:$stderr" "241:Unable to set -a <property file> option, error in argument: (\$QV_UNSET/p::Tools)"
}
