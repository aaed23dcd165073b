# Sourced by run.sh, test.sh, .ci/run and the scripts beside it, which set `root` first. What it prints goes to standard
# error, so that standard output is left to the program or the tests.

build_packages=(g++ cmake ninja-build qt6-base-dev)

fail() {
    echo "${0##*/}: $*" >&2
    exit 1
}

# Whether a package's part in the build is there. Tools count wherever they come from.
is_present() {
    case $1 in
        g++ | cmake | git | python3 | clang-format | lintian) command -v "$1" >/dev/null ;;
        ninja-build) command -v ninja >/dev/null ;;
        *) [[ $(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null) == installed ]] ;;
    esac
}

# Installs those of the named Debian packages that are missing, and says which.
install_packages() {
    local package missing=() privilege=()
    for package in "$@"; do
        is_present "$package" || missing+=("$package")
    done
    ((${#missing[@]})) || return 0

    command -v apt-get >/dev/null ||
        fail "this system has no apt-get; please install what Debian calls: ${missing[*]}"
    if ((EUID != 0)); then
        command -v sudo >/dev/null ||
            fail "missing packages: ${missing[*]}. Please install them as root: apt-get install ${missing[*]}"
        privilege=(sudo)
    fi
    echo "Installing packages: ${missing[*]}" >&2
    privilege+=(env DEBIAN_FRONTEND=noninteractive apt-get -q -y)
    "${privilege[@]}" update >&2 || echo "The package lists could not be renewed; going on with the old ones." >&2
    "${privilege[@]}" install --no-install-recommends "${missing[@]}" >&2 ||
        fail "could not install: ${missing[*]}"
}

# Configures build/ with the given -D options, unless it has them already. Options that an earlier
# call set stay, so that running and testing share one build.
configure_build() {
    local option cache needed=0
    [[ -f $root/build/build.ninja ]] || needed=1
    cache=$(sed 's/:[A-Z]*=/=/' "$root/build/CMakeCache.txt" 2>/dev/null) || needed=1
    for option in "$@"; do
        grep -qxF -- "${option#-D}" <<<"$cache" || needed=1
    done
    ((needed == 0)) || cmake --preset release "$@" >&2
}
