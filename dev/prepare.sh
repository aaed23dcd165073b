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
# it has them already. Without options a new one comes without tests, and another stays as it is, so
# that running and testing share one build. What another generator left there, or another place of
# this clone, goes.
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
    if ((${#fresh[@]})) || [[ ! -f $folder/build.ninja ]]; then
        set -- -DRIVENFALL_TESTS=OFF "$@"
        needed=1
    fi
    for option in "$@"; do
        grep -qxF -- "${option#-D}" <<<"$cache" || needed=1
    done
    ((needed == 0)) || cmake "${fresh[@]}" -S "$root" --preset release -B "$folder" "$@" >&2
}
