#!/usr/bin/env bash
# Drives the dictionary editor as a person does, on a display of its own: types, tabs, saves, and looks at the file.
#
#     editor_test.sh BUILD_FOLDER [CASE...]
#
# Pictures of each case land in BUILD_FOLDER/editor-pictures.
set -uo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=$1
shift
# shellcheck source=tests/editor/desktop.sh
source "$here/desktop.sh"

editor=$build/bin/nelva-dictionary-editor.exe
pictures=$build/editor-pictures
work=$build/editor-test
lexicon=$work/words.pls
title='\*?words.pls - NELVA dictionary editor'
settings=(--nolistenbutton --nodictionaryvoicedropdown)
running='' failures=0 case_name=''

fail() {
    echo "FAILED $case_name: $*" >&2
    import -window root "$pictures/$case_name-failed.png" 2>/dev/null
    failed=1
}

head_of_file='<?xml version="1.0" encoding="UTF-8"?>
<!-- kept by hand -->
<lexicon version="1.0" xmlns="http://www.w3.org/2005/01/pronunciation-lexicon"
    xmlns:x="urn:x" alphabet="ipa" xml:lang="en-GB">
  <meta name="author" content="me"/>'
leicester='  <lexeme x:id="a"><!-- city -->
    <grapheme>Leicester</grapheme>
    <phoneme>ˈlɛstə</phoneme>
  </lexeme>'
w3c='  <lexeme>
    <grapheme>W3C</grapheme>
    <alias x:by="me" >World Wide Web Consortium</alias>
  </lexeme>'
tail_of_file='  <x:other>unknown</x:other>
</lexicon>'

# lexeme WORD ELEMENT TEXT: as the editor lays it out.
lexeme() { printf '  <lexeme>\n    <grapheme>%s</grapheme>\n    <%s>%s</%s>\n  </lexeme>' "$1" "$2" "$3" "$2"; }

# lexicon_with LEXEME...
lexicon_with() { printf '%s\n' "$head_of_file" "$@" "$tail_of_file"; }

# start_editor ARGUMENT...: its exit status lands in $work/status.
start_editor() {
    rm -f "$work/status"
    { wine64 "$editor" "$@" </dev/null >"$work/output" 2>&1; echo "$?" >"$work/status.new"; mv "$work/status.new" "$work/status"; } &
    running=$!
}

open_lexicon() {
    start_editor "${settings[@]}" --lex "$(windows_path "$lexicon")" --vendor NELVA
    use_window "$title"
}

# ended STATUS: the editor ends by itself, with this status.
ended() {
    wait_until 'the editor ends' test -e "$work/status" || { fail 'the editor does not end'; return 1; }
    wait "$running" 2>/dev/null
    running=''
    [[ $(<"$work/status") == "$1" ]] || fail "the exit status is $(<"$work/status"), not $1"
}

is_unsaved() { find_window '\*words.pls - NELVA dictionary editor'; }
is_saved() { find_window 'words.pls - NELVA dictionary editor'; }

file_is() { [[ $(<"$lexicon") == "$1" ]]; }
expect_file() {
    wait_until 'the file has what was typed' file_is "$1" && return 0
    fail 'the file is not as expected:'
    diff <(printf '%s\n' "$1") "$lexicon" >&2
}
saves() {
    keys ctrl+s
    wait_until 'it is saved' is_saved || fail 'it is not saved'
}
nothing_left() {
    local left
    left=$(find "$work" -name '*.new[0-9]*')
    [[ ! $left ]] || fail "left behind: $left"
}

# ---- Cases. Each begins with a lexicon of two words.

case_add_and_save() {
    open_lexicon || return 1
    keys alt+o
    write Nguyen
    keys Tab Tab
    write wɪn
    wait_until 'it shows as unsaved' is_unsaved || fail 'the title has no star'
    keys Return
    keys alt+o ctrl+a
    write DIY
    keys alt+t Down alt+p ctrl+a
    write 'do it <yourself>'
    keys alt+a
    saves
    picture "$pictures/add.png"
    expect_file "$(lexicon_with "$leicester" "$w3c" "$(lexeme Nguyen phoneme wɪn)" \
        "$(lexeme DIY alias 'do it &lt;yourself&gt;')")"
    keys Escape
    ended 0
}

case_search_change_and_remove() {
    open_lexicon || return 1
    write CONSORT
    keys Return alt+p ctrl+a
    write 'the web people'
    keys alt+h
    keys alt+f ctrl+a BackSpace
    keys alt+w
    write l
    keys Delete
    saves
    expect_file "$(lexicon_with "${w3c/World Wide Web Consortium/the web people}")"
    keys alt+c
    ended 0
}

