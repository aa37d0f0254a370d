#!/usr/bin/env bats
# Every field of every kind of service record, as qorvel-props prints what the
# library's reader filled, against one transcript per kind in tests/records:
# each case's output, messages and exit status. QORVEL_UPDATE_RECORDS=1 rewrites
# the transcripts; a rewritten one is right only once its diff is reviewed.

load ../lib/common

setup() {
  common_setup
  records=$QORVEL_SOURCE_DIR/tests/records
  cp "$records"/*.properties .
  export VTX=$PWD/vtx  # where a file that is not found is looked for
}

# A name of $1 characters, for the limits of section names.
n() { head -c "$1" /dev/zero | tr '\0' n; }

@test "each kind of service record matches its transcript" {
  mkdir got
  while read -r kind args; do
    status=0
    eval "\"\$QORVEL_PROPS\" service $kind $args" > out.txt 2> err.txt || status=$?
    { echo "\$ service $kind $args"; cat out.txt; sed 's/^/stderr: /' err.txt
      echo "exit: $status"; } | sed "s|$PWD|<cwd>|g" >> "got/$kind.golden"
  done <<'CASES'
broker services.properties CV svc1
broker services.properties CV svc2
broker services.properties CV GET_JUST_DEFAULT_UBPROPERTIES
broker services.properties CV get_just_default_ubproperties
broker services.properties CV ring
broker services.properties CV ''
broker services.properties CV x
broker services.properties CV $(n 250)
broker /nonexistent/x.properties CV x
broker versions.properties CV ok
broker versions.properties CV bad
broker empty.properties CV s
nameserver services.properties NS1
nameserver empty.properties n
messenger services.properties CGIIP
messenger empty.properties m
configuration conmgr.properties sports.cfg1
configuration conmgr.properties sports..cfg1.
configuration conmgr.properties a.b.c.d.e.f.g
configuration conmgr.properties a.b.c.d.e.f.g.h
configuration conmgr.properties $(n 1020)
configuration empty.properties c
database conmgr.properties any
database conmgr.properties d1
database empty.properties d
servergroup conmgr.properties sg
servergroup empty.properties g
replserver replication.properties
replserver empty.properties
replserver /nonexistent/x.properties
controlagent replication.properties agent1
controlagent replication.properties $(n 49)
controlagent replication.properties $(n 50)
controlagent empty.properties a
agent replication.properties
agent empty.properties
transition empty.properties
transition conmgr.properties
pmmgr replication.properties pm.main
pmmgr replication.properties main
pmmgr replication.properties $(n 63)
pmmgr replication.properties $(n 64)
pmmgr empty.properties pm
sqllist replication.properties
sqllist empty.properties
sqlconfig replication.properties c1
sqlconfig replication.properties $(n 239)
sqlconfig replication.properties $(n 240)
sqlconfig empty.properties c
sqldb replication.properties d1
sqldb replication.properties $(n 54)
sqldb replication.properties $(n 55)
sqldb empty.properties d
CASES
  if [ -n "${QORVEL_UPDATE_RECORDS:-}" ]; then cp got/*.golden "$records/"; fi
  diff -ru -x '*.properties' "$records" got  # also names a transcript without cases
}
