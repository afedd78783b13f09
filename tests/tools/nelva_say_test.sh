#!/bin/bash
# nelva-say as a black box: whole output, exit status and files, against the real engine and synthesiser.
#
#   nelva_say_test.sh BUILD_FOLDER [WINE]
#
# With WINE the folder is a Windows build, which runs in a Wine prefix of the test's own; the expectations are the same
# but where a case says otherwise.
set -u
# shellcheck source=tests/support/checks.sh
source "$(dirname "${BASH_SOURCE[0]}")/../support/checks.sh"
begin "$@"

class='{A174EDD5-7D96-4DE4-BACE-EF267627D834}'
other_class='{00000000-0000-0000-0000-000000000001}'

# ---- Voices ----
# id, CLSID, libPath, Name: the rest is the same for all.
data=$build/share/espeak-ng-data
vox=$build/share/nelva/voices-data/en-us-22i
voices=(
    "bad-class|$other_class|$data|Bad class"
    "bad-data|$class|$build/no-such-folder|Bad data"
    "good|$class|$data|Good"
    "no-name|$class|$data|"
)

native_voices() {
    mkdir -p bin share/nelva/voices
    cp "$build/bin/nelva-say" bin/
    ln -s "$build/lib" lib
    for voice in "${voices[@]}"; do
        IFS='|' read -r id clsid lib name <<<"$voice"
        printf '{"displayName":"The voice %s","CLSID":"%s","libPath":"%s","voxPath":"%s","Attributes":{%s"Language":"409"}}\n' \
            "$id" "$clsid" "$lib" "$vox" "${name:+\"Name\":\"$name\",}" >"share/nelva/voices/$id.json"
    done
    tool=("$scratch/bin/nelva-say")
}

windows_voices() {
    export WINEPREFIX=$scratch/wine
    local key='HKEY_LOCAL_MACHINE\Software\Microsoft\Speech\Voices\Tokens'
    local escape='s/\//\\\\/g'
    {
        printf 'Windows Registry Editor Version 5.00\n\n'
        # Wine comes with a voice of its own.
        printf '[-%s]\n\n' "$key"
        for voice in "${voices[@]}"; do
            IFS='|' read -r id clsid lib name <<<"$voice"
            printf '[%s\\%s]\n@="The voice %s"\n"CLSID"="%s"\n"libPath"="%s"\n"voxPath"="%s"\n\n' "$key" "$id" "$id" \
                "$clsid" "Z:$(sed "$escape" <<<"$lib")" "Z:$(sed "$escape" <<<"$vox")"
            printf '[%s\\%s\\Attributes]\n' "$key" "$id"
            [ -n "$name" ] && printf '"Name"="%s"\n' "$name"
            printf '"Language"="409"\n\n'
        done
    } >voices.reg
    "$wine" wineboot -i >/dev/null 2>&1 || give_up "Wine does not start"
    "$wine" regedit /S voices.reg || give_up "the voices cannot be registered"
    "$wine" regsvr32 /s "$(windows_path "$build/bin/nelva_sapi.dll")" || give_up "the class cannot be registered"
    tool=("$wine" "$build/bin/nelva-say.exe")
}

if [ -n "$wine" ]; then windows_voices; else native_voices; fi

# ---- Checking ----

say() { "${tool[@]}" "$@"; }

# begins NAME STATUS STDERR-BEGINNING ARGUMENT...: for messages whose end is the system's.
begins() {
    local name=$1 status=$2 err=$3
    shift 3
    say "$@" >out.txt 2>err.txt
    same "$name: exit status" "$status" "$?"
    same "$name: standard output" "" "$(cat out.txt)"
    same "$name: standard error" "$err" "$(head -c ${#err} err.txt)"
}

size_of() { stat -c %s "$1"; }

# ---- Usage ----

run unknown_option_did_you_mean 2 "" "nelva-say: unknown option '--vioce': did you mean '--voice'?" --vioce good Hi
run unknown_option_like_a_number 2 "" \
    "nelva-say: unknown option '-5': put '--' in front of text that begins with '-'; nelva-say --help shows all options" \
    -o a.wav -5