case_undo_and_redo() {
    open_lexicon || return 1
    keys alt+w Home Delete
    keys Delete
    wait_until 'it shows as unsaved' is_unsaved || fail 'the title has no star'
    keys alt+u alt+u
    wait_until 'all is undone' is_saved || fail 'undo does not lead back'
    keys alt+e
    wait_until 'it shows as unsaved' is_unsaved || fail 'redo does nothing'
    saves
    expect_file "$(lexicon_with "$w3c")"
    keys Escape
    ended 0
}

case_unchanged_is_not_written() {
    touch -d '2001-01-01' "$lexicon"
    open_lexicon || return 1
    keys ctrl+s Escape
    ended 0
    [[ $(stat -c %Y "$lexicon") == $(date -d '2001-01-01' +%s) ]] || fail 'the file was written'
}

case_wrong_sounds_are_asked_about() {
    open_lexicon || return 1
    keys alt+o
    write Hm
    keys alt+p
    write 'h&'
    keys alt+a
    use_window 'Dictionary editor' || return 1
    picture "$pictures/wrong-sounds.png"
    answer Return # No is the default
    use_window "$title" || return 1
    write hə # in place of all of it, which is selected
    keys Return
    saves
    expect_file "$(lexicon_with "$leicester" "$w3c" "$(lexeme Hm phoneme hə)")"
    keys Escape
    ended 0
}

case_typed_but_not_added_is_saved() {
    open_lexicon || return 1
    keys alt+o
    write half
    keys alt+p
    write ha
    wait_until 'it shows as unsaved' is_unsaved || fail 'the title has no star'
    keys Escape
    use_window 'Dictionary editor' || return 1
    answer alt+y
    ended 0
    expect_file "$(lexicon_with "$leicester" "$w3c" "$(lexeme half phoneme ha)")"
}

case_given_up_leaves_the_file() {
    open_lexicon || return 1
    keys alt+w Home Delete
    wait_until 'it shows as unsaved' is_unsaved || fail 'the title has no star'
    keys Escape
    use_window 'Dictionary editor' || return 1
    answer alt+n
    ended 0
    expect_file "$(lexicon_with "$leicester" "$w3c")"
}

case_changed_under_it_is_merged() {
    open_lexicon || return 1
    keys alt+o
    write mine
    keys alt+p
    write ma
    keys Return
    wait_until 'it shows as unsaved' is_unsaved || fail 'the title has no star'
    lexicon_with "${leicester/Leicester/Theirs}" "$w3c" >"$lexicon"
    keys ctrl+s
    use_window 'Dictionary editor' || return 1
    picture "$pictures/changed-under-it.png"
    answer alt+r
    expect_file "$(lexicon_with "${leicester/Leicester/Theirs}" "$w3c" "$(lexeme mine phoneme ma)")"
    use_window "$title" || return 1
    keys Escape
    ended 0
}

case_changed_under_it_is_overwritten_or_left() {
    open_lexicon || return 1
    keys alt+w Home Delete
    wait_until 'it shows as unsaved' is_unsaved || fail 'the title has no star'
    lexicon_with "${leicester/Leicester/Theirs}" "$w3c" >"$lexicon"
    keys ctrl+s
    use_window 'Dictionary editor' || return 1
    answer Escape
    use_window "$title" || return 1
    expect_file "$(lexicon_with "${leicester/Leicester/Theirs}" "$w3c")"
    keys ctrl+s
    use_window 'Dictionary editor' || return 1
    answer alt+o
    expect_file "$(lexicon_with "$w3c")"
    use_window "$title" || return 1
    keys Escape
    ended 0
}

case_read_only_is_told_and_tried_again() {
    chmod a-w "$lexicon"
    open_lexicon || return 1
    keys alt+w Home Delete
    keys ctrl+s
    use_window 'Dictionary editor' || return 1
    picture "$pictures/read-only.png"
    expect_file "$(lexicon_with "$leicester" "$w3c")"
    chmod u+w "$lexicon"
    answer alt+t
    expect_file "$(lexicon_with "$w3c")"
    use_window "$title" || return 1
    keys Escape
    ended 0
}

