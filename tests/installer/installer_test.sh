#!/usr/bin/env bash
# The installer as an administrator uses it: installer_test.sh PACKAGE HOLD_DLL
#
#   PACKAGE   the folder that ./nelva package filled
#   HOLD_DLL  the program hold_dll.exe
#
# Runs in the Wine prefix of the environment (WINEPREFIX), which is as before at the end. Says what it checks, one line
# each, and ends with 1 if anything was not as expected.
set -uo pipefail

package=${1:?usage: installer_test.sh PACKAGE HOLD_DLL}
hold_dll=${2:?}
setup=$(echo "$package"/nelva-*-setup.exe)
drive=$WINEPREFIX/drive_c
home='C:\Program Files\Nelva'
folder="$drive/Program Files/Nelva"
tokens='HKLM\Software\Microsoft\Speech\Voices\Tokens'
class='HKLM\Software\Classes\CLSID\{A174EDD5-7D96-4DE4-BACE-EF267627D834}'
lexicons=$drive/ProgramData/Nelva/lexicons
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

run() { wine64 "$@" </dev/null 2>"$work/errors" | tr -d '\r'; }
gives() { local expected=$1; shift; "$@" >/dev/null; local status=$?; [[ $status == "$expected" ]] || { echo "gave $status"; false; }; }
differ() { diff "$1" "$2"; }
absent() { [[ ! -e $1 ]] || { ls -la "$1"; false; }; }

# ---- before and after ----

# The world that an installation may touch, as text: each file outside of the users' temporary folders, and the registry
# without the keys that Wine itself writes when it likes: of network cards, and at the first console program.
snapshot() {
    local key
    (cd "$drive" && find . -path '*/[Tt]emp/*' -prune -o -printf '%p %y\n' | sort) >"$1.files"
    for key in HKLM\\Software HKCU; do
        wine64 reg export "$key" "Z:${work//\//\\}\\key.reg" /y >/dev/null 2>&1
        iconv -f UTF-16LE -t UTF-8 "$work/key.reg" | tr -d '\r' |
            awk -v RS= -v ORS='\n\n' '!/NetworkCards|HKEY_CURRENT_USER.Console/'
    done >"$1.keys"
    [[ -s $1.files && -s $1.keys ]]
}

as_before() { snapshot "$work/after"; diff "$work/before.files" "$work/after.files" && diff "$work/before.keys" "$work/after.keys"; }

# ---- what is installed ----

our_tokens() { run reg query "$tokens" | sed -n 's/.*\\Tokens\\\(nelva-.*\)/\1/p' | sort; }
all_tokens() { cd "$token_files" && printf '%s\n' *.json | sed 's/\.json$//' | sort; }
# Those that a first installation selects: all but the ones that do not read their own script.
first_tokens() { all_tokens | grep -vxF "$(sed -n 's/^\([^# ][^ ]*\) .*/nelva-\1/p' "$token_files/../unread-scripts")"; }
tokens_are() { our_tokens | diff <(printf '%s\n' "$@" | sort) -; }
registered() { run reg query "$class\\InprocServer32" | grep -qiF "$home\\bin\\nelva_sapi.dll"; }
token_files=$(cd "$(dirname "${BASH_SOURCE[0]}")/../../data/tokens" && pwd)

# Beside it the uninstaller stands, and what a host held on to.
content_is_there() {
    diff <(cd "$package/content" && find . -type f -exec sha256sum {} + | sort -k 2) \
        <(cd "$folder" && find . -type f ! -name uninstall.exe ! -name '*.old' -exec sha256sum {} + | sort -k 2)
}

# Another engine's voice, which has the name of one of ours: that one cannot be added.
foreign_voice() { run reg add "$tokens\\nelva-$1" /v CLSID /d '{00000000-0000-0000-0000-00000000F0E1}' /f; }
is_foreign() { run reg query "$tokens\\nelva-$1" /v CLSID | grep -q F0E1; }
not_added=$folder/voices-not-added.txt
not_added_are() { iconv -f UTF-16 -t UTF-8 "$not_added" | sed -n 's/ (nelva-voices ends with .*//p' | diff <(printf '%s\n' "$@") -; }
reason_is_given() { iconv -f UTF-16 -t UTF-8 "$not_added" | grep -q "nelva-$1.*engine"; }

old_files() { find "$folder/bin" -name '*.old'; }

speaks() {
    rm -f "$work/voice.wav"
    run "$home\\bin\\nelva-say.exe" --voice "$1" -o "Z:${work//\//\\}\\voice.wav" 2
    # A tenth of a second; the voices differ in their bytes a second, which the header tells.
    (($(stat -c %s "$work/voice.wav") > 44 + $(od -An -j 28 -N 4 -t u4 "$work/voice.wav") / 10))
}

install() { wine64 "$setup" /S "$@" </dev/null >/dev/null 2>&1; }

# The uninstaller goes on in a copy of itself, and its own file is the last to go.
uninstall() {
    local i
    wine64 "$home\\uninstall.exe" /S "$@" </dev/null >/dev/null 2>&1 || return
    for ((i = 0; i < 300; i++)); do
        [[ -e $folder/uninstall.exe ]] || break
        sleep 0.2
    done
    sleep 1 # the copy has some keys left to delete
    [[ ! -e $folder/uninstall.exe ]]
}

# ---- the story ----

check 'the world before can be written down' snapshot "$work/before"

