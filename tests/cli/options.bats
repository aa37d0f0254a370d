#!/usr/bin/env bats
# The option scan as a user meets it: exit status and exact console bytes.

bats_require_minimum_version 1.5.0

setup() {
  cd "$BATS_TEST_TMPDIR"
  unset QV_UNSET
}

usage_text() {
  printf '%s\n\n' "Use qorvel to setup a working environment prior to invoking the JVM"
  printf '%s\n' "Usage: qorvel -r umask -d -s -u [User:Group:Password] -w [Start in Directory] -c classpath -o [stdout|stderr] -e [envCount] -m [silent|verbose] -a [property-file::section] -x [property-file::section] -0 [stdin file] -1 [stdout file] -2 [stderr file] ..."
}

@test "no argument shows the usage on standard error and exits 255" {
  run --separate-stderr "$QORVEL"
  [ "$status" -eq 255 ]
  [ "$output" = "" ]
  [ "$stderr" = "$(usage_text)" ]
}

@test "an unknown option is reported, the scan goes on, and the run ends with 248" {
  run --separate-stderr "$QORVEL" -z -m silent java Main
  [ "$status" -eq 248 ]
  [ "$stderr" = "$QORVEL: illegal option -- z"$'\n'"$(usage_text)" ]
}

@test "a ':' letter is a bad option that the parser itself does not report" {
  run --separate-stderr "$QORVEL" -d: java Main
  [ "$status" -eq 248 ]
  [ "$stderr" = "$(usage_text)" ]
}

@test "a missing option argument is a bad option" {
  run --separate-stderr "$QORVEL" -c
  [ "$status" -eq 248 ]
  [[ "$stderr" == "$QORVEL: option requires an argument -- c"$'\n'"Use qorvel"* ]]
}

@test "a failing option ends the run with its own code before the bad-option outcome" {
  run --separate-stderr "$QORVEL" -z -w '$QV_UNSET/x' java Main
  [ "$status" -eq 253 ]
  [ "$stderr" = "$QORVEL: illegal option -- z"$'\n'"Unabled to set -w <workDir> option, error in argument: (\$QV_UNSET/x)" ]
}

@test "each expanded option fails with its code and message naming the argument as given" {
  while IFS='|' read -r option expected message; do
    run --separate-stderr "$QORVEL" "$option" '$QV_UNSET' java Main
    [ "$status" -eq "$expected" ] || { echo "$option gave $status"; return 1; }
    [ "$stderr" = "$message (\$QV_UNSET)" ] || { echo "$option: $stderr"; return 1; }
  done <<'CASES'
-c|254|Unabled to set -c <classpath> option, error in argument:
-w|253|Unabled to set -w <workDir> option, error in argument:
-0|244|Unabled to set -0 <file_stdin> option, error in argument:
-1|244|Unabled to set -1 <file_stdout> option, error in argument:
-2|244|Unabled to set -2 <file_stderr> option, error in argument:
CASES
}

@test "silent mode hides option failures but not the -u format error" {
  run --separate-stderr "$QORVEL" -m silent -c '$QV_UNSET' java Main
  [ "$status" -eq 254 ]
  [ "$stderr" = "" ]
  for value in "" "::secret" ":staff:secret"; do
    run --separate-stderr "$QORVEL" -m silent -u "$value" java Main
    [ "$status" -eq 252 ]
    [ "$stderr" = $'Format error in -u parameter\nsyntax is -u User:Group:Password' ]
  done
}

@test "-o stdout writes tagged lines on standard output" {
  run --separate-stderr "$QORVEL" -o stdout -c '$QV_UNSET' java Main
  [ "$status" -eq 254 ]
  [ "$stderr" = "" ]
  [ "$output" = '!+0099%Unabled to set -c <classpath> option, error in argument: ($QV_UNSET)' ]
}

@test "-o with any other destination silences the console" {
  for destination in none STDERR; do
    run --separate-stderr "$QORVEL" -o "$destination" -c '$QV_UNSET' java Main
    [ "$status" -eq 254 ]
    [ "$output$stderr" = "" ]
  done
}

@test "overlong and non-ASCII values are cut or refused, never a crash" {
  long=$(head -c 20000 /dev/zero | tr '\0' 'x')
  run "$QORVEL" -w "/$long" java Main
  [ "$status" -eq 253 ]
  run "$QORVEL" -u "$long" java Main
  [ "$status" -eq 252 ]
  run "$QORVEL" -1 "$long" java Main
  [ "$status" -eq 244 ]
  # After -z the cluster reads as -x with an overlong properties-file argument.
  run "$QORVEL" "-z$long" java Main
  [ "$status" -eq 254 ]
  run "$QORVEL" -z -o "$long" -c $'\xc3\xa9\xff$QV_UNSET' java Main
  [ "$status" -eq 254 ]
}
