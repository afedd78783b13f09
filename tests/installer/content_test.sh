#!/usr/bin/env bash
# content_test.sh SOURCE DATA: which voices the installer's script selects at first. DATA is espeak-ng's.
set -u
# shellcheck source=tests/support/checks.sh
source "$(dirname "${BASH_SOURCE[0]}")/../support/checks.sh"
source_folder=$(cd "$1" && pwd)
begin "$2"

# What content.cmake looks at: names, voice files and espeak-ng's descriptions of languages.
mkdir -p stage/share/nelva stage/share/espeak-ng-data
cp -r "$source_folder/data/voices" stage/share/nelva/voices-data
cp -r "$build/lang" stage/share/espeak-ng-data
for dictionary in "$build"/*_dict; do : >"stage/share/espeak-ng-data/${dictionary##*/}"; done

# content UNREAD: writes content.nsh.
content() {
    cmake -DSTAGE="$scratch/stage" -DTOKENS="$source_folder/data/tokens" -DUNREAD="$1" -DOUT="$scratch/content.nsh" \
        -P "$source_folder/packaging/content.cmake" >said.txt 2>&1
}

# The sections that are not selected at first: "/o".
unselected() { sed -n 's/^Section \/o ".*" SEC_\(.*\)$/\1/p' content.nsh | sort | tr '\n' ' '; }

printf '# a comment\nja   a reason\nen-gb another one\n' >unread
content "$scratch/unread"
same listed_voices_are_not_selected 'EN_GB JA ' "$(unselected)"
same all_voices_are_there "$(find "$source_folder/data/tokens" -name '*.json' | wc -l)" \
    "$(grep -c '^Section .* SEC_' content.nsh | awk '{ print $1 - 1 }')" # one is for the data of other languages

content "$source_folder/data/unread-scripts"
same the_shipped_list_is_followed \
    "$(sed -n 's/^\([^# ][^ ]*\) .*/\1/p' "$source_folder/data/unread-scripts" | tr 'a-z-' 'A-Z_' | sort | tr '\n' ' ')" \
    "$(unselected)"

printf 'tlh no such voice\n' >unread
content "$scratch/unread"
same unknown_voice_is_an_error 1 "$?"
same unknown_voice_is_named 1 "$(grep -c 'names voices that there are not: tlh' said.txt)"

report
