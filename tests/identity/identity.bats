#!/usr/bin/env bats
# Password check and identity switch against real account databases (see
# common.bash).

load common

# Every hash method: the child runs as the user, in the group, with no group of root left,
# leading a new session with the -r umask in the -w directory. Without a group the
# user gets its own primary and supplementary groups, none of root's. The waiting
# parent's arguments, readable by any user, no longer show the password.
@test "each hash method verifies and the child becomes the user in the group" {
  while IFS='|' read -r name spec uid gid groups; do
    run --separate-stderr "$QORVEL" -s -r 022 -u "$spec" -w "$work/run" -1 out.txt "$FAKE_JVM"
    [ "$status" -eq 0 ] || { echo "$name: $status $stderr"; false; }
    got="$(for key in uid euid gid egid groups umask cwd sid; do seen $key run/out.txt; done | paste -sd' ')"
    [ "$got" = "$uid $uid $gid $gid $groups 0022 $work/run $(seen pid run/out.txt)" ] ||
      { echo "$name: $got"; false; }
    password=${spec##*:}
    hidden="${spec%:*}:$(printf '%*s' ${#password} '' | tr ' ' x)"
    [[ "$(seen parent_args run/out.txt)" == *" -u $hidden "* ]] ||
      { echo "$name: $(seen parent_args run/out.txt)"; false; }
    rm run/out.txt
  done <<'CASES'
traditional_des|alice:devs:des-pass|2001|3000|3000
md5_dollar_one|bob:devs:md5-pass|2002|3000|3000
sha512|carol:devs:sha-pass|2003|3000|3000
yescrypt|dave:devs:yes-pass|2004|3000|3000
capital_x_field_reads_shadow|erin:devs:erin-pass|2005|3000|3000
hash_in_passwd_itself|frank:devs:frank-pass|2006|3000|3000
numeric_group|carol:#3000:sha-pass|2003|3000|3000
second_name_of_an_id_gets_its_own_groups|ally:devs:ally-pass|2001|3000|3000,3001
no_group_takes_the_users_own|alice::des-pass|2001|2001|2001,3000
CASES
}

@test "refused passwords give 5 before any fork, with a hint that names the cause" {
  while IFS='|' read -r name spec console hint; do
    run --separate-stderr "$QORVEL" -u "$spec" "$FAKE_JVM"
    [ "$status:$output" = 5: ] || { echo "$name: $status $output"; false; }
    [ "$stderr" = "$(printf '%b' "ERROR validating password:${console}\nHint: ${spec%%:*}: ${hint}\nError attempting to start as a daemon, errno 5\nInput/output error")" ] ||
      { echo "$name: $stderr"; false; }
  done <<'CASES'
wrong_des|alice::wrong|Password does not match.|the password is wrong
wrong_sha512|carol::sha-pas|Password does not match.|the password is wrong
longer_password_same_prefix|carol::sha-pass-and-more|Password does not match.|the password is wrong
empty_password|dave::|Password does not match.|the password is wrong
no_password_for_another_user|bob|Password does not match.|the password is wrong
locked_account|svc::svc-pass|Cannot verify blank password.|the account is locked; the superuser may start it with --no-password-check
numeric_user_has_no_entry_to_check|#2003::sha-pass|Cannot access password entry.|no account has this name
account_on_its_expiry_date|gone::gone-pass|Account has expired.|the account has expired
password_with_a_maximum_age_of_0_days|stale::stale-pass|Password has expired.|the password has expired; change it with passwd
CASES
}

# What a typo or a waived check must never do: start the JVM as root.
@test "who the JVM runs as: unknown users refused with 67, a waived check for a locked account" {
  while IFS='|' read -r name options code uid env; do
    # shellcheck disable=SC2086
    run --separate-stderr bash -c "export HOME=/caller USER=caller LOGNAME=caller
      printf 'HOME=/custom\n' | '$QORVEL' $options '$FAKE_JVM'"
    got="$status:$(seen uid <<<"$output")"
    for key in HOME USER LOGNAME; do got+=":$(seen "env=$key" <<<"$output")"; done
    [ "$got" = "$code:$uid:$env" ] || { echo "$name: $got $stderr"; false; }
  done <<'CASES'
typo_in_a_name|-s -u nosuchuser::|67||::
number_that_is_no_id|-s -m silent -u '#12x'|67||::
waived_check_for_a_locked_account|-s --no-password-check -u svc::|0|2007|/srv/svc:svc:svc
given_password_is_still_checked|-s --no-password-check -u svc::svc-pass|5||::
switch_sets_the_accounts_home_and_names|-s -u carol::sha-pass|0|2003|/home/carol:carol:carol
an_e_line_keeps_its_home|-s -e 1 -u carol::sha-pass|0|2003|/custom:carol:carol
no_switch_keeps_the_callers|-s -u root|0|0|/caller:caller:caller
CASES
  run --separate-stderr "$QORVEL" -m silent -u nosuchuser:: "$FAKE_JVM"
  eq "$status:$stderr" "67:Unknown user nosuchuser: nothing started"
  # The dry run names the account and groups the switch would give.
  run --separate-stderr "$QORVEL" --dry-run -u ally::ally-pass "$FAKE_JVM"
  [ "$(grep -E '^(user|group|groups):' <<<"$output" | paste -sd'|')" = "user: ally (2001)|group: alice (2001)|groups: 2001,3001" ]
}

@test "the authentication debug file gets one line per check and never a secret" {
  QRB_AUTH_DEBUG= run "$QORVEL" -s -u carol::sha-pass -1 out.txt "$FAKE_JVM"
  [ "$status" -eq 0 ]
  QRB_AUTH_DEBUG=1 run "$QORVEL" -s -u carol::bad-pass "$FAKE_JVM"
  [ "$status" -eq 5 ]
  [ "$(cat authdbg.log)" = "IN qorvel - Password verified."$'\n'"IN qorvel - ERROR validating password: Password is invalid." ]
  [ "$(stat -c %a authdbg.log)" = 600 ]
  QRB_AUTH_DEBUG_FILE=other.log run "$QORVEL" -s -u carol::bad-pass "$FAKE_JVM"
  [ ! -e other.log ]
  QRB_AUTH_DEBUG=1 QRB_AUTH_DEBUG_FILE=other.log run "$QORVEL" -g -l dbg.log -s -ucarol::bad-pass "$FAKE_JVM"
  eq "$(cat other.log)" "IN qorvel - ERROR validating password: Password is invalid."
  grep -qxF "validateUserPassword, carol , xxxxxxx , FAILED " dbg.log
  ! grep -q -e sha-pass -e bad-pass -e '\$6\$' authdbg.log other.log || false
  ! grep -q 'bad-pass' dbg.log || false
  grep -qxF 'arg[5] = (-u<user group password not shown>)' dbg.log
}

# The launcher itself run as alice, through setpriv, so the shadow file is out of reach.
@test "an ordinary user runs as itself only, cannot read the shadow file, and fails the group switch" {
  as_alice() { setpriv --reuid=2001 --regid=2001 --clear-groups "$@"; }
  while IFS='|' read -r name spec code first_line; do
    run --separate-stderr as_alice "$QORVEL" -s -u "$spec" "$FAKE_JVM"
    [ "$status:$(sed -n 1p <<<"$stderr")" = "$code:$first_line" ] || { echo "$name: $status $stderr"; false; }
  done <<'CASES'
another_user_even_with_the_right_password|frank::frank-pass|1|Only the superuser can start the JVM as another user (frank)
own_password_needs_the_shadow_file|alice::des-pass|5|ERROR validating password:Cannot access shadow password entry.
group_switch_is_not_permitted|alice:staff|1|can't setgid, errno =1
CASES
  run --separate-stderr as_alice "$QORVEL" -s -u alice "$FAKE_JVM"
  [ "$status:$(seen uid <<<"$output")" = 0:2001 ]
  run --separate-stderr as_alice "$QORVEL" --no-password-check -u alice "$FAKE_JVM"
  [ "$status" -eq 248 ]
}

@test "--password-file gives the -u password when only the caller can use the file, else 5" {
  printf 'des-pass\n' > pw
  chmod 600 pw
  run --separate-stderr "$QORVEL" -s -u alice:: --password-file=pw -1 out.txt "$FAKE_JVM"
  [ "$status:$(seen uid out.txt)" = 0:2001 ]
  while IFS='|' read -r prepare problem; do
    printf 'des-pass\n' > pw && chmod 600 pw && chown root pw && eval "$prepare"
    run --separate-stderr "$QORVEL" -s -u alice:: --password-file=pw "$FAKE_JVM"
    [ "$status:$output:$stderr" = "5::Password file (pw) $(printf '%b' "$problem")" ] ||
      { echo "$prepare: $stderr"; false; }
  done <<'CASES'
chmod 640 pw|may be read or written by group or others
chmod 604 pw|may be read or written by group or others
chown alice pw|does not belong to the caller
: > pw|holds no password
rm pw|cannot be opened\nNo such file or directory
CASES
}

@test "a switched JVM gets no descriptor the caller left open; a set-ID install and a dump are refused" {
  run bash -c "exec 7</etc/shadow; '$QORVEL' -s -u carol::sha-pass '$FAKE_JVM'"
  [ "$status" -eq 0 ] && [[ ",$(seen fds <<<"$output")," != *,7,* ]]
  run bash -c "exec 7</etc/shadow; '$QORVEL' -s '$FAKE_JVM'"
  [[ ",$(seen fds <<<"$output")," == *,7,* ]]
  as_alice() { setpriv --reuid=2001 --regid=2001 --clear-groups "$@"; }
  cp "$QORVEL" "$bin/qorvel-setid" && chmod 6755 "$bin/qorvel-setid"
  run --separate-stderr as_alice "$bin/qorvel-setid" "$FAKE_JVM"
  eq "$status:$output:$stderr" "1::qorvel: refusing to run set-user-ID or set-group-ID"
  # Blocked on its -e line while it holds the password: no core, no tracing by alice.
  mkfifo lines
  setpriv --reuid=2001 --regid=2001 --clear-groups "$QORVEL" -u alice::des-pass -e 1 "$FAKE_JVM" \
    <lines >/dev/null 2>&1 & launcher=$!
  exec 8>lines
  owner=
  for _ in $(seq 1 100); do owner=$(stat -c %u /proc/$launcher/status 2>/dev/null); [ "$owner" = 0 ] && break; sleep 0.02; done
  exec 8>&-
  wait $launcher || true
  [ "$owner" = 0 ]
}
