#!/bin/bash
# nelva-voices as a black box: whole output, exit status and what it leaves, against the real engine and synthesiser.
#
#   nelva_voices_test.sh BUILD_FOLDER [WINE]
#
# With WINE the folder is a Windows build, which runs in a Wine prefix of the test's own.
set -u
# shellcheck source=tests/support/checks.sh
source "$(dirname "${BASH_SOURCE[0]}")/../support/checks.sh"
begin "$@"

# A tree of its own, as an installer makes it: nothing lands in the build.
mkdir -p bin share/nelva/voices-data
cp "$build"/share/nelva/voices-data/{en-us,de,fr}-22i share/nelva/voices-data/
if [ -n "$wine" ]; then
    export WINEPREFIX=$scratch/wine
    cp -r "$build/share/espeak-ng-data" share/
    cp "$build/bin/"*.dll "$build/bin/nelva-voices.exe" "$build/bin/nelva-say.exe" bin/
    "$wine" wineboot -i >/dev/null 2>&1 || give_up "Wine does not start"
    tool=("$wine" "$scratch/bin/nelva-voices.exe")
    host=("$wine" "$scratch/bin/nelva-say.exe")
else
    ln -s "$build/share/espeak-ng-data" share/espeak-ng-data
    ln -s "$build/lib" lib
    cp "$build/bin/nelva-voices" "$build/bin/nelva-say" bin/
    tool=("$scratch/bin/nelva-voices")
    host=("$scratch/bin/nelva-say")
fi

if [ -n "$wine" ]; then
    place="'HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Speech\\Voices\\Tokens'"
else
    place="'$scratch/share/nelva/voices'"
fi

# ---- Usage ----

run no_command 2 "" "nelva-voices: no command: list, add, remove or check; nelva-voices --help shows all"
run unknown_command 2 "" "nelva-voices: unknown command 'chekc': did you mean 'check'?" chekc
same help_first_line "usage: nelva-voices COMMAND [OPTION...] [NAME...]" "$("${tool[@]}" --help | head -1 | tr -d '\r')"

# ---- Without voices ----

run list_of_nothing 0 "" "" list
run check_of_nothing 1 "" "nelva-voices: there is no voice of Nelva's in $place" check
run remove_unknown 1 "" "nelva-voices: there is no voice 'nelva-de' in $place: 0x8004503A (SPERR_NOT_FOUND): nelva-voices list shows what there is" \
    remove nelva-de

# ---- Adding ----

run add_what_ships 0 "added nelva-de	Nelva German (Germany)
added nelva-fr	Nelva French (France)" "" add de fr-fr
run add_what_does_not_ship 0 "added nelva-en-us-f2	Nelva English (United States), f2" "" add en-us --variant f2 --rate 22i
same voice_file_is_written "# Written by nelva-voices: English (United States)
language = en-us
variant = f2" "$(cat share/nelva/voices-data/en-us-f2-22i)"
run add_again_is_the_same 0 "" "" add de --quiet
run add_misspelt 1 "" \
    "nelva-voices: the synthesiser has no language 'en-uss': 0x8004503A (SPERR_NOT_FOUND): did you mean 'en-us'?" add en-uss
run list_shows_id_languages_and_name 0 "nelva-de	407;7	Nelva German (Germany)
nelva-en-us-f2	409;9	Nelva English (United States), f2
nelva-fr	40c;c	Nelva French (France)" "" list
same host_finds_the_same "nelva-de	de	Nelva German (Germany)
nelva-en-us-f2	en	Nelva English (United States), f2
nelva-fr	fr	Nelva French (France)" "$("${host[@]}" --list-voices | grep '^nelva-' | tr -d '\r')"

# Another engine has the name of one: the others are added and removed all the same.
foreign='{00000000-0000-0000-0000-00000000F0E1}'
if [ -n "$wine" ]; then
    "$wine" reg add 'HKLM\Software\Microsoft\Speech\Voices\Tokens\nelva-de-8v' /v CLSID /d "$foreign" /f >/dev/null 2>&1
else
    printf '{"CLSID": "%s"}\n' "$foreign" >share/nelva/voices/nelva-de-8v.json
fi
"${tool[@]}" add de fr-fr en-us --rate 8v >out.txt 2>err.txt
same add_with_one_that_fails_status 1 $?
same add_goes_on_behind_it "added nelva-fr-fr-8v added nelva-en-us-8v" "$(cut -f 1 out.txt | paste -sd' ')"
same add_tells_of_it "nelva-voices: the id 'nelva-de-8v' is another engine's voice" "$(cut -d'(' -f 1 err.txt | sed 's/ *$//')"
"${tool[@]}" remove nelva-fr-fr-8v nelva-de-8v nelva-en-us-8v >out.txt 2>err.txt
same remove_with_one_that_fails_status 1 $?
same remove_goes_on_behind_it "removed nelva-fr-fr-8v removed nelva-en-us-8v" "$(tr -d '\r' <out.txt | paste -sd' ')"
same remove_tells_of_it "nelva-voices: the voice 'nelva-de-8v' is another engine's" "$(cut -d'(' -f 1 err.txt | sed 's/ *$//')"
if [ -n "$wine" ]; then
    "$wine" reg delete 'HKLM\Software\Microsoft\Speech\Voices\Tokens\nelva-de-8v' /f >/dev/null 2>&1
