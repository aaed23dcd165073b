# Sourced by the scripts that work the program on a screen of their own, behind prepare.sh and with
# their arguments: `programs` is the folder of the programs, `work` a folder that goes at the end, and
# so does what was started.

if (($# > 1)) || [[ ${1-} == -* ]]; then
    echo "Usage: ${0##*/} [FOLDER-OF-THE-PROGRAMS]" >&2
    exit 2
fi
programs=$(realpath -- "${1:-$root/build/bin}")
[[ -x $programs/rivenfall ]] || fail "no program $programs/rivenfall; please build it first"

work=$(mktemp -d)
# The last one first: what is left without its screen may not come to an end.
end_started() {
    local process
    for process in $(jobs -rp | tac); do
        kill "$process" 2>/dev/null || true
        wait "$process" || true
    done
}
finish() {
    end_started
    rm -rf "$work"
}
trap finish EXIT

# Starts a screen of that many pixels in the place of the one before. A command behind "${screen[@]}"
# finds it, and a home of its own.
start_screen() {
    local number
    end_started
    rm -rf "$work/run" "$work/home" "$work/number"
    mkdir -m 700 "$work/run" "$work/home"
    # The server finds a free number by itself and writes it when it is ready.
    mkfifo "$work/number"
    Xvfb -displayfd 3 -screen 0 "$1x24" -wr -noreset -nolisten tcp 3>"$work/number" 2>"$work/xvfb.log" &
    read -r -t 30 number <"$work/number" || fail "the screen didn't start: $(<"$work/xvfb.log")"
    screen=(env -i PATH="$PATH" HOME="$work/home" LC_ALL=C.UTF-8 DISPLAY=":$number" XDG_RUNTIME_DIR="$work/run")
}

# Starts a bus of the screen's own.
start_bus() {
    local address
    mkfifo "$work/run/address"
    "${screen[@]}" dbus-daemon --session --nofork --print-address=3 3>"$work/run/address" 2>/dev/null &
    read -r -t 30 address <"$work/run/address" || fail "the bus didn't start"
    screen+=(DBUS_SESSION_BUS_ADDRESS="$address")
}

# Starts what is to run for as long as the screen does.
start_beside() {
    "${screen[@]}" "$@" >/dev/null 2>&1 &
}

# Starts a window manager and waits until it answers.
start_manager() {
    start_beside "$@"
    await "${screen[@]}" xdotool get_num_desktops >/dev/null
}

# Repeats a command until it succeeds, for half a minute at most.
await() {
    local end=$((SECONDS + 30))
    while ((SECONDS < end)); do
        ! "$@" 2>/dev/null || return 0
        sleep 0.1
    done
    fail "waited in vain: $*"
}

# Waits for the window whose caption the regular expression fits, and gives its id. It is the program's
# or another one's that is named: mutter's frames are windows with the same captions.
window() {
    await find_window "$1" "${2-rivenfall}"
}

find_window() {
    local id
    for id in $("${screen[@]}" timeout 5 xdotool search --onlyvisible --class "$2"); do
        if [[ $("${screen[@]}" xdotool getwindowname "$id") =~ $1 ]]; then
            echo "$id"
            return
        fi
    done
    return 1
}

# Starts the program with the given arguments; `main` is its window.
start_program() {
    "${screen[@]}" "$programs/rivenfall" "$@" &
    program=$!
    main=$(window 'OMRA Rivenfall')
}

# Gives a window the keyboard, the main one if none is named.
activate() {
    "${screen[@]}" timeout 30 xdotool windowactivate --sync "${1-$main}"
}

keys() {
    "${screen[@]}" xdotool key --delay 80 "$@"
    sleep 0.3
}

write() {
    "${screen[@]}" xdotool type --delay 30 -- "$1"
    sleep 0.3
}

# Clicks into the main window with a mouse button, so many pixels from its client area's corner as it
# lies with letters of the usual size, and takes the hand away.
click() {
    local WIDTH
    eval "$("${screen[@]}" xdotool getwindowgeometry --shell "$main" | grep WIDTH)"
    "${screen[@]}" xdotool mousemove --window "$main" $(($1 * WIDTH / 577)) $(($2 * WIDTH / 577)) \
        click "${3-1}" mousemove 1299 599
    sleep 0.3
}

# Where the rows and controls are that the manual's tour names.
declare -A places=(
    ['row `gcc`']="150 50" ['row `rm`']="150 210" ['check box of `${FILE1}`']="87 194"
    ['check box of `-O2`']="67 130" ['value box']="300 337" ['down button']="552 250"
    [Variables]="130 28" [Compilers]="48 28")

# Does in the main window what stands in bold in the manual's tour, from the current directory as the
# example's folder, and calls the function `picture` with the name of each picture there.
follow_tour() {
    local step
    while read -ru 4 step; do
        case $step in
            images/*) step=${step#*/} && picture "${step%.png}" ;;
            \`*\`) step=${step//\`/} && write "$step" ;;
            Alt+[A-Z] | Ctrl+[A-Z] | [A-Z]) keys "${step,,}" ;;
            Enter) keys Return ;;
            Up | Down) keys "$step" ;;
            *) [[ -n ${places[$step]-} ]] && click ${places[$step]} || fail "the tour says: $step" ;;
        esac
        # The dialog may start elsewhere, and the page says to go to the example's folder.
        if [[ $step == S ]]; then
            window '^FileSave' >"$work/dialog"
            write "$PWD/"
        fi
    done 4< <(sed -n '/^## A first document/,/^From now on/p' "$root/docs/manual.md" |
        grep -o '\*\*[^*]*\*\*\|images/[a-z-]*\.png' | tr -d '*')
}
