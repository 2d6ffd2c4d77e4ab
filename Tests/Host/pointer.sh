# What tours of the example host share: starting it, moving a real pointer, waiting for what it tells, and taking
# pictures of the screen. Sourced, not run. The caller sets `folder`, where everything is left, and `screen`.
# In a Wayland session that is nested in an X server, only the host knows its windows. It fills the screen there, so
# that the places that it tells are the screen's.

events=$folder/events.txt

on_wayland() { [[ -n ${WAYLAND_DISPLAY:-} ]]; }

# start_host PROGRAM OPTION…: starts the example host, which tells what happens in $events.
start_host() {
    local place=()
    : >"$events"
    on_wayland && place=(--full-screen)
    "$1" --trace "${place[@]}" "${@:2}" >"$events" 2>>"$folder/messages.txt" &
    host=$!
    wait_for "the window" grep -qx ready "$events"
    main_window=$(visible_windows)
}

stop_host() {
    kill "$host" 2>/dev/null || true
    wait "$host" 2>/dev/null || true
}

fail() {
    echo "${0##*/}: $*" >&2
    shot failed
    echo "--- what the host told:" >&2
    cat "$events" "$folder/messages.txt" >&2
    exit 1
}

# wait_for WHAT COMMAND…: until COMMAND succeeds, for longer than a busy machine takes.
wait_for() {
    local what=$1 tries=400
    shift
    until "$@"; do
        ((tries-- > 0)) || fail "$what did not happen"
        kill -0 "$host" 2>/dev/null || fail "the host ended while waiting: $what"
        ((tries % 40)) || ! on_wayland || tremble
        sleep 0.05
    done
}

number=0
shot() {
    printf -v name '%s/%02d-%s.png' "$folder" "$((++number))" "$1"
    ffmpeg -v error -nostdin -f x11grab -video_size "$screen" -i "$DISPLAY" -frames:v 1 -y "$name"
}

# count EVENT: how often the host has told it so far.
count() { grep -cx "$1" "$events" || true; }
told_since() { (($(count "$1") > $2)); }

# A hand is never quite still; a busy compositor may leave what it has heard last lying until there is more.
tremble() {
    xdotool mousemove_relative 1 0
    xdotool mousemove_relative -- -1 0
}

# glide X Y: moves the pointer as a hand does, through what lies between.
glide() {
    local X Y steps=12 i
    eval "$(xdotool getmouselocation --shell | grep -E '^(X|Y)=')"
    for ((i = 1; i <= steps; i++)); do
        xdotool mousemove $((X + ($1 - X) * i / steps)) $((Y + ($2 - Y) * i / steps))
        sleep 0.015
    done
    tremble
}

point_at() {
    local place
    place=$(sed -n "s/^command $1 //p" "$events")
    [[ -n $place ]] || fail "there is no command $1"
    # shellcheck disable=SC2086 # two numbers
    glide $place
}

hover() {
    local before
    before=$(count "shown $1")
    point_at "$1"
    wait_for "the tip of $1" told_since "shown $1" "$before"
}

visible_windows() { xdotool search --onlyvisible --pid "$host" 2>/dev/null || true; }

# The tip is the window of the host that was not there at the start.
tip_window() { visible_windows | grep -vx "$main_window" | head -n 1 | grep .; }

# Sets X, Y, WIDTH and HEIGHT to the geometry of the tip.
locate_tip() {
    local window
    X=0 Y=0 WIDTH=0 HEIGHT=0
    if on_wayland; then
        read -r X Y WIDTH HEIGHT < <(sed -n 's/^tip //p' "$events" | tail -n 1) || true
        return 0
    fi
    window=$(tip_window) || return 0
    eval "$(xdotool getwindowgeometry --shell "$window" 2>/dev/null | grep -E '^(X|Y|WIDTH|HEIGHT)=')"
}

# first_height KEY: what the tip of a command was when it came last.
first_height() { tac "$events" | sed "/^shown $1\$/q" | sed -n 's/^tip .* //p' | tail -n 1; }

tip_height() { locate_tip; echo "$HEIGHT"; }
grown_beyond() { (($(tip_height) > $1)); }

# is_pinned TITLE: whether there is a window with the tip of that title.
is_pinned() {
    if on_wayland; then
        [[ $(grep -x -e "active $1" -e "closed $1" "$events" | tail -n 1) == "active $1" ]]
    else
        xdotool search --onlyvisible --pid "$host" --name "^$1\$" >/dev/null 2>&1
    fi
}

# Gives the keyboard to the host's own window.
activate_host() {
    if on_wayland; then
        away
        xdotool click 1
    else
        xdotool windowactivate --sync "$main_window"
    fi
}

# The drawing itself has no tip.
away() { glide 860 570; }