else
    rm share/nelva/voices/nelva-de-8v.json
fi

# ---- Checking ----

if [ -n "$wine" ]; then
    wrong="wrong: the class is not registered: run regsvr32 on nelva_sapi.dll"
    run check_without_the_class 1 "nelva-de	$wrong" "" check nelva-de
    "$wine" regsvr32 /s "$(windows_path "$scratch/bin/nelva_sapi.dll")" || give_up "the class cannot be registered"
else
    mv lib away
    "${tool[@]}" check nelva-de >out.txt 2>&1
    same check_without_the_engine_status 1 $?
    wrong="nelva-de	wrong: the engine cannot be loaded: "
    same check_without_the_engine "$wrong" "$(head -c ${#wrong} out.txt)"
    mv away lib
fi
run check_is_content 0 "nelva-de	right
nelva-en-us-f2	right
nelva-fr	right" "" check
run check_is_quietly_content 0 "" "" check --quiet
mv share/nelva/voices-data/fr-22i fr-22i
file=$scratch/share/nelva/voices-data/fr-22i
[ -z "$wine" ] || file=$(windows_path "$file")
"${tool[@]}" check >out.txt 2>/dev/null
same check_of_a_missing_file_status 1 $?
same check_of_a_missing_file "nelva-fr	wrong: voxPath names no file" "$(grep wrong out.txt | cut -d: -f1-2)"
same check_goes_on_behind_it 2 "$(grep -c 'right' out.txt)"
mv fr-22i share/nelva/voices-data/fr-22i

# ---- All, and speaking ----

run add_the_other_rates 0 "added nelva-de-16i-mf	Nelva German (Germany), 16 kHz" "" add de --rate 16i-mf
"${host[@]}" --voice nelva-de-16i-mf -o a.wav "Guten Tag" 2>err.txt
same added_voice_speaks 0 $?
same added_voice_has_its_rate 16000 "$(od -An -tu4 -j24 -N4 a.wav | tr -d ' ')"
run remove_one 0 "removed nelva-de-16i-mf" "" remove NELVA-de-16i-mf
same its_voice_file_goes_too no "$([ -e share/nelva/voices-data/de-16i-mf ] && echo yes || echo no)"

"${tool[@]}" add --all >out.txt 2>err.txt
same add_all_status 0 $?
cases=$((cases + 1))
[ "$(wc -l <out.txt)" -gt 100 ] || complain "add_all_adds_a_voice_for_each_language: $(wc -l <out.txt)"
grep -q "^nelva-voices: left out, since Windows has no number for the language:.* eo " err.txt
same add_all_says_what_it_leaves_out 0 $?
"${tool[@]}" check >out.txt 2>err.txt
same every_voice_is_right 0 $?
same none_is_wrong "" "$(grep -v 'right' out.txt)"

# ---- Removing ----

"${tool[@]}" remove --all --quiet
same remove_all_status 0 $?
run nothing_is_left 0 "" "" list
same shipped_files_stay_and_written_ones_go "de-22i en-us-22i fr-22i" "$(cd share/nelva/voices-data && echo *)"

if [ -n "$wine" ]; then
    run add_for_the_user 0 "added nelva-de	Nelva German (Germany)" "" add de --user
    run machine_has_none_of_it 0 "" "" list
    run user_has_it 0 "nelva-de	407;7	Nelva German (Germany)" "" list --user
    run user_voice_is_right 0 "nelva-de	right" "" check --user
    run remove_from_the_user 0 "removed nelva-de" "" remove --all --user
    # An editor beside the program comes with a lexicon.
    cp bin/nelva-say.exe bin/nelva-dictionary-editor.exe
    "${tool[@]}" add de --quiet
    same editor_and_lexicon "$(windows_path "$scratch/bin/nelva-dictionary-editor.exe") C:\\ProgramData\\Nelva\\lexicons\\de.pls" \
        "$("$wine" reg query 'HKLM\Software\Microsoft\Speech\Voices\Tokens\nelva-de' | tr -d '\r' |
            sed -nE 's/^ *(dictEditorPath|lexPath) *REG_SZ *//p' | paste -sd' ')"
    run voice_with_editor_is_right 0 "nelva-de	right" "" check
    before=$("$wine" reg query 'HKLM\Software\Microsoft\Speech\Voices\Tokens' | tr -d '\r' | grep -c nelva)
    "${tool[@]}" remove --all --quiet
    same registry_keeps_nothing "1 0" \
        "$before $("$wine" reg query 'HKLM\Software\Microsoft\Speech\Voices\Tokens' | tr -d '\r' | grep -c nelva)"
fi

report
