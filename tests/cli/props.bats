#!/usr/bin/env bats
# qorvel-props over small files written here: what a section resolves to,
# a value for a script, the findings of check and a service record.

bats_require_minimum_version 1.5.0

setup() {
  cd "$BATS_TEST_TMPDIR"
  unset QV_PROPS_UNSET
  printf '[Srv]\ncp=base.jar\nopts=-Xmx1g\n[Srv.Prod]\ncp=prod.jar,\n   more.jar\n[Srv.Prod.Linux]\nopts=-Xmx4g\n' > app.properties
}

@test "show lists each level found or absent and each value with the level and line it came from" {
  run --separate-stderr "$QORVEL_PROPS" show app.properties Srv.Prod.Linux
  [ "$status" -eq 0 ]
  [ "$output" = "level Srv: line 1
level Srv.Prod: line 4
level Srv.Prod.Linux: line 7
cp = prod.jar, more.jar  [Srv.Prod:5]
opts = -Xmx4g  [Srv.Prod.Linux:8]" ]
  run --separate-stderr "$QORVEL_PROPS" show app.properties Svr.Prod
  [ "$status:$output" = "1:level Svr: absent"$'\n'"level Svr.Prod: absent" ]
  [ "$stderr" = "qorvel-props: no level of Svr.Prod is in app.properties" ]
}

@test "get gives a script the resolved value alone, or 1 when no level sets the key" {
  cp=$("$QORVEL_PROPS" get app.properties Srv.Prod cp)
  [ "$cp" = "prod.jar, more.jar" ]
  run --separate-stderr "$QORVEL_PROPS" get app.properties Srv.Prod nokey
  [ "$status:$output:$stderr" = "1::qorvel-props: nokey is set in no level of Srv.Prod" ]
  run --separate-stderr "$QORVEL_PROPS" get missing.properties Srv cp
  [ "$status:$stderr" = "2:qorvel-props: missing.properties: no such file here, and VTX is unset, so \$VTX/properties was not searched" ]
  mkdir -p "$BATS_TEST_TMPDIR/vtx/properties" && cp app.properties "$BATS_TEST_TMPDIR/vtx/properties/elsewhere.properties"
  [ "$(VTX="$BATS_TEST_TMPDIR/vtx" "$QORVEL_PROPS" get elsewhere.properties Srv cp)" = "base.jar" ]
}

@test "an operand that is no regular file gets one message, and the others are still read" {
  mkdir dir && mkfifo fifo
  run --separate-stderr timeout 10 "$QORVEL_PROPS" check dir fifo /dev/zero app.properties
  [ "$status:$output" = "2:" ]
  [ "$stderr" = "qorvel-props: dir: Is a directory
qorvel-props: fifo: not a regular file
qorvel-props: /dev/zero: not a regular file" ]
}

@test "sections lists the headers the library enumerates and marks those no search reaches" {
  printf '[B]x\n[[C]]\n[Desktop Entry]\n[srv.a]\n[b]\n[SRV.a]\n' > h.properties
  run "$QORVEL_PROPS" sections -l h.properties
  [ "$output" = "    1  B  (no search reaches it)
    2  [C  (no search reaches it)
    3  Desktop Entry  (no search reaches it)
    4  srv.a
    5  b
    6  SRV.a  (no search reaches it)" ]
  [ "$("$QORVEL_PROPS" sections h.properties SRV | paste -sd,)" = "srv.a,SRV.a" ]
}

@test "check reports each kind of finding at its line and exits 2, 1 or 0" {
  uuid=$(head -c 70 /dev/zero | tr '\0' u)
  printf '%s\n' '[S] note' 'port = 1' 'k=1' 'k=2' 'loop=!{value-of:s.loop}' 'ref=!{value-of:nokey}' \
    'ref2=!{value-of:Nosec.k}' 'env=${QV_PROPS_UNSET}' 'just some words' '[S]' '[T U]' '[UBroker]' \
    "uuid=$uuid" > bad.properties
  printf 'last=1' >> bad.properties
  run "$QORVEL_PROPS" check bad.properties
  [ "$status" -eq 2 ]
  [ "$output" = "bad.properties:1: warning: text after the header's ']' is ignored
bad.properties:2: warning: blanks before '=' are part of the key: 'port ' never matches 'port'
bad.properties:4: error: key k is already set at line 3: this value is never read
bad.properties:5: error: the substitution cannot complete: references that never settle, or a result past 4095 characters
bad.properties:6: error: !{value-of:nokey} names a key that does not exist
bad.properties:7: error: !{value-of:Nosec.k} names a section that does not exist
bad.properties:8: warning: \${QV_PROPS_UNSET} refers to a variable that is not set here
bad.properties:9: error: neither an entry (key=value), a comment nor a header
bad.properties:10: error: section S already begins at line 1: this one is never found
bad.properties:11: warning: a blank inside the header: only its first word is the header
bad.properties:13: warning: the value of uuid is 70 characters; its record field keeps 63
bad.properties:14: warning: the last line has no line end: no reader sees it" ] || { echo "$output"; false; }
  printf '[S]\r\na=1\r\n' > crlf.properties
  run "$QORVEL_PROPS" check crlf.properties
  [ "$status:$output" = "1:crlf.properties:1: warning: carriage-return line end (2 lines): values keep the carriage return and a trailing ',' no longer continues the line" ]
  run "$QORVEL_PROPS" check app.properties
  [ "$status:$output" = "0:" ]
  QORVEL_DEMO_CLASSES=/c QORVEL_DEMO_POLICY=/p run "$QORVEL_PROPS" check "$QORVEL_SOURCE_DIR/examples/properties/JavaTools.properties"
  [ "$status:$output" = "0:" ]  # the shipped example
}

@test "service reads a broker through the library and prints its 55 fields in table order, also as JSON" {
  printf '[UBroker]\nportNumber=3999\n[UBroker.CV]\n[UBroker.CV.demo]\nuuid=props\n' > ub.properties
  run --separate-stderr "$QORVEL_PROPS" service broker ub.properties CV demo
  [ "$status" -eq 0 ]
  [ "$(wc -l <<<"$output")" -eq 55 ]
  [ "$(sed -n '1p;$p' <<<"$output" | paste -sd'|')" = "infoVersion = 9010|brenixGroup = " ]
  grep -qx 'portNumber = 3999' <<<"$output"
  "$QORVEL_PROPS" --json service broker ub.properties CV demo | python3 -m json.tool > /dev/null
  run --separate-stderr "$QORVEL_PROPS" service broker ub.properties CV nope
  [ "$status" -eq $((10004 % 256)) ]
  [[ "$stderr" == *"code 10004"*"Specified Service Name does not exist" ]]
  run --separate-stderr "$QORVEL_PROPS" service bogus ub.properties
  [ "$status:$stderr" = "2:qorvel-props: unknown service kind 'bogus'" ]
}
