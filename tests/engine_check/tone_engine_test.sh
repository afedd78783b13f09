#!/bin/bash
# The example synthesiser behind the real server: its module beside a copy of the server, spoken through nelva-say.
# What should be heard follows from the rule in tone_engine.c: a letter is 60 ms of 200 Hz and 20 Hz for each place in
# the alphabet, a blank is 30 ms of silence, the end of a sentence 200 ms.
#
#   tone_engine_test.sh BUILD_FOLDER TONE_MODULE [WINE]
#
# With WINE the folder is a Windows build, which runs in a Wine prefix of the test's own.
set -u
# shellcheck source=tests/support/checks.sh
source "$(dirname "${BASH_SOURCE[0]}")/../support/checks.sh"
module=$(realpath "$2") || exit 1
begin "$1" "${3:-}"
class='{A174EDD5-7D96-4DE4-BACE-EF267627D834}'

# ---- Installing ----
# The host's folder holds no synthesiser, so that the one beside the server is the only one there is.

native_set_up() {
    mkdir -p bin lib share/nelva/voices
    cp "$build/bin/nelva-say" bin/
    cp "$build/lib/libnelva_sapi.so" lib/
    cp "$module" lib/libtts_engine.so
    for name in tones-22i tones-8v; do
        printf '{"displayName":"%s","CLSID":"%s","libPath":"none","voxPath":"%s","Attributes":{"Name":"Tones","Language":"409"}}\n' \
            $name "$class" $name >"share/nelva/voices/$name.json"
    done
    tool=("$scratch/bin/nelva-say")
}

windows_set_up() {
    export WINEPREFIX=$scratch/wine
    local key='HKEY_LOCAL_MACHINE\Software\Microsoft\Speech\Voices\Tokens'
    mkdir host server
    cp "$build/bin/nelva-say.exe" host/
    cp "$build/bin/nelva_sapi.dll" server/
    cp "$module" server/tts_engine.dll
    {
        printf 'Windows Registry Editor Version 5.00\n\n'
        for name in tones-22i tones-8v; do
            printf '[%s\\%s]\n@="%s"\n"CLSID"="%s"\n"libPath"="none"\n"voxPath"="%s"\n\n' "$key" $name $name "$class" $name
            printf '[%s\\%s\\Attributes]\n"Name"="Tones"\n"Language"="409"\n\n' "$key" $name
        done
    } >voices.reg
    "$wine" wineboot -i >/dev/null 2>&1 || give_up "Wine does not start"
    "$wine" regedit /S voices.reg || give_up "the voices cannot be registered"
    "$wine" regsvr32 /s "$(windows_path "$scratch/server/nelva_sapi.dll")" || give_up "the class cannot be registered"
    tool=("$wine" "$scratch/host/nelva-say.exe")
}

if [ -n "$wine" ]; then windows_set_up; else native_set_up; fi

# ---- Listening ----

# tones WAV PLACE...: for each place FIRST+COUNT, in samples, the tone that is strongest there of 200, 220 ... 720 Hz,
# or 0 for silence. Behind a slash comes the loudness, the root of the mean square, in thousands.
tones() {
    local wav=$1 rate
    rate=$(od -An -tu4 -j24 -N4 "$wav" | tr -d ' ')
    shift
    od -An -v -td2 -w2 -j44 "$wav" | awk -v rate="$rate" -v places="$*" '
        { sample[NR - 1] = $1 }
        function power(first, count, frequency,    i, k, a, b, c) {
            k = 2 * cos(2 * 3.14159265358979 * frequency / rate)
            for (i = first; i < first + count; ++i) { c = sample[i] + k * a - b; b = a; a = c }
            return a * a + b * b - k * a * b
        }
        END {
            n = split(places, place, " ")
            for (p = 1; p <= n; ++p) {
                split(place[p], part, "+")
                sum = best = most = 0
                for (i = part[1]; i < part[1] + part[2]; ++i) sum += sample[i] * sample[i]
                for (f = 200; sum > 0 && f <= 720; f += 20)
                    if ((here = power(part[1], part[2], f)) > most) { most = here; best = f }
                printf("%s%d/%.0f", (p > 1 ? " " : ""), best, sqrt(sum / part[2]) / 1000)
            }
            print ""
        }'
}

