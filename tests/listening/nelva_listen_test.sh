#!/usr/bin/env bash
# nelva_listen_test.sh BUILD DATA ENGINE [WINE]: nelva-listen as a black box, and a sample of the shipped voices.
set -u
build=$1 data=$2 engine=$3 wine=${4-}
here=$(mktemp -d)
trap 'rm -rf "$here"' EXIT
export LC_ALL=C.UTF-8
# A sanitizer's library must come first in a process.
export ASAN_OPTIONS=${ASAN_OPTIONS-}:verify_asan_link_order=0
program=$build/bin/nelva-listen
[[ $wine ]] && program=$program.exe
failed=0 count=0

run() {
    out=$(${wine:+"$wine"} "$program" "$@" 2>&1 </dev/null | tr -d '\r'; exit "${PIPESTATUS[0]}")
    status=$?
}

# expect NAME STATUS TEXT ARGUMENT...: TEXT is in the output.
expect() {
    local name=$1 wanted=$2 text=$3
    shift 3
    run "$@"
    count=$((count + 1))
    [[ $status == "$wanted" && $out == *"$text"* ]] && return 0
    failed=$((failed + 1))
    printf '%s: status %s, wanted %s with "%s"; output:\n%s\n' "$name" "$status" "$wanted" "$text" "$out"
}

# What ships, and a few sentences and signs of a voice.
sample=(--module "$engine" --lib-path "$build/share/espeak-ng-data" --texts "$data/listening" --most 2)

expect help 0 'usage: nelva-listen' --help
expect no_voice 2 'a voice is needed' --most 3
expect option 2 "unknown option '--what'" --what x a
expect value 2 "'--most' is unknown or needs a value" a --most
expect number 2 "'x' is no number" a --most x
expect measurement 2 "there is no measurement 'word'; did you mean 'words'?" a --only word
expect no_module 1 'cannot open' --module "$here/none" --texts "$data/listening" "$data/voices/de-22i"
expect no_text 1 'there is no text for the language de' --texts "$here" "$data/voices/de-22i"
expect no_voice_file 1 'cannot be loaded' "${sample[@]}" "$here/de-22i"
expect limit 1 'words not read' "${sample[@]}" --only script --limit 10 "$data/voices/kok-22i"
expect table 0 "| de | yes | 0 |" "${sample[@]}" --only script --table - "$data/voices/de-22i"

# What must hold of every voice, heard of some.
for voice in en-us de ko ar; do
    expect "$voice" 0 'without event' "${sample[@]}" --only script,words,stray,spelled,alone --limit 0 \
        "$data/voices/$voice-22i"
done

printf '%s of %s failed\n' "$failed" "$count"
((failed == 0))
