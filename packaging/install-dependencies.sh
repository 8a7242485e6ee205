#!/bin/bash
# Installs the Debian packages that building, testing and demonstrating need and that are missing.
# The one list of them: demo.sh and test.sh call this script.
#   packaging/install-dependencies.sh demo     what building and showing on Linux take
#   packaging/install-dependencies.sh          and the tests
#   packaging/install-dependencies.sh checks   and the linters and the fuzzer
#   packaging/install-dependencies.sh windows  and what builds and runs the library for Windows
#   packaging/install-dependencies.sh all      everything
# With --list behind it the script only prints the list.
set -euo pipefail

packages=(
    # build
    g++ cmake ninja-build ccache pkg-config
    qtbase5-dev qttools5-dev-tools libqt5x11extras5-dev libqt5svg5-dev libxcb1-dev libgl1-mesa-dri
    # demonstration host
    libglib2.0-dev libx11-dev libxtst-dev libpng-dev ffmpeg fonts-noto-cjk fonts-dejavu-core
    # virtual display
    xvfb xauth
    # benchmarks
    libbenchmark-dev
)
tests=(
    # packages and their interface
    dpkg-dev file lintian abigail-tools
    # examples
    gcc libgtk-3-dev python3 python3-tk
)
checks=(clang libclang-rt-14-dev clang-format clang-tidy doxygen)
# Compiler, Qt's source package, Wine and what it loads when it is there.
windows=(
    g++-mingw-w64-x86-64-posix dpkg-dev make perl wine wine64
    libgl1 libxcomposite1 libxcursor1 libxfixes3 libxi6 libxinerama1 libxrandr2 libxrender1
)
case ${1:-linux} in
    demo) ;;
    linux | --list) packages+=("${tests[@]}") ;;
    checks) packages+=("${tests[@]}" "${checks[@]}") ;;
    windows) packages+=("${windows[@]}") ;;
    all) packages+=("${tests[@]}" "${checks[@]}" "${windows[@]}") ;;
    *)
        sed -n '2,10s/^# //p' "$0" >&2
        exit 2
        ;;
esac

if [[ ${!#} == --list ]]; then
    printf '%s\n' "${packages[@]}"
    exit
fi

missing=()
for package in "${packages[@]}"; do
    state=$(dpkg-query --show --showformat='${db:Status-Status}' "$package" 2>/dev/null || true)
    [[ $state == installed ]] || missing+=("$package")
done
if ((${#missing[@]} == 0)); then
    exit
fi

as_root=()
if ((EUID != 0)); then
    if ! command -v sudo >/dev/null; then
        echo "These packages are missing, and installing them needs root: ${missing[*]}" >&2
        exit 1
    fi
    as_root=(sudo)
fi
as_root+=(env DEBIAN_FRONTEND=noninteractive)

log=$(mktemp)
trap 'rm -f "$log"' EXIT
# Prints what a command said only when it fails.
quietly() {
    "$@" >"$log" 2>&1 </dev/null && return
    cat "$log" >&2
    return 1
}

echo "Installing ${#missing[@]} packages: ${missing[*]}"
quietly "${as_root[@]}" apt-get -q update
quietly "${as_root[@]}" apt-get -q -y --no-install-recommends install "${missing[@]}"
