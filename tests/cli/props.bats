#!/usr/bin/env bats
# qorvel-props over small files written here: what a section resolves to,
# a value for a script, the findings of check, a service record, the
# launcher's view, a diff, the JSON of every command and the completion.

load ../lib/common

setup() {
  common_setup
  unset QV_PROPS_UNSET QORVEL_DEMO_CLASSES QORVEL_DEMO_POLICY
  printf '[Srv]\ncp=base.jar\nopts=-Xmx1g\n[Srv.Prod]\ncp=prod.jar,\n   more.jar\n[Srv.Prod.Linux]\nopts=-Xmx4g\n' > app.properties
}

@test "show lists each level found or absent and each value with the level and line it came from" {
  run --separate-stderr "$QORVEL_PROPS" show app.properties Srv.Prod.Linux
  [ "$status" -eq 0 ]
  eq "$output" "level Srv: line 1
level Srv.Prod: line 4
level Srv.Prod.Linux: line 7
cp = prod.jar, more.jar  [Srv.Prod:5]
opts = -Xmx4g  [Srv.Prod.Linux:8]"
  run --separate-stderr "$QORVEL_PROPS" show app.properties Svr.Prod
  [ "$status:$output" = "1:level Svr: absent"$'\n'"level Svr.Prod: absent" ]
  eq "$stderr" "qorvel-props: no level of Svr.Prod is in app.properties"
}

@test "get gives a script the resolved value alone, or 1 when no level sets the key" {
  cp=$("$QORVEL_PROPS" get app.properties Srv.Prod cp)
  eq "$cp" "prod.jar, more.jar"
  run --separate-stderr "$QORVEL_PROPS" get app.properties Srv.Prod nokey
  eq "$status:$output:$stderr" "1::qorvel-props: nokey is set in no level of Srv.Prod"
  run --separate-stderr "$QORVEL_PROPS" get missing.properties Srv cp
  eq "$status:$stderr" "2:qorvel-props: cannot read missing.properties: no such file here, and VTX is unset, so \$VTX/properties was not searched"
  mkdir -p "$BATS_TEST_TMPDIR/vtx/properties" && cp app.properties "$BATS_TEST_TMPDIR/vtx/properties/elsewhere.properties"
  [ "$(VTX="$BATS_TEST_TMPDIR/vtx" "$QORVEL_PROPS" get elsewhere.properties Srv cp)" = "base.jar" ]
}

@test "an operand that is no regular file gets one message, and the others are still read" {
  mkdir dir && mkfifo fifo
  run --separate-stderr timeout 10 "$QORVEL_PROPS" check dir fifo /dev/zero app.properties
  eq "$status:$output" "2:"
  eq "$stderr" "qorvel-props: cannot read dir: Is a directory
qorvel-props: cannot read fifo: not a regular file
qorvel-props: cannot read /dev/zero: not a regular file"
}

