# Shared by the root-only suites: test passwd, group and shadow files are
# bind-mounted over the system's inside the private mount namespace that ./run
# creates, so the machine's own accounts are never touched. Hashes are made
# here with the system's own tools. Each test runs in its own sticky,
# world-writable directory under /tmp, as the test users would find one.

load ../lib/common

mount_test_accounts() {
  if [ "$(readlink /proc/self/ns/mnt)" = "$(readlink /proc/1/ns/mnt)" ]; then
    echo "refusing to bind-mount account files outside a private mount namespace" >&2
    return 1
  fi
  local etc=$BATS_FILE_TMPDIR/etc yescrypt_salt today
  mkdir -p "$etc"
  # The test users run the launcher and the stand-in, so both must be
  # reachable from outside a checkout that others cannot enter (/root).
  bin=$(mktemp -d /tmp/qv-identity-bin.XXXXXX)
  chmod 755 "$bin"
  cp "$QORVEL" "$FAKE_JVM" "$bin/"
  export QORVEL="$bin/$(basename "$QORVEL")" FAKE_JVM="$bin/$(basename "$FAKE_JVM")" bin
  # libcrypt's own salt maker: a yescrypt setting is more than random letters.
  yescrypt_salt=$(python3 -c 'import ctypes; c = ctypes.CDLL("libcrypt.so.1")
c.crypt_gensalt.restype = ctypes.c_char_p
print(c.crypt_gensalt(b"$y$", 0, None, 0).decode())')
  {
    echo 'root:x:0:0:root:/root:/bin/bash'
    echo 'alice:x:2001:2001::/tmp:/bin/sh'
    echo 'bob:x:2002:2002::/tmp:/bin/sh'
    echo 'carol:x:2003:2003::/home/carol:/bin/sh'
    echo 'dave:x:2004:2004::/tmp:/bin/sh'
    echo 'erin:X:2005:2005::/tmp:/bin/sh'
    echo "frank:$(perl -e 'print crypt("frank-pass", "fr")'):2006:2006::/tmp:/bin/sh"
    echo 'ally:x:2001:2001::/tmp:/bin/sh'
    echo 'svc:x:2007:2007::/srv/svc:/usr/sbin/nologin'
    echo 'gone:x:2008:2008::/tmp:/bin/sh'
    echo 'stale:x:2009:2009::/tmp:/bin/sh'
  } > "$etc/passwd"
  # gone and stale expire today: an expiry day counts from its start, and a
  # maximum age of 0 days expires the password the day it is set.
  today=$(($(date +%s) / 86400))
  {
    echo 'root:*:19000:0:99999:7:::'
    echo "alice:$(perl -e 'print crypt("des-pass", "al")'):19000:0:99999:7:::"
    echo "bob:$(openssl passwd -1 md5-pass):19000:0:99999:7:::"
    echo "carol:$(openssl passwd -6 sha-pass):19000:0::7:::"  # no maximum age
    echo "dave:$(perl -e 'print crypt("yes-pass", $ARGV[0])' "$yescrypt_salt"):19000:0:99999:7:::"
    echo "erin:$(openssl passwd -6 erin-pass):19000:0:99999:7:::"
    echo "ally:$(openssl passwd -6 ally-pass):19000:0:99999:7:::"
    echo "svc:!$(openssl passwd -6 svc-pass):19000::::::"
    echo "gone:$(openssl passwd -6 gone-pass):19000:0:99999:7::$today:"
    echo "stale:$(openssl passwd -6 stale-pass):$today:0:0:7:::"  # must change it at once
  } > "$etc/shadow"
  chmod 600 "$etc/shadow"
  printf '%s\n' 'root:x:0:' 'alice:x:2001:' 'devs:x:3000:alice,frank' 'staff:x:3001:ally' \
    > "$etc/group"
  for f in passwd shadow group; do mount --bind "$etc/$f" "/etc/$f"; done
}

setup() {
  common_setup
  # Reachable by the test users after the switch.
  work=$(mktemp -d /tmp/qv-identity.XXXXXX)
  mkdir "$work/run"
  chmod 1777 "$work" "$work/run"
  cd "$work"
}

teardown() { rm -rf "$work"; }

# Before bats removes the file's own directory, which holds the mounted files.
unmount_test_accounts() {
  umount /etc/passwd /etc/shadow /etc/group
  rm -rf "$bin"
}

setup_file() { mount_test_accounts; }

teardown_file() { unmount_test_accounts; }