case_not_saved_is_a_failure() {
    chmod a-w "$lexicon"
    open_lexicon || return 1
    keys alt+w Home Delete
    keys ctrl+s
    use_window 'Dictionary editor' || return 1
    answer Escape
    use_window "$title" || return 1
    keys Escape
    use_window 'Dictionary editor' || return 1
    answer alt+n
    ended 1
    expect_file "$(lexicon_with "$leicester" "$w3c")"
}

# save_copy_as PATH: in answer to the question what is to be done about a file that cannot be saved.
save_copy_as() {
    answer alt+p
    use_window 'Save a copy of the lexicon' || return 1
    keys ctrl+a # in place of the name that is offered
    write "$1"
    answer Return
}

case_copy_has_the_words_and_leaves_them_unsaved() {
    chmod a-w "$lexicon"
    open_lexicon || return 1
    keys alt+w Home Delete
    keys ctrl+s
    use_window 'Dictionary editor' || return 1
    answer alt+p
    use_window 'Save a copy of the lexicon' || return 1
    wine64 "$build/tests/editor/window_text.exe" 'Save a copy' </dev/null 2>/dev/null | tr -d '\r' | grep -qx 'words.pls' ||
        fail 'no name is offered'
    picture "$pictures/save-a-copy.png"
    answer Escape # thought better of it: nothing is lost
    use_window "$title" || return 1
    is_unsaved || fail 'the title has no star'
    keys ctrl+s
    use_window 'Dictionary editor' || return 1
    save_copy_as "$(windows_path "$work/copy")" || return 1
    lexicon=$work/copy.pls expect_file "$(lexicon_with "$w3c")"
    expect_file "$(lexicon_with "$leicester" "$w3c")"
    use_window "$title" || return 1
    is_unsaved || fail 'the title has no star'
    chmod u+w "$lexicon"
    saves
    expect_file "$(lexicon_with "$w3c")"
    keys Escape
    ended 0
}

# hold FILE: another program keeps it to itself, until let_go.
hold() {
    wine64 "$build/tests/editor/hold_file.exe" "$(windows_path "$1")" "$(windows_path "$work/held")" </dev/null >/dev/null 2>&1 &
    holder=$!
    wait_until 'the file is held' test -e "$work/held"
}

let_go() {
    rm -f "$work/held"
    wait "$holder"
}

case_locked_is_told_and_tried_again() {
    open_lexicon || return 1
    keys alt+o
    write mine
    keys alt+p
    write ma
    keys Return
    wait_until 'it shows as unsaved' is_unsaved || fail 'the title has no star'
    hold "$lexicon" || return 1
    keys ctrl+s
    use_window 'Dictionary editor' || return 1
    wine64 "$build/tests/editor/window_text.exe" 'Dictionary editor' </dev/null 2>/dev/null | grep -q "in use" ||
        fail 'the question does not say why'
    picture "$pictures/locked.png"
    answer alt+t # in vain
    use_window 'Dictionary editor' || return 1
    let_go
    answer alt+t
    expect_file "$(lexicon_with "$leicester" "$w3c" "$(lexeme mine phoneme ma)")"
    use_window "$title" || return 1
    keys Escape
    ended 0
}

case_locked_at_the_start_is_told() {
    hold "$lexicon" || return 1
    start_editor "${settings[@]}" --lex "$(windows_path "$lexicon")" --vendor NELVA
    use_window 'Dictionary editor' || return 1
    answer Return
    ended 3
    let_go
    expect_file "$(lexicon_with "$leicester" "$w3c")"
}

# A full disk, as far as a program can tell: nothing beyond 1,024 bytes can be written, neither there nor as a copy.
case_full_disk_leaves_the_file_and_the_words() {
    trap '' XFSZ   # the program is told by an error, not by a signal
    ulimit -S -f 1 # of 1,024 bytes, for what is started from now on
    start_editor "${settings[@]}" --lex "$(windows_path "$lexicon")" --vendor NELVA
    ulimit -S -f unlimited
    trap - XFSZ
    use_window "$title" || return 1
    local long
    long=$(printf 'many words %.0s' {1..60})
    keys alt+o
    write long
    keys alt+t Down alt+p
    write "$long"
    keys Return ctrl+s
    use_window 'Dictionary editor' || return 1
    picture "$pictures/full-disk.png"
    expect_file "$(lexicon_with "$leicester" "$w3c")"
    nothing_left
    save_copy_as "$(windows_path "$work/copy.pls")" || return 1
    use_window 'Dictionary editor' || return 1
    answer Return
    [[ ! -e $work/copy.pls ]] || fail 'half a copy is there'
    use_window "$title" || return 1
    is_unsaved || fail 'the title has no star'
    prlimit --fsize=unlimited --pid "$(pgrep -P "$running" | head -n 1)" || return 1
    saves
    expect_file "$(lexicon_with "$leicester" "$w3c" "$(lexeme long alias "${long% }")")"
    keys Escape
    ended 0
}

