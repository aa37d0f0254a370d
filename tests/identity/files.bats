#!/usr/bin/env bats
# Files the launcher opens as root, in a sticky world-writable directory where
# an ordinary user (bob) planted a link or a file first. The kernel's own
# protections are switched off where the machine allows it, so what is proved
# is the launcher's rule, not the sysctl's.

load common

setup_file() {
  mount_test_accounts
  kernel_rules="$(sysctl -n fs.protected_symlinks) $(sysctl -n fs.protected_regular)"
  if sysctl -qw fs.protected_symlinks=0 fs.protected_regular=0 2>/dev/null; then
    export kernel_rules
  else
    echo "# /proc/sys is read-only; the kernel's rules stay as they are ($kernel_rules)" >&3
    unset kernel_rules
  fi
}

teardown_file() {
  if [ -n "${kernel_rules:-}" ]; then
    read -r symlinks regular <<<"$kernel_rules"
    sysctl -qw fs.protected_symlinks="$symlinks" fs.protected_regular="$regular"
  fi
  unmount_test_accounts
}

as_bob() { setpriv --reuid=2002 --regid=2002 --clear-groups "$@"; }

# Logs are left out with a warning and the launch goes on; a redirection is
# refused with 13. Either way nothing of the launch reaches a file bob chose,
# and nothing of root's file reaches the JVM.
@test "a link or file another user planted in a sticky directory leads nowhere" {
  victims=$BATS_TEST_TMPDIR/victims
  mkdir -m 700 "$victims"
  while IFS='|' read -r name plant env args code line; do
    printf 'SECRET\n' > "$victims/file"
    (cd "$work" && eval "as_bob $plant")
    run --separate-stderr env $env "$QORVEL" $args "$FAKE_JVM"
    [ "$status:$(grep -cxF "$line" <<<"$stderr")" = "$code:1" ] || { echo "$name: $status $stderr"; false; }
    [ "$(ls "$victims"):$(cat "$victims/file")" = file:SECRET ] || { echo "$name: victim touched"; false; }
    ! grep -q SECRET <<<"$output" || { echo "$name: read the victim"; false; }
    [ -z "$(find "$work" -user bob -type f -size +0)" ] || { echo "$name: wrote bob's file"; false; }
    rm -rf "${work:?}"/*
  done <<CASES
debug_log_through_link|ln -s $victims/file qorvel.log||-g|0|Warning: debug log (qorvel.log) not written: Permission denied
auth_file_into_foreign_file|install -m 666 /dev/null authdbg.log|QRB_AUTH_DEBUG=1|-s -u alice::des-pass|0|Warning: authentication debug file (./authdbg.log) not written: Permission denied
stdout_through_link|ln -s $victims/file out.txt||-1 out.txt|13|Error opening stdout redirection file: (out.txt), error 13
stderr_into_foreign_file|install -m 666 /dev/null err.txt||-2 err.txt::append|13|Error opening stderr redirection file: (err.txt), error 13
stdin_through_link|ln -s $victims/file in.txt||-0 in.txt|13|Error opening stdin redirection file: (in.txt), error 13
output_through_linked_directory|ln -s $victims sub||-1 sub/file|13|Error opening stdout redirection file: (sub/file), error 13
pid_file_through_linked_directory|ln -s $victims sub||--pidfile=sub/file|13|Unable to create pid file ($work/sub/file)
CASES
}

# A file opened later would take the closed descriptor, and console text with it.
@test "started with standard error closed, a failure message does not land in the -1 file" {
  "$QORVEL" -1 out.txt ./no-such-jvm 2>&- || code=$?
  [ "${code:-0}:$(wc -c <out.txt)" = 2:0 ]
}