check 'silent installation succeeds' gives 0 install
check 'voices that read their own script have tokens' differ <(first_tokens) <(our_tokens)
check 'all voices are installed when they are asked for' gives 0 install /LANGUAGES=all
check 'every file is where it belongs, with its content' content_is_there
check 'every voice has its token' differ <(all_tokens) <(our_tokens)
check 'the class is registered from the installed folder' registered
check 'the Apps list has an entry' run reg query 'HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\Nelva' /v QuietUninstallString
if [[ -e $folder/bin/nelva-voices.exe ]]; then
    check 'nelva-voices check is content' gives 0 wine64 "$home\\bin\\nelva-voices.exe" check
fi
for id in $(our_tokens); do
    check "$id speaks" speaks "$id"
done

# Upgrade while a host has the DLL loaded.
wine64 "$hold_dll" "$home\\bin\\nelva_sapi.dll" "Z:${work//\//\\}\\held" </dev/null >/dev/null 2>&1 &
host=$!
for ((i = 0; i < 300; i++)); do
    [[ -e $work/held ]] && break
    sleep 0.1
done
check 'a host has the DLL loaded' test -e "$work/held"
check 'an upgrade succeeds meanwhile' gives 0 install
check 'the new files are in place' content_is_there
check 'the old DLL was renamed away' test -n "$(old_files)"
check 'a new host speaks' speaks nelva-en-us
rm -f "$work/held"
check 'the host went on with the old DLL' wait "$host"

# Choice of languages; the next run clears up.
check 'an upgrade to some languages succeeds' gives 0 install /LANGUAGES=de,en-gb
check 'what was renamed is gone' test -z "$(old_files)"
check 'only their voices are left' tokens_are nelva-de nelva-en-gb
check 'their dictionaries are there' test -e "$folder/share/espeak-ng-data/de_dict"
check 'other dictionaries are not' absent "$folder/share/espeak-ng-data/ru_dict"
check 'a chosen voice speaks' speaks nelva-de
check 'an upgrade without options keeps the choice' gives 0 install
check 'the same voices are left' tokens_are nelva-de nelva-en-gb
check 'a language stands for its voices' gives 0 install /LANGUAGES=en
check 'all voices of the language are there' differ <(all_tokens | grep "^nelva-en-") <(our_tokens)

# A voice that cannot be added keeps nobody from the others.
check 'another engine has the name of a voice' foreign_voice de
check 'the other voices are installed all the same' gives 6 install /LANGUAGES=de,en-gb
check 'one of them speaks' speaks nelva-en-gb
check 'a file has the name of the one that is missing' not_added_are de
check 'and the reason' reason_is_given de
check 'the other engine keeps its voice' is_foreign de
check 'without any voice the installation fails' gives 4 install /LANGUAGES=de
check 'a voice that is not chosen is not missed' gives 0 install /LANGUAGES=en
check 'nothing is said to be missing then' absent "$not_added"
check 'the other engine still keeps its voice' is_foreign de
check 'the other engine goes' run reg delete "$tokens\\nelva-de" /f
check 'an unknown language is refused' gives 2 install /LANGUAGES=en,tlh
check 'nothing was changed by that' differ <(all_tokens | grep "^nelva-en-") <(our_tokens)

# Another folder.
check 'installation into another folder succeeds' gives 0 install /LANGUAGES=all '/D=C:\Elsewhere\Nelva'
check 'the first folder is gone' absent "$folder"
home='C:\Elsewhere\Nelva' folder=$drive/Elsewhere/Nelva
check 'every file is in the other folder' content_is_there
check 'the class is registered from there' registered
check 'a voice speaks from there' speaks nelva-fr

# Uninstalling: lexicons stay unless it is said.
printf '<lexicon/>\n' >"$lexicons/de.pls"
check 'silent uninstallation succeeds' uninstall
check 'the lexicon is still there' test -e "$lexicons/de.pls"
check 'installation finds it again' gives 0 install
home='C:\Program Files\Nelva' folder="$drive/Program Files/Nelva"

# Tokens that somebody has damaged.
damaged() { run reg add "$tokens\\nelva-$1" /v libPath /t REG_DWORD /d 1 /f && run reg delete "$tokens\\nelva-$1" /v voxPath /f; }
voices_are_right() { gives "$1" run_plainly "$home\\bin\\nelva-voices.exe" check; }
run_plainly() { wine64 "$@" </dev/null 2>/dev/null; }
told_of() {
    run_plainly "$home\\bin\\nelva-voices.exe" check --quiet >"$work/faults" # ends with 1
    cat "$work/faults"
    grep -q "^nelva-$1.*wrong: $2 is missing or no string" "$work/faults"
}
check 'a token is damaged' damaged fr
check 'nelva-voices check is not content' voices_are_right 1
check 'it tells of the value of another type' told_of fr libPath
check 'it tells of the value that is missing' told_of fr voxPath
check 'a host is told so' gives 1 run_plainly "$home\\bin\\nelva-say.exe" --voice nelva-fr -o "Z:${work//\//\\}\\voice.wav" 2
check 'installing again mends it' gives 0 install /LANGUAGES=fr
check 'nelva-voices check is content again' voices_are_right 0
check 'it is damaged again, and goes all the same' damaged fr
check 'the lexicon was left alone' grep -q '<lexicon/>' "$lexicons/de.pls"
check 'uninstallation with lexicons succeeds' uninstall /LEXICONS
rmdir "$drive/Elsewhere"
check 'files and registry are as before' as_before

printf '%d failed\n' "$failures"
((failures == 0))
