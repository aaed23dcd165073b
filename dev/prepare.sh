# Sourced by run.sh, test.sh, .ci/run and the scripts beside it, which set `root` first. What it prints goes to standard
# error, so that standard output is left to the program or the tests.

# CMake resolves links too, and configure_build compares.
root=$(realpath -- "$root")

build_packages=(g++ cmake ninja-build qt6-base-dev)

fail() {
    echo "${0##*/}: $*" >&2
    exit 1
}

# Whether a package's part in the build is there. Tools count wherever they come from.
is_present() {
    case $1 in
        g++ | cmake | git | python3 | clang-format | codespell | lintian | reuse) command -v "$1" >/dev/null ;;
        ninja-build) command -v ninja >/dev/null ;;
        *) [[ $(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null) == installed ]] ;;
    esac
}

# Installs those of the named Debian packages that are missing, and says which.
install_packages() {
    local package missing=() privilege=() install
    for package in "$@"; do
        is_present "$package" || missing+=("$package")
    done
    ((${#missing[@]})) || return 0

    command -v apt-get >/dev/null ||
        fail "this system has no apt-get; please install what Debian calls: ${missing[*]}"
    install="apt-get install --no-install-recommends ${missing[*]}"
    if ((EUID != 0)); then
        command -v sudo >/dev/null ||
            fail "packages are missing. Please have them installed as root: apt-get update && $install"
        privilege=(sudo)
    fi
    echo "Installing packages: ${missing[*]}" >&2
    # One call, so that whoever isn't let through is asked once.
    "${privilege[@]}" env DEBIAN_FRONTEND=noninteractive sh -c '
        apt-get -q -y update ||
            echo "The package lists could not be renewed; going on with the old ones."
        exec apt-get -q -y install --no-install-recommends "$@"' sh "${missing[@]}" >&2 ||
        fail "could not install the packages. As root: apt-get update && $install"
}

# Configures a build folder (build/ unless `-B FOLDER` comes first) with the given -D options, unless
# it has them already. Without options another one stays as it is, so that running and testing share
# one build. What another generator left there, or another place of this clone, goes.
configure_build() {
    local folder=$root/build cache option fresh=() needed=0
    if [[ ${1-} == -B ]]; then
        folder=$(realpath -m -- "$2")
        shift 2
    fi
    if cache=$(sed 's/:[A-Z]*=/=/' "$folder/CMakeCache.txt" 2>/dev/null); then
        for option in "CMAKE_HOME_DIRECTORY=$root" "CMAKE_CACHEFILE_DIR=$folder" CMAKE_GENERATOR=Ninja; do
            grep -qxF -- "$option" <<<"$cache" || fresh=(--fresh)
        done
    fi
    ((${#fresh[@]} == 0)) || echo "$folder was configured in another place or for other tools; doing it anew." >&2
    ((${#fresh[@]} == 0)) && [[ -f $folder/build.ninja ]] || needed=1
    for option in "$@"; do
        grep -qxF -- "${option#-D}" <<<"$cache" || needed=1
    done
    ((needed)) || return 0
    # What couldn't be configured isn't taken for configured the next time.
    cmake "${fresh[@]}" -S "$root" --preset release -B "$folder" "$@" >&2 ||
        { rm -f -- "$folder/build.ninja" && return 1; }
}

# Configures build/ with the given -D options. Only where that fails are the packages asked for whose
# names are in `packages`: what CMake finds counts, wherever it comes from.
prepare_build() {
    local words
    if words=$(configure_build "$@" 2>&1); then
        [[ -z $words ]] || echo "$words" >&2
        return
    fi
    command -v apt-get >/dev/null || echo "$words" >&2
    install_packages "${packages[@]}"
    configure_build "$@"
}
