#!/usr/bin/env bash
# The installer as a person meets it: its pages and questions, on a display of the test's own, answered by keys.
#
#     pages_test.sh PACKAGE PROGRAMS WORK [CASE...]
#
#   PACKAGE   the folder that ./nelva package filled
#   PROGRAMS  the folder with hold_file.exe and window_text.exe
#   WORK      a folder for the Wine prefix; pictures of what went wrong are left beside it, in WORK-pictures
#
# installer_test.sh looks at what is installed; this looks at what is shown, chosen and answered.
set -uo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
package=${1:?usage: pages_test.sh PACKAGE PROGRAMS WORK [CASE...]}
programs=${2:?}
work=${3:?}
shift 3
pictures=$work-pictures
# shellcheck source=tests/editor/desktop.sh
source "$here/../editor/desktop.sh"

setup=$(echo "$package"/nelva-*-setup.exe)
home='C:\Program Files\Nelva'
in_place=('_?=C:\Program' 'Files\Nelva') # the uninstaller stays until it is done; it wants no quotes, Wine sets them
folder="$work/prefix/drive_c/Program Files/Nelva"
lexicon=$work/prefix/drive_c/ProgramData/Nelva/lexicons/de.pls
tokens='HKLM\Software\Microsoft\Speech\Voices\Tokens'
running='' failures=0 case_name='' main=''

fail() {
    echo "FAILED $case_name: $*" >&2
    import -window root "$pictures/$case_name-failed.png" 2>/dev/null
    failed=1
}

quiet_wine() { wine64 "$@" </dev/null >/dev/null 2>&1; }

# start_program ARGUMENT...: its exit status lands in $work/status.
start_program() {
    rm -f "$work/status"
    { quiet_wine "$@"; echo "$?" >"$work/status.new"; mv "$work/status.new" "$work/status"; } &
    running=$!
}

ended() {
    wait_until 'the program ends' test -e "$work/status" || { fail 'the program does not end'; return 1; }
    wait "$running" 2>/dev/null
    running=''
    [[ $(<"$work/status") == "$1" ]] || fail "the exit status is $(<"$work/status"), not $1"
}

# shows TEXT: whether a page or a box of ours has this text on it.
shows() { wine64 "$programs/window_text.exe" Nelva </dev/null 2>/dev/null | tr -d '\r' | grep -qF -- "$1"; }

# on_page TEXT: waits for the page with this text, and types into it from now on.
on_page() {
    wait_until "a page says '$1'" shows "$1" || return 1
    wait_until 'the page has the focus' take_focus "$main"
}

start_setup() {
    start_program "$setup" "$@"
    use_window 'Nelva Setup ?' || return 1
    main=$window
}

start_uninstaller() {
    start_program "$home\\uninstall.exe" "${in_place[@]}"
    use_window 'Nelva Uninstall ?' || return 1
    main=$window
}

# Another window than the installer's own.
find_box() {
    window=$(xdotool search --onlyvisible --name '^Nelva (Setup|Uninstall) ?$' 2>/dev/null | grep -vx "${main:-none}" | tail -n 1)
    [[ $window ]]
}

# in_box TEXT KEY...: a box says so, and goes by these keys.
in_box() {
    local text=$1
    shift
    wait_until "a box shows" find_box || return 1
    wait_until "the box says '$text'" shows "$text" || return 1
    wait_until 'the box has the focus' take_focus "$window" || return 1
    answer "$@"
}

our_tokens() { wine64 reg query "$tokens" </dev/null 2>/dev/null | tr -d '\r' | sed -n 's/.*\\Tokens\\\(nelva-.*\)/\1/p' | sort; }
tokens_are() { [[ $(our_tokens | tr '\n' ' ') == "$1" ]] || fail "the voices are $(our_tokens | tr '\n' ' '), not $1"; }
foreign_voice() { quiet_wine reg add "$tokens\\nelva-$1" /v CLSID /d '{00000000-0000-0000-0000-00000000F0E1}' /f; }
no_foreign_voice() { quiet_wine reg delete "$tokens\\nelva-$1" /f; }

installed() { quiet_wine "$setup" /S "/LANGUAGES=$1" || fail "silent installation ends with $?"; }
nothing_installed() { [[ ! -e $folder ]] || fail "left behind: $(find "$folder" | head -n 5)"; }

# To the page that installs.
through_the_pages() {
    on_page 'This installs the Nelva voices' && keys alt+n && on_page 'Choose the voices' && keys alt+n &&
        on_page 'Destination Folder' && keys alt+i
}

# The uninstaller that ran in its place cannot remove itself.
clear_uninstaller() {
    rm -f "$folder/uninstall.exe"
    rmdir "$folder" 2>/dev/null
}

# ---- Cases. Each begins and ends with nothing installed.

case_pages_lead_to_the_voices_that_were_chosen() {
    start_setup /LANGUAGES=de || return 1
    through_the_pages && on_page 'The voices are there' || return 1
    keys alt+f
    ended 0
    tokens_are 'nelva-de '
}

case_stopped_by_the_person() {
    start_setup || return 1
    on_page 'This installs the Nelva voices' || return 1
    keys Escape
    in_box 'Are you sure you want to quit' alt+y || return 1
    ended 1
    nothing_installed
}

case_unknown_language_is_told() {
    main=''
    start_program "$setup" /LANGUAGES=tlh
    in_box '/LANGUAGES: there is no voice tlh.' Return || return 1
    ended 2
    nothing_installed
}

