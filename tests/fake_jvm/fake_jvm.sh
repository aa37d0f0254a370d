#!/bin/bash
# Stands in for the JVM in the launcher's tests. It prints what it was started
# with, one "key=value" line each, so a test can read it back with grep:
#   arg[N]=word, env=NAME=value, cwd, umask, pid, ppid, sid, uid/euid/gid/egid,
#   groups, its open descriptors (fds=0,1,2,...), its SIGPIPE disposition
#   (sigpipe=default|ignored), its parent's arguments (parent_args=, NULs as
#   spaces), and "stdin=" lines for its input when an argument is --read-stdin.
# With --wait-signals it then prints "ready" and waits up to 20 s, printing
# "signal=N" for each of TERM, INT, HUP, USR1 and USR2 and dying of any but the
# USRs. It writes "fake_jvm stderr" on standard error and exits with --exit N.
status=0 i=0 words=("$@")
for word in "$0" "$@"; do
  echo "arg[$i]=$word"
  [ "$prev" = --exit ] && status=$word
  prev=$word i=$((i + 1))
done
tr '\0' '\n' </proc/$$/environ | sed 's/^/env=/'
echo "cwd=$(pwd -P)"
echo "umask=$(umask)"
read -r -a stat </proc/$$/stat
echo "pid=$$" "ppid=$PPID" "sid=${stat[5]}" | tr ' ' '\n'
while read -r key rest; do
  set -- $rest
  case $key in
    Uid:) printf 'uid=%s\neuid=%s\n' "$1" "$2" ;;
    Gid:) printf 'gid=%s\negid=%s\n' "$1" "$2" ;;
    Groups:) groups=$*; echo "groups=${groups// /,}" ;;
    SigIgn:) (( 0x$1 & 0x1000 )) && sigpipe=ignored || sigpipe=default ;;
  esac
done </proc/$$/status
echo "fds=$(ls /proc/$$/fd | sort -n | paste -sd,)"
echo "sigpipe=$sigpipe"
echo "parent_args=$(tr '\0' ' ' </proc/$PPID/cmdline)"
if [[ " ${words[*]} " == *" --read-stdin "* ]]; then
  while IFS= read -r line || [ -n "$line" ]; do echo "stdin=$line"; done
fi
if [[ " ${words[*]} " == *" --wait-signals "* ]]; then
  for number in 15 2 1; do  # TERM, INT and HUP end it as they would the JVM
    trap "echo signal=$number; trap - $number; kill -$number \$\$" $number
  done
  trap 'echo signal=10' USR1
  trap 'echo signal=12' USR2
  echo ready
  for _ in $(seq 200); do sleep 0.1; done
fi
echo "fake_jvm stderr" >&2
exit "$status"
