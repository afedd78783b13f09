#!/usr/bin/env bash
# check_engine_test.sh BUILD MODULES ENGINE SCRIPTED [WINE]: what nelva-check-engine says of good and bad modules.
set -u
build=$1 modules=$2 engine=$3 scripted=$4 wine=${5-}
here=$(mktemp -d)
trap 'rm -rf "$here"' EXIT
export LC_ALL=C.UTF-8
# A sanitizer's library must come first in a process, and broken engines leak.
export ASAN_OPTIONS=${ASAN_OPTIONS-}:detect_leaks=0:verify_asan_link_order=0
program=$build/bin/nelva-check-engine end=.so
[[ $wine ]] && { program=$program.exe; end=.dll; }
failed=0 count=0
printf 'language = en-us\n' >"$here/voice-22i"

run() { out=$(${wine:+"$wine"} "$program" "$@" 2>&1 </dev/null | tr -d '\r'; exit "${PIPESTATUS[0]}"); status=$?; }

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

broken() { expect "broken_$1" 1 "$2" "$modules/broken_$1$end" "$here" "$here/voice-22i"; }

keeps='the module keeps the contract'
expect shipped 0 "$keeps" "$engine" "$build/share/espeak-ng-data" "$here/voice-22i"
expect example 0 "$keeps" "$modules/tone_engine$end" "$here" "$here/voice-22i"
expect no_fault 0 "$keeps" "$modules/broken_NO_FAULT$end" "$here" "$here/voice-22i"
# It has no waves here: it conforms in its handles, and says nothing.
expect scripted 1 'no samples come' "$scripted" "$here" "$here/voice-22i"
broken NULL_HANDLE 'tts_create gives null: it does not work'
broken OFFSET_BEHIND_RECORD 'sample_offset 442 stands behind its record of 441 samples'
broken OFFSETS_FALL 'sample_offset falls back inside a record, from 7 to 3'
broken RANGE_BEHIND_DOCUMENT "stands behind the document's end"
broken RANGE_EMPTY 'the word from byte 0 to 0 is empty'
broken RANGE_CUTS_CHARACTER 'cuts a character of several bytes'
broken MARK_WITHOUT_NAME 'a mark without a name: label is null'
broken MARK_TWICE 'the mark "P0" comes 2 times'
broken NO_END 'the document does not end'
broken MORE_AFTER_END 'after the end tts_streamer_synth gives a record again'
broken SILENCE 'all samples are silent'
broken SAMPLES_NULL 'samples is null in a record with samples'
broken NULL_MESSAGE 'tts_errmsg gives null'
broken WORDS_BY_CHUNK 'other words come when 100 samples are asked for'
broken JUMP_ASTRAY 'the jump one sentence forward goes to the sentence'
broken NO_VOICE 'tts_load_voice gives null: it does not work'
expect lacking 2 'does not export tts_destroy' "$modules/no_engine$end" a b
expect missing 2 'cannot open' "$modules/there-is-none$end" a b
expect usage 2 'a module, a libPath and a voxPath are needed' one
expect option 2 "unknown or incomplete option '--what'" --what a b c
expect help 0 'usage: nelva-check-engine' --help
expect lexicon 1 'the lexicon cannot be loaded' --lexicon "$here/none.pls" "$engine" "$build/share/espeak-ng-data" \
    "$here/voice-22i"
# Behind the server, where the loader takes it in place of the shipped one: a tone of 60 ms for each letter.
if [[ ! $wine ]]; then
    mkdir "$here/lib"
    cp "$modules/tone_engine$end" "$here/lib/libtts_engine$end"
    count=$((count + 1))
    if ! { LD_LIBRARY_PATH=$here/lib "$build/bin/nelva-say" -o "$here/tone.wav" --events "$here/events" 'Hello tone.' &&
        [[ $(grep -c '"event":"word"' "$here/events") == 2 ]] &&
        grep -q '"event":"word","stream_offset":0,"text_offset":0,"text_length":5,"text":"Hello"' "$here/events" &&
        grep -q '"event":"viseme","stream_offset":2646' "$here/events"; }; then
        failed=$((failed + 1))
        printf 'the example does not speak through the server\n'
    fi
fi
printf '%s of %s failed\n' "$failed" "$count"
((failed == 0))
