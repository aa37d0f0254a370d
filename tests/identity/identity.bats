#!/usr/bin/env bats
# Password check and identity switch against real account databases (see
# common.bash).

bats_require_minimum_version 1.5.0

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

@test "wrong, empty and missing passwords are refused with 5 before any fork" {
  while IFS='|' read -r name spec console; do
    run --separate-stderr "$QORVEL" -u "$spec" "$FAKE_JVM"
    [ "$status:$output" = 5: ] || { echo "$name: $status $output"; false; }
    [ "$stderr" = "$(printf '%b' "ERROR validating password:${console}\nError attempting to start as a daemon, errno 5\nInput/output error")" ] ||
      { echo "$name: $stderr"; false; }
  done <<'CASES'
wrong_des|alice::wrong|Password does not match.
wrong_sha512|carol::sha-pas|Password does not match.
longer_password_same_prefix|carol::sha-pass-and-more|Password does not match.
empty_password|dave::|Password does not match.
no_password_for_another_user|bob|Password does not match.
locked_account|root::anything|Cannot verify blank password.
numeric_user_has_no_entry_to_check|#2003::sha-pass|Cannot access password entry.
CASES
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
  [ "$(cat other.log)" = "IN qorvel - ERROR validating password: Password is invalid." ]
  grep -qxF "validateUserPassword, carol , xxxxxxx , FAILED " dbg.log
  ! grep -rq -e pass -e '\$6\$' authdbg.log other.log
  ! grep -q 'bad-pass' dbg.log
  grep -qxF 'arg[5] = (-u<user group password not shown>)' dbg.log
}

# The launcher itself run as alice, through setpriv, so the shadow file is out of reach.
@test "an ordinary user cannot read the shadow file, gets no user switch, and fails the group switch" {
  as_alice() { setpriv --reuid=2001 --regid=2001 --clear-groups "$@"; }
  run --separate-stderr as_alice "$QORVEL" -u bob::md5-pass "$FAKE_JVM"
  [ "$status" -eq 5 ]
  [ "$(sed -n 1p <<<"$stderr")" = "ERROR validating password:Cannot access shadow password entry." ]
  run --separate-stderr as_alice "$QORVEL" -s -u frank::frank-pass "$FAKE_JVM"
  [ "$status" -eq 0 ]
  [ "$(seen uid <<<"$output")" = 2001 ]
  run --separate-stderr as_alice "$QORVEL" -s -u frank:staff:frank-pass "$FAKE_JVM"
  [ "$status:$stderr" = 1:"can't setgid, errno =1"$'\n'"Operation not permittedError attempting to start as a daemon, errno 1"$'\n'"Operation not permitted" ]
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
