#!/usr/bin/env bats
# -a and -x: class path, JVM options and policy file taken from a section of a
# properties file, its parents and its operating-system child.

bats_require_minimum_version 1.5.0

setup() {
  cd "$BATS_TEST_TMPDIR"
  export JREHOME=/opt/jre VTX="$BATS_TEST_TMPDIR/vtx"
  unset QV_UNSET CLASSPATH
  export QV_LIB=/opt/lib
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
classpath=tools.jar
PROPS
  printf '[Common]\nclasspath=installed.jar\n' >vtx/properties/JavaTools.properties
}

# The JVM words the stand-in received after its own name, one per line.
jvm_words() { sed -n 's/^arg\[[1-9][0-9]*\]=//p' <<<"$output"; }
seen() { sed -n "s/^$1=//p" <<<"$output" | head -n1; }

@test "-a puts the class path, the options of the os section and the policy before the words" {
  run --separate-stderr "$QORVEL" -a app.properties "$FAKE_JVM" Main one
  [ "$status" -eq 0 ]
  [ "$(jvm_words)" = "-classpath
/opt/lib/a.jar: /opt/lib/b.jar
-Xmx64m
-Dorigin=linux
-Djava.security.policy=/etc/app.policy
Main
one" ]
  [ -z "$(seen env=CLASSPATH)" ]
}

@test "-a with a named section, and with an empty argument reading the installed default" {
  run --separate-stderr "$QORVEL" -a 'app.properties::Tools' "$FAKE_JVM" Main
  [ "$status" -eq 0 ]
  [ "$(jvm_words)" = "-classpath
tools.jar
Main" ]
  run --separate-stderr "$QORVEL" -a '' "$FAKE_JVM" Main
  [ "$status" -eq 0 ]
  [ "$(jvm_words)" = "-classpath
installed.jar
Main" ]
}

@test "-x moves the class path into CLASSPATH and keeps options and policy" {
  run --separate-stderr "$QORVEL" -x app.properties "$FAKE_JVM" Main
  [ "$status" -eq 0 ]
  [ "$(seen env=CLASSPATH)" = "/opt/lib/a.jar: /opt/lib/b.jar" ]
  [ "$(jvm_words)" = "-Xmx64m
-Dorigin=linux
-Djava.security.policy=/etc/app.policy
Main" ]
}

@test "-x without a class path leaves CLASSPATH as it was" {
  export CLASSPATH=/kept
  run --separate-stderr "$QORVEL" -x 'app.properties::Nowhere' "$FAKE_JVM" Main
  [ "$status" -eq 0 ]
  [ "$(seen env=CLASSPATH)" = /kept ]
  [ "$(jvm_words)" = Main ]
}

@test "a missing properties file ends -a with 241 and -x with 254" {
  run --separate-stderr "$QORVEL" -a missing.properties "$FAKE_JVM"
  [ "$status" -eq 241 ]
  [ "$stderr" = "Unable to read properties from section (Common) in file (missing.properties)" ]
  run --separate-stderr "$QORVEL" -x 'missing.properties::Tools' "$FAKE_JVM"
  [ "$status" -eq 254 ]
  [ "$stderr" = "Unable to read properties from section (Tools) in file (missing.properties)
Unable to set -x option, error in argument: (missing.properties::Tools)" ]
}

@test "an unexpandable file part is refused, naming -a even for -x" {
  run --separate-stderr "$QORVEL" -a '$QV_UNSET/p::Tools' "$FAKE_JVM"
  [ "$status" -eq 241 ]
  [ "$stderr" = "Unable to set -a <property file> option, error in argument: (\$QV_UNSET/p::Tools)" ]
}

@test "the debug log shows what -a and -x read" {
  run --separate-stderr "$QORVEL" -g -l dbg.log -x 'app.properties::$QV_UNSET' "$FAKE_JVM"
  [ "$status" -eq 0 ]
  grep -qxF "Processing -a option, propFile = (app.properties) section = (Common)" dbg.log
  grep -qxF "Processing -a option, classpath = (/opt/lib/a.jar: /opt/lib/b.jar) " dbg.log
  grep -qxF "Processing -a option, jvmargs = (-Xmx64m -Dorigin=linux) " dbg.log
  grep -qxF "Processing -a option, policyfile = (/etc/app.policy) " dbg.log
  grep -qxF "Enabled -x option, set (CLASSPATH=/opt/lib/a.jar: /opt/lib/b.jar)" dbg.log
}

@test "a real JVM starts from the example properties file alone" {
  command -v javac >/dev/null || skip "javac is not installed"
  mkdir classes
  cat >Hello.java <<'JAVA'
public class Hello {
    public static void main(String[] args) {
        for (String key : new String[] {"java.class.path", "java.security.policy",
                                        "qorvel.section", "qorvel.greeting"}) {
            System.out.println(key + "=" + System.getProperty(key));
        }
        System.out.println("args=" + String.join(",", args));
    }
}
JAVA
  javac -d classes Hello.java
  JREHOME=$(dirname "$(dirname "$(readlink -f "$(command -v java)")")")
  export QORVEL_DEMO_CLASSES="$BATS_TEST_TMPDIR/classes"
  export QORVEL_DEMO_POLICY="$QORVEL_SOURCE_DIR/examples/properties/demo.policy"
  run --separate-stderr "$QORVEL" \
    -a "$QORVEL_SOURCE_DIR/examples/properties/JavaTools.properties::Demo.Tools" java Hello a b
  [ "$status" -eq 0 ]
  grep -qxF "java.class.path=$QORVEL_DEMO_CLASSES:$QORVEL_DEMO_CLASSES/lib/extra.jar" <<<"$output"
  grep -qxF "java.security.policy=$QORVEL_DEMO_POLICY" <<<"$output"
  grep -qxF "qorvel.section=Demo.Tools" <<<"$output"
  grep -qxF "qorvel.greeting=hello" <<<"$output"
  grep -qxF "args=a,b" <<<"$output"
}
