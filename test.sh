#!/usr/bin/env bash
# Builds everything and runs the tests without a screen. Arguments go to ctest, such as
# `-R Execution`.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
source "$root/dev/prepare.sh"

packages=("${build_packages[@]}" libgtest-dev)
cd "$root"
prepare_build -DRIVENFALL_TESTS=ON
cmake --build build >&2
exec ctest --test-dir build --output-on-failure --no-tests=error "$@"
