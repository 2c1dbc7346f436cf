# shellcheck shell=bash
# A virtual display and pictures of its windows.

has_display() { [[ -n ${DISPLAY:-} || -n ${WAYLAND_DISPLAY:-} ]]; }

# start_display: starts a virtual display, exports DISPLAY and sets display_pid to the server's
# process, which the caller must end.
start_display() {
    local number log
    log=$(mktemp)
    # The server writes its display number to a pipe.
    coproc XVFB { exec Xvfb -displayfd 3 -screen 0 1440x900x24 -nolisten tcp 3>&1 2>"$log"; }
    # shellcheck disable=SC2034
    display_pid=$XVFB_PID
    read -r -t 20 number <&"${XVFB[0]}" || die "the virtual display did not start: $(<"$log")"
    rm -f "$log"
    export DISPLAY=":$number" QT_QPA_PLATFORM=xcb
    unset WAYLAND_DISPLAY
}

# take_picture PID FILE SECONDS: waits until process PID shows a painted window and writes a
# picture of it. Fails when the process or the time ends first.
take_picture() {
    local pid=$1 file=$2 deadline=$((SECONDS + $3)) window now before=
    while kill -0 "$pid" 2>/dev/null && ((SECONDS < deadline)); do
        sleep 0.5
        window=$(xdotool search --onlyvisible --pid "$pid" 2>/dev/null | tail -n 1) || continue
        [[ -n $window ]] || continue
        import -silent -window "$window" "$file" 2>/dev/null || continue
        # Painted: more than a background, and equal in two consecutive pictures.
        now=$(identify -format '%k %#' "$file")
        [[ ${now%% *} -gt 8 && $now == "$before" ]] && return 0
        before=$now
    done
    return 1
}
