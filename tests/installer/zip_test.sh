#!/usr/bin/env bash
# The ZIP as an administrator uses it who lets no installer run: zip_test.sh PACKAGE does what its README.txt says.
#
#   PACKAGE   the folder that ./nelva package filled
#
# Runs in the Wine prefix of the environment (WINEPREFIX), in which nothing of ours is installed before and after. Says
# what it checks, one line each, and ends with 1 if anything was not as expected.
set -uo pipefail

package=${1:?usage: zip_test.sh PACKAGE}
tokens='HKLM\Software\Microsoft\Speech\Voices\Tokens'
class='HKLM\Software\Classes\CLSID\{A174EDD5-7D96-4DE4-BACE-EF267627D834}'
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

failures=0
# check WHAT COMMAND...: the command is to succeed.
check() {
    local what=$1
    shift
    if "$@" >"$work/said" 2>&1; then
        printf 'ok      %s\n' "$what"
    else
        printf 'FAILED  %s\n' "$what"
        head -n 20 "$work/said"
        failures=$((failures + 1))
    fi
}

not() { ! "$@"; }
run() { wine64 "$@" </dev/null; }
unpack() { (cd "$work" && cmake -E tar xf "$(echo "$package"/nelva-*.zip)"); }

# The installer's content, and a README in front.
content_is_the_installers() {
    diff <(cd "$package/content" && find . -type f -exec sha256sum {} + | sort -k 2) \
        <(cd "$folder" && find . -type f ! -path ./README.txt -exec sha256sum {} + | sort -k 2)
}

# commands_of_readme N: the Nth of its indented paragraphs.
commands_of_readme() {
    awk -v wanted="$1" '/^    /{ if (!inside) { inside = 1; at++ } if (at == wanted) print substr($0, 5); next } { inside = 0 }' \
        "$folder/README.txt"
}

# As the README's reader types them, in the folder.
follow_readme() {
    local line
    commands_of_readme "$1" >"$work/commands"
    [[ -s $work/commands ]] || return 1
    while IFS= read -r line; do
        case $line in *[^[:space:]]*) ;; *) continue ;; esac
        echo "$line"
        (cd "$folder" && run cmd /c "$line") || return 1
    done <"$work/commands"
}

links_lead_somewhere() {
    local page link lost=0
    for page in "$folder"/doc/*.md; do
        while IFS= read -r link; do
            case $link in http*) continue ;; esac
            [[ -e $folder/doc/$link ]] || { echo "${page##*/}: $link"; lost=1; }
        done < <(grep -o '](\([^)#]*\)' "$page" | sed 's/^](//;/^$/d')
    done
    ((lost == 0))
}

speaks() {
    rm -f "$work/voice.wav"
    (cd "$folder" && run bin/nelva-say.exe --voice "$1" -o ../voice.wav 2)
    (($(stat -c %s "$work/voice.wav") > 4444))
}

our_tokens() { run reg query "$tokens" 2>/dev/null | tr -d '\r' | sed -n 's/.*\\Tokens\\\(nelva-.*\)/\1/p' | sort; }
tokens_are() { our_tokens | diff <(printf '%s\n' "$@") -; }

check 'it unpacks' unpack
folder=$(echo "$work"/nelva-*)
check 'the content is that of the installer' content_is_the_installers
check 'the README has no gaps' not grep -q '@' "$folder/README.txt"
check 'links of the documentation lead to files that are there' links_lead_somewhere
check 'setting it up goes as the README says' follow_readme 1
check 'the voices of the README are there' tokens_are nelva-de nelva-en-gb nelva-en-us
check 'they are right' run "$folder/bin/nelva-voices.exe" check
for id in $(our_tokens); do
    check "$id speaks" speaks "$id"
done
check 'taking it away goes as the README says' follow_readme 2
check 'no voice is left' test -z "$(our_tokens)"
check 'nor the class' not run reg query "$class"
rm -rf "$WINEPREFIX/drive_c/ProgramData/Nelva" # the README says that they stay

printf '%d failed\n' "$failures"
((failures == 0))