case_missing_voice_is_told_and_the_others_are_there() {
    foreign_voice de
    start_setup /LANGUAGES=de,en-gb || return 1
    through_the_pages && in_box 'except for these, which cannot be added: de.' Return || return 1
    on_page 'The voices are there' || return 1
    keys alt+f
    ended 6
    no_foreign_voice de
    tokens_are 'nelva-en-gb '
}

case_without_any_voice_it_fails_and_can_be_taken_away() {
    foreign_voice de
    start_setup /LANGUAGES=de || return 1
    through_the_pages && in_box 'No voice can be added: de.' Return || return 1
    on_page 'Installation Aborted' || return 1
    keys Return
    ended 4
    no_foreign_voice de
    [[ -e $folder/uninstall.exe ]] || fail 'there is no uninstaller'
}

# A program that fails stands in for the one that registers.
case_engine_that_is_not_registered_is_told() {
    local system=$work/prefix/drive_c/windows/system32
    mv "$system/regsvr32.exe" "$work/regsvr32.exe"
    cp "$programs/hold_file.exe" "$system/regsvr32.exe"
    local -x WINEDLLOVERRIDES="$WINEDLLOVERRIDES;regsvr32.exe=n" # not Wine's own
    quiet_wine "$setup" /S /LANGUAGES=de
    [[ $? == 4 ]] || fail 'a silent installation does not end with 4'
    start_setup /LANGUAGES=de || return 1
    through_the_pages && in_box 'Windows does not register the engine (regsvr32 says 1).' Return || return 1
    on_page 'Installation Aborted' || return 1
    keys Return
    ended 4
    mv "$work/regsvr32.exe" "$system/regsvr32.exe"
    WINEDLLOVERRIDES=${WINEDLLOVERRIDES%;*}
    installed de # mends it
    tokens_are 'nelva-de '
}

case_file_in_use_can_be_waited_for_or_given_up() {
    local holder
    installed de
    wine64 "$programs/hold_file.exe" "$home\\bin\\nelva_sapi.dll" "$(windows_path "$work/held")" </dev/null >/dev/null 2>&1 &
    holder=$!
    wait_until 'the file is held' test -e "$work/held" || return 1
    quiet_wine "$setup" /S /LANGUAGES=de
    [[ $? == 5 ]] || fail 'a silent upgrade does not end with 5'
    start_setup /LANGUAGES=de || return 1
    through_the_pages && in_box 'nelva_sapi.dll is in use' alt+r && in_box 'nelva_sapi.dll is in use' Escape || return 1
    on_page 'Installation Aborted' || return 1
    keys Return
    ended 5
    start_setup /LANGUAGES=de || return 1
    through_the_pages && wait_until 'a box shows' find_box || return 1
    rm -f "$work/held"
    wait "$holder"
    in_box 'nelva_sapi.dll is in use' alt+r || return 1
    on_page 'The voices are there' || return 1
    keys alt+f
    ended 0
    tokens_are 'nelva-de '
}

case_uninstaller_asks_for_corrected_words_and_keeps_them() {
    installed de
    printf '<lexicon/>\n' >"$lexicon"
    start_uninstaller || return 1
    on_page 'will be uninstalled' || return 1
    keys alt+u
    in_box 'Remove the corrected words too?' Return || return 1 # No is the default
    on_page 'Uninstallation Complete' || return 1
    keys alt+c
    ended 0
    tokens_are ''
    [[ $(<"$lexicon") == '<lexicon/>' ]] || fail 'the lexicon is gone'
    rm -f "$lexicon"
}

case_uninstaller_removes_corrected_words_when_told_to() {
    installed de
    printf '<lexicon/>\n' >"$lexicon"
    start_uninstaller || return 1
    on_page 'will be uninstalled' || return 1
    keys alt+u
    in_box 'Remove the corrected words too?' alt+y || return 1
    on_page 'Uninstallation Complete' || return 1
    keys alt+c
    ended 0
    tokens_are ''
    [[ ! -e $work/prefix/drive_c/ProgramData/Nelva ]] || fail 'the lexicons are still there'
}

case_uninstaller_without_corrected_words_asks_nothing() {
    installed de
    start_uninstaller || return 1
    on_page 'will be uninstalled' || return 1
    keys alt+u
    on_page 'Uninstallation Complete' || return 1
    keys alt+c
    ended 0
}

# ---- The run

run_case() {
    case_name=$1 failed=0
    "case_$case_name" || fail 'a step did not come about'
    if [[ $running && ! -e $work/status ]]; then wineserver64 -k; fi
    running=''
    rm -f "$work/held"
    no_foreign_voice de
    if [[ -e $folder/uninstall.exe ]]; then
        quiet_wine "$home\\uninstall.exe" /S /LEXICONS "${in_place[@]}" || fail "the uninstaller ends with $?"
        clear_uninstaller
    fi
    nothing_installed
    rm -rf "$folder"
    ((failed)) && failures=$((failures + 1))
    echo "$((failed)) $case_name"
}

trap stop_desktop EXIT
rm -rf "$pictures"
mkdir -p "$pictures"
start_desktop "$work" || { echo 'there is no display' >&2; exit 1; }
if (($#)); then cases=("$@"); else mapfile -t cases < <(declare -F | sed -n 's/^declare -f case_//p'); fi
for name in "${cases[@]}"; do run_case "$name"; done
echo "${#cases[@]} cases, $failures failed"
((failures == 0 && ${#cases[@]} > 0))
