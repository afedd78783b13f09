# shellcheck shell=bash
# Sourced by the tests of whole programs: a folder to work in, and checks that are counted and say what was expected.

cases=0
failures=0

# begin BUILD [WINE]: goes to a fresh folder, `scratch`, which goes with the test. `build` is the folder of the products
# and `wine` what runs them, empty for a native build.
begin() {
    export LC_ALL=C.UTF-8 WINEDEBUG=-all
    build=$(cd "$1" && pwd) || exit 1
    wine=${2:-}
    # Debian puts the loader there when no wrapper is installed.
    if [ -n "$wine" ] && ! command -v "$wine" >/dev/null; then wine=/usr/lib/wine/wine64; fi
    scratch=$(mktemp -d)
    trap 'rm -rf "$scratch"' EXIT
    cd "$scratch" || exit 1
    # Nothing of a developer's desktop reaches the test.
    unset DISPLAY
}

give_up() {
    printf 'FAILED before the first case: %s\n' "$1"
    exit 1
}

# windows_path PATH: as Wine's drive Z: has it.
windows_path() { printf 'Z:%s' "${1//\//\\}"; }

complain() {
    failures=$((failures + 1))
    printf 'FAILED %s\n' "$*"
}

# same NAME EXPECTED ACTUAL
same() {
    cases=$((cases + 1))
    [ "$2" == "$3" ] || complain "$1"$'\n  expected: '"$2"$'\n  actual:   '"$3"
}

# run NAME STATUS STDOUT STDERR ARGUMENT...: the whole output of "${tool[@]}"; standard input is the caller's.
run() {
    local name=$1 status=$2 out=$3 err=$4
    shift 4
    "${tool[@]}" "$@" >out.txt 2>err.txt
    local got=$?
    same "$name: exit status" "$status" "$got"
    same "$name: standard output" "$out" "$(tr -d '\r' <out.txt)"
    same "$name: standard error" "$err" "$(tr -d '\r' <err.txt)"
}

# The last line of a test: how it went. Fails if a check did.
report() {
    printf '%d checks, %d failed\n' "$cases" "$failures"
    [ "$failures" == 0 ]
}
