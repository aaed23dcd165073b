#!/usr/bin/env bash
# Builds the program if need be and starts it with a document: with windows where there is a
# display, without where there is none. The document runs in the caller's directory; the example,
# which is opened where no document is named, in its own folder.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
source "$root/dev/prepare.sh"

if (($# > 1)) || [[ ${1-} == -h || ${1-} == --help ]]; then
    echo "Usage: ${0##*/} [DOCUMENT]" >&2
    exit 2
fi

has_x11_display() {
    local host number
    [[ ${DISPLAY-} =~ ^(.*):([0-9]+)(\.[0-9]+)?$ ]] || return 1
    host=${BASH_REMATCH[1]} number=${BASH_REMATCH[2]}
    case $host in
        "" | unix)
            [[ -S /tmp/.X11-unix/X$number ]] ||
                grep -qs "@/tmp/.X11-unix/X$number\$" /proc/net/unix
            ;;
        *) timeout 5 bash -c ': <>"/dev/tcp/$0/$1"' "$host" $((6000 + number)) 2>/dev/null ;;
    esac
}

has_wayland_display() {
    [[ -n ${WAYLAND_DISPLAY-} ]] || return 1
    case $WAYLAND_DISPLAY in
        /*) [[ -S $WAYLAND_DISPLAY ]] ;;
        *) [[ -n ${XDG_RUNTIME_DIR-} && -S $XDG_RUNTIME_DIR/$WAYLAND_DISPLAY ]] ;;
    esac
}

program=rivenfall-run
if has_x11_display; then
    program=rivenfall
elif has_wayland_display; then
    program=rivenfall
    ! command -v dpkg-query >/dev/null || install_packages qt6-wayland
fi

packages=("${build_packages[@]}")
prepare_build
cmake --build "$root/build" --target rivenfall rivenfall-run >&2

if (($#)); then
    document=$(realpath -ms -- "$1")
else
    cd "$root/examples/hello"
    document=hello.tvq
fi
exec "$root/build/bin/$program" "$document"