run missing_value 2 "" "nelva-say: -o needs a value: -o FILE.wav" Hi -o
run bad_number 2 "" "nelva-say: --volume needs a whole number from 0 to 65535, not 'loud'" -o a.wav --volume loud Hi
run two_texts 2 "" "nelva-say: text comes either as TEXT or with -f FILE, not both" -o a.wav -f x Hi
say --help >help.txt
same help_status 0 $?
same help_first_line "usage: nelva-say [OPTION...] [TEXT...]" "$(head -1 help.txt | tr -d '\r')"

# ---- Voices ----

run list_voices 0 "bad-class	en	The voice bad-class
bad-data	en	The voice bad-data
good	en	The voice good
no-name	en	The voice no-name" "" --list-voices
run voice_unknown 1 "" \
    "nelva-say: there is no voice 'goood': 0x8004503A (SPERR_NOT_FOUND): did you mean 'good'?" -o a.wav --voice goood Hi
if [ -n "$wine" ]; then
    begins voice_of_unregistered_class 1 \
        "nelva-say: cannot create the engine: 0x80040154 (REGDB_E_CLASSNOTREG): the engine's class is not registered" \
        -o a.wav --voice bad-class Hi
else
    begins voice_of_unknown_class 1 \
        "nelva-say: cannot find the engine's class: 0x80040111 (CLASS_E_CLASSNOTAVAILABLE): the engine does not have" \
        -o a.wav --voice bad-class Hi
fi
say -o a.wav --voice bad-data Hi 2>err.txt
same voice_without_data_status 1 $?
grep -q "^nelva-say: cannot set the voice 'bad-data' up: 0x80045012 (SPERR_TTS_ENGINE_EXCEPTION): the synthesiser failed" err.txt
same voice_without_data_message 0 $?
say -o a.wav --voice no-name Hi 2>err.txt
same voice_without_name_status 1 $?
grep -q "^nelva-say: cannot set the voice 'no-name' up: 0x8004503A (SPERR_NOT_FOUND): the voice's token lacks a value" err.txt
same voice_without_name_message 0 $?
same failed_set_up_leaves_no_file 1 "$([ -e a.wav ]; echo $?)"

# ---- Playing ----

# No machine's own device sounds in a test, whether it has one or not.
: >no-device.conf
export ALSA_CONFIG_PATH=$scratch/no-device.conf
say --voice good Hello >out.txt 2>err.txt
same no_device_status 1 $?
grep -q "^nelva-say: there is no audio device: .*: 0x8004503A (SPERR_NOT_FOUND): give -o FILE.wav to write the audio" err.txt
same no_device_says_what_to_do 0 $?
# ALSA's own file device, where its library is: what is played is what -o writes.
if [ -z "$wine" ] && ldconfig -p 2>/dev/null | grep -q 'libasound\.so\.2'; then
    printf 'pcm.!default { type file slave.pcm "null" file "%s/played.raw" format "raw" }\npcm.null { type null }\n' \
        "$scratch" >file-device.conf
    ALSA_CONFIG_PATH=$scratch/file-device.conf run plays_silently_about_it 0 "" "" --voice good "Hello there. Once more."
    say --voice good -o played.wav "Hello there. Once more."
    same played_what_was_spoken "$(tail -c +45 played.wav | cksum)" "$(cksum <played.raw)"
fi

# ---- Input ----

run missing_file 1 "" "nelva-say: cannot open 'none.txt': 0x80070002 (ERROR_FILE_NOT_FOUND): check the name" \
    -o a.wav --voice good -f none.txt
begins xml_mistake_has_its_place 1 "nelva-say: the text:1:9: '</b>' closes nothing: 0x80045042 (SPERR_XML_BAD_SYNTAX)" \
    -o a.wav --voice good --xml 'Hi there</b>'
printf '[{"text":"Hi"},{"rte":1}]' >bad.json
run fragment_mistake_has_its_place 1 "" \
    "nelva-say: 'bad.json': fragment 2: \"rte\" is not known: did you mean \"rate\"?: 0x8007000D (ERROR_INVALID_DATA): see docs/nelva-say.md" \
    -o a.wav --voice good --fragments bad.json