# status_says TEXT: below the controls, whether something is unsaved or not.
status_says() {
    { wine64 "$build/tests/editor/window_text.exe" '*words.pls' || true; wine64 "$build/tests/editor/window_text.exe" words.pls; } \
        </dev/null 2>/dev/null | grep -qF "$1"
}

# 200,000 words in 18 MB: whatever took time by the square would still be at it when patience ends.
case_huge_lexicon_is_searched_and_changed() {
    local words
    words=$(seq 200000 | sed 's|.*|  <lexeme>\n    <grapheme>word&</grapheme>\n    <phoneme>wɜːd&</phoneme>\n  </lexeme>|')
    lexicon_with "$words" >"$lexicon"
    open_lexicon || return 1
    write word19999
    # This one and those with another digit behind it.
    wait_until 'the words are found' status_says '11 of 200000 words found.' || fail 'the words are not found'
    keys Return alt+p ctrl+a
    write wə
    wait_until 'it shows as unsaved' is_unsaved || fail 'the title has no star'
    keys Return
    saves
    sed '/>word19999</{n;s|>.*<|>wə<|}' "$lexicon" | cmp - "$lexicon" || fail 'the word was not changed'
    [[ $(wc -l <"$lexicon") == 800007 ]] || fail 'other lines were'
    local peak
    peak=$(sed -n 's/^VmHWM:[^0-9]*\([0-9]*\) kB/\1/p' "/proc/$(pgrep -P "$running" | head -n 1)/status")
    echo "        peak memory $((peak / 1024)) MB"
    ((peak < 400 * 1024)) || fail "it took $((peak / 1024)) MB"
    keys Escape
    ended 0
}

case_new_lexicon() {
    rm "$lexicon"
    open_lexicon || return 1
    write Nguyen # the focus is there, since there is nothing to search
    keys alt+p
    write wɪn
    keys Return
    saves
    [[ $(<"$lexicon") == *'<grapheme>Nguyen</grapheme>'*'<phoneme>wɪn</phoneme>'*'</lexicon>' ]] || fail 'no such file'
    keys Escape
    ended 0
}

case_not_a_lexicon_is_told_and_kept() {
    printf 'Dear diary' >"$lexicon"
    start_editor "${settings[@]}" --lex "$(windows_path "$lexicon")" --vendor NELVA
    use_window 'Dictionary editor' || return 1
    picture "$pictures/not-a-lexicon.png"
    answer Return
    ended 3
    expect_file 'Dear diary'
}

as_utf16() { printf '\xff\xfe' && sed 's/"UTF-8"/"UTF-16"/' | iconv -f UTF-8 -t UTF-16LE; }

case_other_encoding_is_kept() {
    lexicon_with "$leicester" "$w3c" | as_utf16 >"$lexicon"
    open_lexicon || return 1
    keys alt+o
    write Nguyen
    keys alt+p
    write wɪn
    keys Return
    saves
    cmp "$lexicon" <(lexicon_with "$leicester" "$w3c" "$(lexeme Nguyen phoneme wɪn)" | as_utf16) >&2 ||
        fail 'the file is not as expected'
    keys Escape
    ended 0
}

case_unknown_encoding_is_told_and_kept() {
    local ebcdic
    ebcdic=$(lexicon_with "$leicester" "$w3c" | sed 's/"UTF-8"/"EBCDIC-CP-BE"/')
    printf '%s\n' "$ebcdic" >"$lexicon"
    start_editor "${settings[@]}" --lex "$(windows_path "$lexicon")" --vendor NELVA
    use_window 'Dictionary editor' || return 1
    answer Return
    ended 3
    expect_file "$ebcdic"
}

case_wrong_options_are_told() {
    start_editor --lx x
    use_window 'Dictionary editor' || return 1
    answer Return
    ended 2
}

# every_control_is_in_order TITLE: has a label, a name and a key, and is reached by Tab; what is there is in $work/controls.
every_control_is_in_order() {
    wine64 "$build/tests/editor/window_probe.exe" "$1" </dev/null >"$work/controls" 2>"$work/complaints" ||
        fail "$(<"$work/complaints")"
}