samples_of() { echo $((($(stat -c %s "$1") - 44) / 2)); }

# between NAME LEAST MOST ACTUAL
between() {
    cases=$((cases + 1))
    { [ "$4" -ge "$2" ] && [ "$4" -le "$3" ]; } || complain "$1: $4 is not between $2 and $3"
}

say() {
    "${tool[@]}" "$@" >out.txt 2>err.txt
    same "said: $*" "0 " "$? $(cat out.txt err.txt)"
}

# events KIND FILE: all of one kind, without its name.
events() { tr -d '\r' <"$2" | sed -n "s/^{\"event\":\"$1\",\(.*\)}\$/\1/p"; }

# ---- Cases ----

# A 220 Hz, b 240, blank, c 260, d 280, the end, blank, E 300, f 320, g 340, the end: 1323 samples for each letter, 661
# for a blank, 4410 for an end, at 22,050 a second.
say --voice tones-22i -o a.wav --events a.json 'Ab cd. Efg!'
same length 19403 "$(samples_of a.wav)"
# A sine of 8000 at most has 5657 as its root of the mean square: 6 in thousands, and half of it 3.
same letters_are_tones "220/6 240/6 0/0 260/6 280/6 0/0 300/6 320/6 340/6 0/0" \
    "$(tones a.wav 0+1323 1323+1323 2646+661 3307+1323 4630+1323 5953+5071 11024+1323 12347+1323 13670+1323 14993+4410)"
same words '"stream_offset":0,"text_offset":0,"text_length":2,"text":"Ab"
"stream_offset":6614,"text_offset":3,"text_length":2,"text":"cd"
"stream_offset":22048,"text_offset":7,"text_length":3,"text":"Efg"' "$(events word a.json)"
same sentences '"stream_offset":0,"text_offset":0,"text_length":6,"text":"Ab cd."
"stream_offset":22048,"text_offset":7,"text_length":4,"text":"Efg!"' "$(events sentence a.json)"

# Of the engine's labels a is 1, p 21, t 19, e 4, f 18 and sil 0.
same visemes "0 1
1323 21
2646 0
3307 19
5953 0
11024 4
12347 18
13670 19
14993 0" "$(events viseme a.json | sed -E 's/.*"stream_offset":([0-9]+).*"viseme":([0-9]+).*/\1 \2/' |
    while read -r offset viseme; do echo "$((offset / 2)) $viseme"; done)"

# A bookmark where it stands, and the words around it at their places in the text.
say --voice tones-22i -o b.wav --events b.json --xml 'ab <bookmark mark="x y"/>é z'
same bookmark '"stream_offset":6614,"name":"x y"' "$(events bookmark b.json | sed 's/,"value":[0-9]*//')"
same words_around_it "0 2 ab
25 1 é
27 1 z" "$(events word b.json | sed -E 's/.*"text_offset":([0-9]+),"text_length":([0-9]+),"text":"(.*)"$/\1 \2 \3/')"

# The other rate, and what the server itself does: the tone stays when speech is three times as fast, and half the
# volume is half the amplitude.
say --voice tones-8v -o c.wav 'az'
same other_rate "8000 960" "$(od -An -tu4 -j24 -N4 c.wav | tr -d ' ') $(samples_of c.wav)"
same other_rate_tones "220/6 720/6" "$(tones c.wav 0+480 480+480)"
say --voice tones-22i -o d.wav --rate 10 'kkkkkkkkkkkkkkkkkkkkkkkkkkkkkk'
between fast_length 12000 14500 "$(samples_of d.wav)"
same fast_tone 420 "$(tones d.wav 3000+8000 | sed 's/\/.*//')"
say --voice tones-22i -o e.wav --volume 50 'k'
same half_volume 420/3 "$(tones e.wav 0+1323)"

report