root='<speak version="1.0" xmlns="http://www.w3.org/2001/10/synthesis" xml:lang="en">'
same text_from_arguments "$root<mark name=\"P0\"/>a &lt; é😀</speak>" "$(say --voice good --ssml - 'a <' 'é😀')"
same text_from_standard_input "$root<mark name=\"P0\"/>Hi</speak>" "$(printf '\xEF\xBB\xBFHi' | say --voice good --ssml -)"
printf 'Hi' >'ü😀.txt'
same text_from_a_file "$root<mark name=\"P0\"/>Hi</speak>" "$(say --voice good --ssml - -f 'ü😀.txt')"
same text_from_xml "$root<mark name=\"P0\"/>a<mark name=\"P0\"/><mark name=\"BM\"/><mark name=\"P0\"/>b</speak>" \
    "$(say --voice good --ssml - --xml 'a<bookmark mark="M"/>b')"

# ---- Speech ----

text='Hi é😀 there, Dr. Smith.'
run speaks_silently_about_it 0 "" "" --voice good -o a.wav --events a.json --ssml a.ssml "$text"
same document "$root<mark name=\"P0\"/>$text</speak>" "$(cat a.ssml)"
words=$(grep '"event":"word"' a.json | sed -E 's/.*"text_offset":([0-9]+),"text_length":([0-9]+),"text":"(.*)"\}/\1 \2 \3/')
# Whether the point belongs to "Dr." is the synthesiser's choice.
same words_cut_out_of_the_text "0 2 Hi
3 3 é😀
7 5 there
14 2 Dr
18 5 Smith" "$(sed 's/^14 3 Dr\.$/14 2 Dr/; s/^18 6 Smith\.$/18 5 Smith/' <<<"$words")"
written=$(sed -nE 's/^\{"write":([0-9]+)\}$/\1/p' a.json | paste -sd+ | bc 2>/dev/null)
[ -n "$written" ] || written=$(sed -nE 's/^\{"write":([0-9]+)\}$/\1/p' a.json | { sum=0; while read -r n; do sum=$((sum + n)); done; echo $sum; })
same wav_holds_what_was_written $((written + 44)) "$(size_of a.wav)"
same wav_counts_its_audio "$written" "$(od -An -tu4 -j40 -N4 a.wav | tr -d ' ')"
same wav_counts_itself $((written + 36)) "$(od -An -tu4 -j4 -N4 a.wav | tr -d ' ')"
same wav_rate 22050 "$(od -An -tu4 -j24 -N4 a.wav | tr -d ' ')"
cases=$((cases + 1))
[ "$(tail -c +45 a.wav | tr -d '\0' | head -c 1000 | wc -c)" == 1000 ] || complain wav_is_not_silent

say --voice good -o - "$text" >pipe.wav
same audio_on_standard_output "$(tail -c +45 a.wav | cksum)" "$(tail -c +45 pipe.wav | cksum)"
same pipe_header_says_unknown "4294967295 4294967295" \
    "$(od -An -tu4 -j4 -N4 pipe.wav | tr -d ' ') $(od -An -tu4 -j40 -N4 pipe.wav | tr -d ' ')"

say --voice good -o fast.wav --rate 10 "$text"
ratio=$((100 * $(size_of a.wav) / $(size_of fast.wav)))
cases=$((cases + 1))
{ [ $ratio -gt 230 ] && [ $ratio -lt 350 ]; } || complain "rate_10_is_three_times_as_fast: $ratio %"
say --voice good -o quiet.wav --volume 0 "$text"
same volume_0_is_silence 0 "$(tail -c +4455 quiet.wav | tr -d '\0' | wc -c)"
begins rate_below_the_engines_range 1 \
    "nelva-say: the voice 'good' failed to speak: 0x80070057 (E_INVALIDARG): a value is out of range: give a --rate" \
    --voice good -o a.wav --rate -15 "$text"

say --voice good --events b.json --xml 'One <bookmark mark="here &amp; now"/> two.'
same bookmark_has_its_name '"name":"here & now"' "$(grep '"event":"bookmark"' b.json | grep -o '"name":.*"')"
printf '[{"units":[72,105,32,55357]},{"action":"silence","silence":100},{"action":99},{"text":null}]' >odd.json
run odd_fragments_are_spoken 0 "" "" --voice good --events c.json --fragments odd.json
run empty_text_is_spoken 0 "" "" --voice good -o empty.wav ""

report
