# What is shared by whoever drives a program of others with tips attached: waiting for what it shows, resting a real
# pointer on its commands, and pictures of the screen. Sourced, not run. The caller sets `program`, `window`, a part of the
# title of its window, `folder`, where everything is left, `tool`, and `screen`.

pid=
number=0

fail() {
    echo "${0##*/}: $program: $*" >&2
    shot failed
    for file in "$folder"/*.txt; do
        echo "--- ${file##*/}" >&2
        tail -n 40 "$file" >&2
    done
    exit 1
}

shot() {
    printf -v name '%s/%02d-%s.png' "$folder" "$((++number))" "$1"
    ffmpeg -v error -nostdin -f x11grab -video_size "$screen" -i "$DISPLAY" -frames:v 1 -y "$name"
}

wait_for() { # wait_for WHAT SECONDS COMMAND…
    local what=$1 tries=$(($2 * 10))
    shift 2
    until "$@"; do
        ((tries-- > 0)) || fail "$what did not happen"
        sleep 0.1
    done
}

# use_home: no settings of the user's, and none left behind.
use_home() {
    rm -rf "$folder"
    mkdir -p "$folder/home/.config"
    chmod 700 "$folder/home"
    export HOME=$folder/home XDG_CONFIG_HOME=$folder/home/.config XDG_DATA_HOME=$folder/home/data LC_ALL=C.UTF-8
    export XDG_RUNTIME_DIR=$folder/home
}

# settle_librecad: what its first start would ask for.
settle_librecad() {
    mkdir -p "$HOME/.config/LibreCAD"
    printf '[Startup]\nFirstLoad=0\n[Appearance]\nLanguage=en\nLanguageCmd=en\n' >"$HOME/.config/LibreCAD/LibreCAD.conf"
}

# attach OPTION… -- COMMAND…: starts the program with tips, and tells of what is hovered in trace.txt.
attach() {
    "$tool" attach --trace "$@" >"$folder/output.txt" 2>"$folder/trace.txt" &
    pid=$!
    wait_for "the window" 60 is_up
    sleep 2
}
finish() { [[ -z $pid ]] || kill "$pid" 2>/dev/null || true; }
trap finish EXIT

windows() { xdotool search --onlyvisible --class "$program" 2>/dev/null || true; }
is_up() { main=$(xdotool search --onlyvisible --name "$window" 2>/dev/null | tail -n 1) && [[ -n $main ]]; }

# place_window WIDTH HEIGHT: the program's window in the corner of the screen; what is there besides it later is a tip.
place_window() {
    xdotool windowactivate "$main" 2>/dev/null || true
    others=$(windows)
    xdotool windowmove "$main" 0 0 windowsize "$main" "$1" "$2"
    sleep 2
}
tip() { windows | grep -vxF "$others" | tail -n 1 | grep .; }
has_no_tip() { ! tip >/dev/null; }

rest() { # rest X Y: in the program's window
    xdotool mousemove --window "$main" "$1" "$2"
    sleep 0.1
    xdotool mousemove --window "$main" $(($1 + 1)) "$2"
}

colours() { # colours WINDOW: a number for what it shows
    local X=0 Y=0 WIDTH=0 HEIGHT=0
    eval "$(xdotool getwindowgeometry --shell "$1" | grep -E '^(X|Y|WIDTH|HEIGHT)=')"
    ffmpeg -v error -nostdin -f x11grab -video_size "$((WIDTH - 4))x$((HEIGHT - 4))" -i "$DISPLAY+$((X + 2)),$((Y + 2))" \
        -frames:v 1 -f md5 -
}
moves_on() { [[ $(colours "$1") != "$2" ]]; }

# keep WINDOW X: presses the tip's button for that, so far from its left or, below 0, right side, and takes the pointer
# away for longer than a tip stays.
keep() {
    local X=0 Y=0 WIDTH=0 HEIGHT=0
    eval "$(xdotool getwindowgeometry --shell "$1" | grep -E '^(X|Y|WIDTH|HEIGHT)=')"
    xdotool mousemove $((X + ($2 < 0 ? WIDTH : 0) + $2)) $((Y + HEIGHT - 22)) click 1
    sleep 1
    xdotool mousemove 640 790
    sleep 6
    [[ -n $(tip) ]] || fail "the kept tip is gone"
}

has_ended() { ! kill -0 "$pid" 2>/dev/null; }
quit() {
    xdotool windowactivate "$main" 2>/dev/null || true
    sleep 1
    xdotool key --clearmodifiers ctrl+q
    wait_for "the end" 60 has_ended
    local status=0
    wait "$pid" || status=$?
    pid=
    ((status == 0)) || fail "ended with the status $status"
}
