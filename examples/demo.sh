#!/usr/bin/env bash
# qorvel starting a real JVM: the example class is compiled into a temporary
# directory and launched with a class path, JVM options, an environment line
# read by -e and a redirected output file; then it shows what the JVM received.
set -u
qorvel=${QORVEL_BIN:?}
here=$(cd "$(dirname "$0")" && pwd)

if ! command -v java >/dev/null || ! command -v javac >/dev/null; then
  echo "demo: a JDK is needed (java and javac). Run scripts/install-deps, or install" >&2
  echo "      a headless JDK yourself, for example: apt-get install default-jdk-headless" >&2
  exit 1
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
javac -d "$work/classes" "$here/ShowLaunch.java" || exit 1

# The JVM is found through the PATH prefix qorvel builds from JREHOME.
JREHOME=$(dirname "$(dirname "$(readlink -f "$(command -v java)")")")
export JREHOME VTX=$work/app APP_HOME=$work

echo "\$ echo 'DEMO_USER=\${LOGNAME}-via-e' | qorvel -c '\$APP_HOME/classes' -w '\$APP_HOME' -e 1 -1 out.log \\"
echo "      java -Dqorvel.greeting=hello -Xmx64m ShowLaunch first '\$APP_HOME'"
export LOGNAME=${LOGNAME:-$(id -un)}
echo 'DEMO_USER=${LOGNAME}-via-e' |
  "$qorvel" -c '$APP_HOME/classes' -w '$APP_HOME' -e 1 -1 out.log \
    java -Dqorvel.greeting=hello -Xmx64m ShowLaunch first '$APP_HOME' 2>&1
status=$?
echo "exit status: $status"
echo
echo "--- out.log, written by the JVM ---"
cat "$work/out.log"
exit "$status"
