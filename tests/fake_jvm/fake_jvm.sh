#!/bin/bash
# Stands in for the JVM in the launcher's tests: prints what it was started with
# as "key=value" lines (arg[N], env=NAME=value, its process state, descriptors
# and their limit, ignored and blocked signals, parent's arguments), and "stdin=" lines with
# --read-stdin. With --wait-signals it prints "ready", reports signals for 20 s
# and dies of TERM, INT and HUP. It writes "fake_jvm stderr" on standard error
# and exits with the status after --exit.
status=0 i=0 words=("$@")
for word in "$0" "$@"; do
  echo "arg[$i]=$word"
  [ "$prev" = --exit ] && status=$word
  prev=$word i=$((i + 1))
done
tr '\0' '\n' </proc/$$/environ | sed 's/^/env=/'
printf 'cwd=%s\numask=%s\n' "$(pwd -P)" "$(umask)"
read -r -a stat </proc/$$/stat
echo "pid=$$" "ppid=$PPID" "sid=${stat[5]}" | tr ' ' '\n'
printf 'uid=%s\neuid=%s\ngid=%s\negid=%s\n' "$(id -ru)" "$(id -u)" "$(id -rg)" "$(id -g)"
echo "groups=$(sed -n 's/^Groups:\s*//p' /proc/$$/status | xargs | tr ' ' ,)"
echo "fds=$(ls /proc/$$/fd | sort -n | paste -sd,)"
echo "nofile=$(ulimit -Sn):$(ulimit -Hn)"  # RLIMIT_NOFILE, soft:hard
sed -n 's/^Sig\(Ign\|Blk\):\s*/sig\L\1=/p' /proc/$$/status  # sigign= and sigblk= masks
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
