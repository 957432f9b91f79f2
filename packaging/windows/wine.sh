# shellcheck shell=bash
# Sourced by the scripts that try the programs for Windows out, after cmake/scripts.sh: a Windows of their own, by wine, in a
# temporary folder and on an X server of its own. Nothing of the user's own is read or written.

wine_processes=()

# What Windows programs left running goes with its wineserver, then the display.
stop_wine() {
    local process
    wineserver --kill 2>/dev/null || true
    for process in "${wine_processes[@]}"; do
        kill "$process" 2>/dev/null || true
    done
    wait
    rm -rf "$scratch"
}

# start_wine WIDTHxHEIGHT
start_wine() {
    scratch=$(mktemp --directory)
    unset XDG_CONFIG_HOME XDG_DATA_HOME XDG_RUNTIME_DIR WAYLAND_DISPLAY
    export HOME=$scratch/home WINEPREFIX=$scratch/wine WINEDEBUG=-all LC_ALL=C.UTF-8
    trap stop_wine EXIT
    mkdir "$HOME"
    # The desktop's menus stay as they are, and nobody is asked about parts of wine that are not there.
    export WINEDLLOVERRIDES='winemenubuilder.exe=d;mscoree=;mshtml='
    Xvfb -displayfd 3 -screen 0 "$1x24" -nolisten tcp 3>"$scratch/display" 2>/dev/null &
    wine_processes+=($!)
    wait_until 20 test -s "$scratch/display"
    DISPLAY=:$(<"$scratch/display")
    export DISPLAY
    openbox >/dev/null 2>&1 &
    wine_processes+=($!)
    wineboot --init 2>/dev/null
}

# A program that waits for somebody does not last.
wine() {
    timeout 120 "$(type -P wine)" "$@"
}

# wait_until SECONDS COMMAND…: false when it does not succeed in time
wait_until() {
    local end=$((SECONDS + $1))
    until "${@:2}"; do
        ((SECONDS < end)) || return 1
        sleep 0.2
    done
}

# has_ended PROCESS
has_ended() {
    ! kill -0 "$1" 2>/dev/null
}

# set_dpi NUMBER: of the screen, for programs that are started from now on
set_dpi() {
    wine reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d "$1" /f >/dev/null 2>&1
}

# set_dark 0|1: whether programs are to be dark
set_dark() {
    wine reg add 'HKCU\Software\Microsoft\Windows\CurrentVersion\Themes\Personalize' \
        /v AppsUseLightTheme /t REG_DWORD /d $((1 - $1)) /f >/dev/null 2>&1
}

# The rest is about windows, by patterns of their titles.

shows_window() {
    xdotool search --onlyvisible --name "$1" >/dev/null 2>&1
}

shows_no_window() {
    ! shows_window "$1"
}

# Keys by their names, with time for the program to act on each.
press() {
    local key
    for key in "$@"; do
        xdotool key "$key"
        sleep 0.15
    done
}

# type_text TEXT: of ASCII, for which every keyboard has keys
type_text() {
    xdotool type --delay 40 "$1"
    sleep 0.2
}
