# shellcheck shell=bash
# A display of one's own with Wine on it, and hands and eyes for a script: sourced by editor_test.sh and docs/screenshots/take-editor.
#
# Nothing here sleeps for a guessed time: each step waits until it can see that the step before has happened.

patience=${NELVA_PATIENCE:-120} # seconds until a condition counts as not met; a busy machine is slow

# wait_until WHAT COMMAND...: until the command succeeds.
wait_until() {
    local what=$1 end=$((SECONDS + patience))
    shift
    until "$@"; do
        if ((SECONDS >= end)); then
            echo "waited $patience s in vain until $what" >&2
            return 1
        fi
        sleep 0.1
    done
}

# IPA that the scripts type has keys of its own from the start: a key that changes its meaning while Wine reads it may
# give another letter.
spare_keys=(U026A U025B U0259 U02C8 U014B U028A U02D0)

map_spare_keys() {
    local code i=0
    for code in $(xmodmap -pke | awk '$1 == "keycode" && NF <= 3 {print $2}' | head -n "${#spare_keys[@]}"); do
        xmodmap -e "keycode $code = ${spare_keys[i]}" || return 1
        i=$((i + 1))
    done 2>/dev/null
    ((i == ${#spare_keys[@]}))
}

# start_desktop FOLDER: a display, and a Wine prefix in FOLDER/prefix that shows its windows there.
start_desktop() {
    desktop=$1
    rm -rf "$desktop"
    mkdir -p "$desktop"
    Xvfb -displayfd 3 -screen 0 1024x768x24 -nolisten tcp -noreset 3>"$desktop/display" >"$desktop/xvfb.log" 2>&1 &
    xvfb=$!
    wait_until 'the display is there' test -s "$desktop/display" || return 1
    DISPLAY=:$(<"$desktop/display")
    export DISPLAY WINEPREFIX=$desktop/prefix WINEARCH=win64 WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml=' \
        LC_ALL=C.UTF-8 PATH=$PATH:/usr/lib/wine
    record_sound
    wait_until 'the display takes keys' map_spare_keys || return 1
    # The first program fills the prefix. The font is one whose IPA Wine can show: Wine 8 crashes in the tables of some.
    wine64 reg add 'HKCU\Software\Wine\Fonts\Replacements' /v 'Segoe UI' /d FreeSans /f </dev/null >/dev/null 2>&1
}

# A sound device that writes what it is given to $desktop/heard.raw.
record_sound() {
    cat >"$desktop/asound.conf" <<CONF
pcm.!default {
    type file
    slave.pcm { type null }
    file "$desktop/heard.raw"
    format raw
}
ctl.!default { type null }
CONF
    export ALSA_CONFIG_PATH=$desktop/asound.conf
}

# Ends what start_desktop started, and nothing else.
stop_desktop() {
    if [[ -d ${WINEPREFIX-} ]]; then wineserver64 -k >/dev/null 2>&1 || true; fi
    if [[ ${xvfb-} ]]; then
        kill "$xvfb" 2>/dev/null || true
        wait "$xvfb" 2>/dev/null || true
    fi
}

# find_window PATTERN: sets `window` to the visible window whose title matches as a whole.
find_window() { window=$(xdotool search --onlyvisible --name "^$1\$" 2>/dev/null | tail -n 1) && [[ $window ]]; }

has_focus() { [[ $(xdotool getwindowfocus 2>/dev/null) == "$1" ]]; }

# use_window PATTERN: waits for the window, and types into it from now on.
use_window() {
    wait_until "a window '$1' shows" find_window "$1" || return 1
    wait_until "the window '$1' has the focus" take_focus "$window"
}

take_focus() {
    has_focus "$1" && return 0
    xdotool windowfocus "$1" 2>/dev/null
    return 1
}

is_gone() { ! xdotool search --onlyvisible --name . 2>/dev/null | grep -qx "$1"; }

# answer KEY...: to the dialog that is used just now, which goes by it. A dialog that came up in the midst of work has the
# display's focus at times before Wine knows of it, and hears nothing until it is clicked.
answer() {
    local attempt i
    for attempt in {1..6}; do
        ((attempt == 1)) || xdotool mousemove --window "$window" 3 3 click 1 2>/dev/null
        keys "$@"
        for ((i = 0; i < 100; i++)); do
            if is_gone "$window"; then return 0; fi
            sleep 0.1
        done
    done
    echo 'the dialog does not go' >&2
    return 1
}

keys() { xdotool key --clearmodifiers --delay 40 "$@"; }

write() { xdotool type --clearmodifiers --delay 40 "$1"; }

# picture FILE: of what the current window shows.
picture() { import -window "$window" -strip +dither -colors 64 "$1"; }

# windows_path FILE: as Wine's drive Z: has it.
windows_path() { printf 'Z:%s' "${1//\//\\}"; }