# tab_order_is LABEL...: of what every_control_is_in_order saw.
tab_order_is() {
    diff <(printf '%s\n' "$@") <(cut -f 2 "$work/controls" | tr -d '\r') >&2 || fail 'Tab goes another way'
}

case_questions_have_labels_and_keys() {
    chmod a-w "$lexicon"
    open_lexicon || return 1
    keys alt+w Home Delete
    keys ctrl+s
    use_window 'Dictionary editor' || return 1
    every_control_is_in_order 'Dictionary editor'
    tab_order_is '&Try again' 'Save a co&py...' '&Cancel'
    answer Escape
    use_window "$title" || return 1
    keys Escape
    use_window 'Dictionary editor' || return 1
    answer alt+n
    ended 1
}

case_every_control_has_a_label_and_is_reached() {
    settings=()
    open_lexicon || return 1
    picture "$pictures/all-controls.png"
    every_control_is_in_order 'words.pls - NELVA dictionary editor'
    settings=(--nolistenbutton --nodictionaryvoicedropdown)
    tab_order_is '&Find:' '&Words:' 'W&ord:' '&Type:' '&Pronunciation:' 'Chec&k:' '&Voice:' '&New word' '&Save' '&Close'
    keys Escape
    ended 0
}

case_from_the_voices_settings_page() {
    {
        wine64 "$build/tests/editor/settings_host.exe" "$(windows_path "$build/bin/nelva_sapi.dll")" \
            "$(windows_path "$editor")" "$(windows_path "$lexicon")" </dev/null >"$work/output" 2>&1
        echo "$?" >"$work/status.new"
        mv "$work/status.new" "$work/status"
    } &
    running=$!
    use_window "$title" || return 1
    keys alt+o
    write Nguyen
    keys alt+p
    write wɪn
    keys Return
    saves
    keys Escape
    ended 0
    expect_file "$(lexicon_with "$leicester" "$w3c" "$(lexeme Nguyen phoneme wɪn)")"
    grep -q 'shown 0' "$work/output" || fail "the page answered: $(<"$work/output")"
}

register_voices() {
    { printf '\xff\xfe' && iconv -f UTF-8 -t UTF-16LE "$build/share/nelva/voices.reg"; } >"$work/voices.reg"
    wine64 regsvr32 /s "$(windows_path "$build/bin/nelva_sapi.dll")" </dev/null >/dev/null 2>&1 &&
        wine64 regedit /S "$(windows_path "$work/voices.reg")" </dev/null >/dev/null 2>&1
}

# Whether at least this many bytes were heard, and not of silence.
was_heard() {
    [[ $(stat -c %s "$desktop/heard.raw" 2>/dev/null || echo 0) -ge $1 ]] &&
        [[ $(od -An -v -t d2 "$desktop/heard.raw" | tr -s ' ' '\n' | sort -n | tail -n 1) -gt 1000 ]]
}

# The voice says a word as it stands in the window: these eight words take 80,000 bytes and more, two seconds; the word
# by itself takes a fourth of that.
case_listen_to_what_is_not_saved() {
    register_voices || return 1
    settings=()
    open_lexicon || return 1
    settings=(--nolistenbutton --nodictionaryvoicedropdown)
    keys alt+w Home
    keys alt+t Down alt+p ctrl+a
    write 'one two three four five six seven eight'
    rm -f "$desktop/heard.raw"
    keys alt+l
    wait_until 'the word is heard' was_heard 80000 || fail 'nothing was heard'
    picture "$pictures/listen.png"
    expect_file "$(lexicon_with "$leicester" "$w3c")"
    keys Escape
    use_window 'Dictionary editor' || return 1
    answer alt+n
    ended 0
}

# ---- The run

run_case() {
    case_name=$1 failed=0
    rm -rf "$work"
    mkdir -p "$work"
    lexicon_with "$leicester" "$w3c" >"$lexicon"
    "case_$case_name" || fail 'a step did not come about'
    nothing_left
    if [[ $running && ! -e $work/status ]]; then wineserver64 -k; fi
    running=''
    ((failed)) && failures=$((failures + 1))
    echo "$((failed)) $case_name"
}

trap stop_desktop EXIT
mkdir -p "$pictures"
start_desktop "$build/editor-desktop" || { echo 'there is no display' >&2; exit 1; }
if (($#)); then cases=("$@"); else mapfile -t cases < <(declare -F | sed -n 's/^declare -f case_//p'); fi
for name in "${cases[@]}"; do run_case "$name"; done
echo "${#cases[@]} cases, $failures failed"
((failures == 0 && ${#cases[@]} > 0))