@test "sections lists the headers the library enumerates and marks those no search reaches" {
  printf '[B]x\n[[C]]\n[Desktop Entry]\n[srv.a]\n[b]\n[SRV.a]\n' > h.properties
  run "$QORVEL_PROPS" sections -l h.properties
  eq "$output" "    1  B  (no search reaches it)
    2  [C  (no search reaches it)
    3  Desktop Entry  (no search reaches it)
    4  srv.a
    5  b
    6  SRV.a  (no search reaches it)"
  [ "$("$QORVEL_PROPS" sections h.properties SRV | paste -sd,)" = "srv.a,SRV.a" ]
}

# Each row: a file name, its text (printf), and the findings check gives it,
# as line:severity in line order.
check_rows() {
  while IFS='|' read -r name text expected; do
    printf "$text" > "$name.properties"
    got=$("$QORVEL_PROPS" check "$name.properties" | sed -E 's/^[^:]*:([0-9]+): ([a-z]+):.*/\1:\2/' | paste -sd' ')
    [ "$got" = "$expected" ] || { echo "$name: got '$got', want '$expected'"; return 1; }
  done
}

@test "check finds each trap at its line, and nothing where a later alternative stands in" {
  u70=$(printf 'u%.0s' {1..70}) a1100=$(printf 'a%.0s' {1..1100}) b2100=$(printf 'b%.0s' {1..2100})
  n254=$(printf 'n%.0s' {1..254})
  check_rows <<EOF
joins|[A]\njvmargs=-Xmx1g,\n[B]\nx=1\n# note,\nlost=1\n# note,\n\n[C]\n|3:error 6:error 9:error
headers|[C]]\n[[B]]\n[B]x\n[T U]\n[A\nk=1\n[]\nk=1\n[$n254]\n[S] note\n[S]\n|1:error 2:error 3:error 4:error 5:error 7:error 9:error 10:warning 11:error
entries|k=1\nk=2\nport = 1\njust words\nv=$a1100\nw=$b2100\nlast=1|2:error 3:error 4:error 5:error 6:error 6:error 7:error
references|[S]\nloop=!{value-of:s.loop}\nref=!{value-of:nokey}\nref2=!{value-of:Nosec.k}\nok=!{value-of:S.ref}\n|2:error 3:error 4:error
environment|v=\$QV_PROPS_UNSET\nw=\${QV_PROPS_UNSET}/x\np=?\${QV_PROPS_UNSET}?/opt/default?\nq=?\$QV_PROPS_UNSET?x?\nr=?\${QV_PROPS_UNSET}?\${HOME}/x?\ns=-Da=\$HOME -Db=1\nt=?\${HOME}??\n|1:warning 2:warning 4:warning 5:warning 6:warning
services|[UBroker]\nportNumber=30x1\nsrvrLogingLevel=2\ninfoVersion=9000\nclasspath=x\nuuid=$u70\n[UBroker.WS.catalog]\n[NameServer]\nportNumber=+12\n|2:warning 3:warning 4:error 6:warning 7:error
crlf|[S]\r\na=1\r\n|1:warning
EOF
  run "$QORVEL_PROPS" check services.properties
  [ "$status" -eq 2 ]
  [[ "$output" == *"srvrLogingLevel is no key of a UBroker section: did you mean srvrLoggingLevel?"* ]]
  [[ "$output" == *"services.properties:7: error: a reader of UBroker.WS.catalog also reads UBroker.WS, which is missing"* ]]
  run "$QORVEL_PROPS" check environment.properties
  [[ "$output" == *":5: warning: the alternatives give '/x' here, not '$HOME/x'"* ]]
  run "$QORVEL_PROPS" check crlf.properties
  [ "$status" -eq 1 ]
  run "$QORVEL_PROPS" check app.properties "$QORVEL_SOURCE_DIR/examples/properties/JavaTools.properties"
  [ "$status:$output" = "0:" ]  # the shipped example, in a default environment
  QORVEL_DEMO_CLASSES=/c run "$QORVEL_PROPS" check "$QORVEL_SOURCE_DIR/examples/properties/JavaTools.properties"
  eq "$status:$output" "0:"
}

@test "service reads a broker through the library and prints its 55 fields in table order, also as JSON" {
  printf '[UBroker]\nportNumber=3999\n[UBroker.CV]\n[UBroker.CV.demo]\nuuid=props\n' > ub.properties
  run --separate-stderr "$QORVEL_PROPS" service broker ub.properties CV demo
  [ "$status" -eq 0 ]
  [ "$(wc -l <<<"$output")" -eq 55 ]
  [ "$(sed -n '1p;$p' <<<"$output" | paste -sd'|')" = "infoVersion = 9010|brenixGroup = " ]
  grep -qx 'portNumber = 3999' <<<"$output"
  "$QORVEL_PROPS" --json service broker ub.properties CV demo | python3 -m json.tool > /dev/null
}

@test "each command fails alike: which key or section, why, status 1 for what cannot be read, 2 for usage" {
  printf '[S]\nloop=!{value-of:s.loop}\n' > loop.properties
  printf '[UBroker]\ninfoVersion=9000\n[UBroker.CV]\n[UBroker.CV.ok]\ninfoVersion=9010\n' > ub.properties
  cp app.properties ./-dash.properties
  loop='qorvel-props: the substitution of loop (S:2) cannot complete: references that never settle, or a result past 4095 characters'
  while IFS='|' read -r want pattern args; do
    run --separate-stderr "$QORVEL_PROPS" $args
    [[ "$status" == "$want" && "$stderr" == $pattern ]] || { echo "$args: $status $stderr"; false; }
  done <<EOF
1|$loop|get loop.properties S loop
1|$loop|show loop.properties S
1|qorvel-props: ub.properties read failed: code 10004, *: Specified Service Name does not exist|service broker ub.properties CV nope
0|qorvel-props: note: ub.properties: code 10005, *|service broker ub.properties CV ok
2|qorvel-props: bogus.properties read failed: code 10015, system error 2, *|service broker bogus.properties CV ok
2|qorvel-props: unknown service kind 'bogus'|service bogus ub.properties
0||get -- -dash.properties Srv cp
0||-h
2|qorvel-props: check takes no -l (see --help)|check -l app.properties
2|qorvel-props: get takes no --launch (see --help)|get --launch app.properties Srv cp
2|qorvel-props: show takes --raw or --launch, not both|show --raw --launch app.properties Srv
2|qorvel-props: unknown option -x (see --help)|show -x app.properties Srv
EOF
}

@test "every command prints one JSON object, format 1 first, errors included, for any bytes" {
  printf '[UBroker]\n[UBroker.CV]\n[UBroker.CV.demo]\n' > ub.properties
  printf '[A]\nk=caf\xe9 \xc3\xa9\n[\xff]\n' > latin1.properties
  while IFS='|' read -r want fields args; do
    run --separate-stderr "$QORVEL_PROPS" --json $args
    [ "$status" -eq "$want" ] || { echo "$args: $status"; false; }
    python3 -c 'import json, sys
d = json.loads(sys.argv[2])
assert list(d)[0] == "format" and d["format"] == 1 and set(sys.argv[1].split(",")) <= set(d), d
' "$fields" "$output" || { echo "$args: $output"; false; }
  done <<'EOF'
0|file,sections|sections latin1.properties
0|file,section,levels,keys|show app.properties Srv.Prod
0|file,section,os,path,levels,keys|show --launch app.properties Srv.Prod
0|file,section,key,value,level,line,substitution_failed|get latin1.properties A k
1|file,section,key,error|get app.properties Srv nokey
1|left,right,differences,equal|diff app.properties Srv Srv.Prod
0|files|check app.properties
0|kind,file,names,result,detail,fields|service broker ub.properties CV demo
2|error|get missing.properties Srv cp
2|error|bogus
EOF
  value=$("$QORVEL_PROPS" --json get latin1.properties A k | python3 -c 'import json, sys; print(json.load(sys.stdin)["value"])')
  [ "$value" = "café é" ]  # a stray byte read as Latin-1, UTF-8 as it stands
}

@test "show --launch gives what qorvel -a hands the JVM, and refuses where it refuses" {
  a=$(head -c 1000 /dev/zero | tr '\0' a)
  printf '[J]\nclasspath=a.jar,b.jar\njvmargs=-Xmx1g\n[J.%s]\npolicyfile=/p\n[K]\na=%s\njvmargs=!{value-of:a}!{value-of:a}!{value-of:a}\n' \
    "$(uname -s)" "$a" > launch.properties
  run env -u PATH "$QORVEL" --dry-run -a launch.properties::J /bin/true
  eq "${lines[0]}" "/bin/true -classpath a.jar:b.jar -Xmx1g -Djava.security.policy=/p"
  run "$QORVEL_PROPS" show --launch launch.properties J
  eq "$output" "level J: line 1
level J.$(uname -s): line 4
classpath = a.jar:b.jar  [J:2]
jvmargs = -Xmx1g  [J:3]
policyfile = /p  [J.$(uname -s):5]"
  run --separate-stderr env -u PATH "$QORVEL" --dry-run -a launch.properties::K /bin/true
  [[ "$status" -ne 0 && "$stderr" == *"(jvmargs) is longer than 2047 characters"* ]]
  run --separate-stderr "$QORVEL_PROPS" show --launch launch.properties K
  [[ "$status" -eq 1 && "$stderr" == *"jvmargs (K:8) is longer than 2047 characters" ]]
}

@test "diff prints each key two sections disagree on, with origins, and exits 0, 1 or 2" {
  printf '[Srv]\ncp=base.jar\n[Srv.Stage]\ncp=stage.jar\nextra=1\n' > stage.properties
  while IFS='|' read -r want args expected; do
    run --separate-stderr "$QORVEL_PROPS" diff $args
    [ "$status:$output" = "$want:$(printf "$expected")" ] || { echo "$args: $status $output"; false; }
  done <<'EOF'
1|app.properties Srv.Prod stage.properties Srv.Stage|cp: prod.jar, more.jar [Srv.Prod:5] | stage.jar [Srv.Stage:4]\nopts: -Xmx1g [Srv:3] | (unset)\nextra: (unset) | 1 [Srv.Stage:5]
0|app.properties Srv.Prod.Linux app.properties Srv.Prod.Linux|
2|app.properties Srv Nope|
EOF
}

@test "completion offers the file's sections after a file operand" {
  [ -r /usr/share/bash-completion/bash_completion ] || skip "bash-completion is not installed"
  mkdir bin && ln -s "$QORVEL_PROPS" bin/qorvel-props
  run env PATH="$PWD/bin:$PATH" bash -c 'source /usr/share/bash-completion/bash_completion
    source "$1/packaging/qorvel-props.bash-completion"
    COMP_WORDS=(qorvel-props show app.properties Srv.P) COMP_CWORD=3 COMP_LINE="${COMP_WORDS[*]}"
    COMP_POINT=${#COMP_LINE}
    _qorvel_props qorvel-props Srv.P app.properties; echo "${COMPREPLY[*]}"' - "$QORVEL_SOURCE_DIR"
  eq "$output" "Srv.Prod Srv.Prod.Linux"
}
