#!/bin/sh
# Scripts/install-dependencies on four machines that are made up of stand-ins for the programs it asks:
# everything there; packages missing and no rights; missing and root; missing and sudo without a password.
# usage: InstallDependenciesTest.sh SCRIPT
set -eu
script=$1
machine=$(mktemp -d)
trap 'rm -rf "$machine"' EXIT
log=$machine/log
failures=0

fail() {
    echo "FAILED: $1"
    failures=$((failures + 1))
}

# program NAME BODY: a stand-in that comes before the real one.
program() {
    printf '#!/bin/sh\n%s\n' "$2" >"$machine/bin/$1"
    chmod +x "$machine/bin/$1"
}
fresh() {
    rm -rf "$machine/bin"
    mkdir -p "$machine/bin"
    : >"$log"
    program apt-get "echo apt-get \"\$@\" >>$log"
    # Knows no ninja-build and no xdotool. Every package asked for comes after "-W -f FORMAT".
    program dpkg-query 'shift 3; for p; do case $p in ninja-build | xdotool) ;; *) echo "$p installed" ;; esac; done; exit 1'
    program id 'echo 1000'
    program sudo 'exit 1'
}
run() {
    status=0
    output=$(PATH=$machine/bin:$PATH "$script" "$@" 2>&1) || status=$?
}

fresh
program dpkg-query 'shift 3; for p; do echo "$p installed"; done'
run
[ "$status" = 0 ] && [ -z "$output" ] && [ ! -s "$log" ] || fail "all there: status $status, printed: $output"

fresh
run
[ "$status" = 1 ] || fail "no rights: status $status"
[ ! -s "$log" ] || fail "no rights: ran $(cat "$log")"
case "$output" in
*"apt-get update && apt-get install -y --no-install-recommends ninja-build xdotool'") ;;
*) fail "no rights: printed: $output" ;;
esac

fresh
program id 'echo 0'
run
[ "$status" = 0 ] || fail "root: status $status, printed: $output"
[ "$(sed 's/ -.*--no/ … --no/; s/ -o [^ ]*//' "$log")" = "apt-get update -qq
apt-get install … --no-install-recommends ninja-build xdotool" ] || fail "root: ran $(cat "$log")"

fresh
program sudo "echo sudo >>$log; [ \"\$1\" = -n ] || exit 1; shift; \"\$@\""
run
[ "$status" = 0 ] || fail "sudo: status $status, printed: $output"
grep -q '^apt-get install .* ninja-build xdotool$' "$log" || fail "sudo: ran $(cat "$log")"

fresh
program id 'echo 0'
program apt-get 'exit 100'
run
[ "$status" != 0 ] || fail 'a failing installation: was passed over'

fresh
run --nonsense
[ "$status" = 2 ] || fail "an unknown option: status $status"

[ "$failures" = 0 ]
