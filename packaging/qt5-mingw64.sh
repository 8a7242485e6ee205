#!/bin/bash
# Provides Qt for Windows x64, built with MinGW-w64, and prints the folder that it lies in.
#   packaging/qt5-mingw64.sh                what there is: the cache, the ready build, the source
#   packaging/qt5-mingw64.sh --from-source  builds from Debian's source package in any case
#   packaging/qt5-mingw64.sh --configure    goes as far as the source's configure, and keeps nothing
#   packaging/qt5-mingw64.sh --print        only prints the folder
# ZR_QT_MINGW64 names another folder than the one in the user's cache, ZR_QT_MINGW64_READY the archive
# of a ready build (a folder qt5-mingw64), which is unpacked instead of building.
set -euo pipefail

version=5.15.8
package=qtbase-opensource-src
ready=${ZR_QT_MINGW64_READY:-}
# What the module, its host and the tests use, and nothing that wants a further library. The tablet
# support needs a header that Debian leaves out of the source.
options=(
  -opensource -confirm-license -release
  -xplatform win32-g++ -device-option CROSS_COMPILE=x86_64-w64-mingw32-
  -prefix /opt/qt5-mingw64
  -opengl desktop -no-angle
  -nomake examples -nomake tests -nomake tools -no-compile-examples
  -no-dbus -no-icu -no-openssl
  -no-feature-sql -no-feature-network -no-feature-xml -no-feature-concurrent
  -no-feature-printer -no-feature-tabletevent
  -qt-zlib -qt-libpng -qt-libjpeg -qt-freetype -qt-harfbuzz -qt-pcre -qt-doubleconversion
  -silent)
# Of the programs, these are needed to build with Qt; they run on the building machine.
build_tools=(moc rcc uic qmake)

key=$version-$(printf '%s\n' "${options[@]}" | sha256sum | cut -c1-12)
target=${ZR_QT_MINGW64:-${XDG_CACHE_HOME:-$HOME/.cache}/zrscreenmod/qt5-mingw64-$key}

say() { printf 'qt5-mingw64: %s\n' "$*" >&2; }
fail() { say "$*"; exit 1; }
# What runs here writes to the log alone: the output of this script is the folder.
logged() { "$@" >>"$work/log" 2>&1 || { tail -n 40 "$work/log" >&2; fail "failed: $*"; }; }

is_complete() { [ -f "$1/lib/cmake/Qt5Widgets/Qt5WidgetsConfig.cmake" ] \
  && [ -f "$1/plugins/platforms/qwindows.dll" ] && [ -x "$1/bin/moc" ]; }

# The system's own sources, asked for source packages, in lists of our own: nothing of the
# system's configuration changes.
source_lists() {
  mkdir -p "$work/apt/sources.list.d" "$work/apt/lists/partial"
  local file
  for file in /etc/apt/sources.list.d/*.sources; do
    [ ! -f "$file" ] || sed 's/^Types:.*/Types: deb-src/' "$file" \
      >"$work/apt/sources.list.d/$(basename "$file")"
  done
  for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
    [ ! -f "$file" ] || sed -nE 's/^deb(-src)?[[:space:]]/deb-src /p' "$file" | sort -u \
      >"$work/apt/sources.list.d/$(basename "$file")"
  done
}

private_apt() {
  apt-get -q -o Dir::Etc::SourceList=/dev/null -o Dir::Etc::SourceParts="$work/apt/sources.list.d" \
    -o Dir::State::Lists="$work/apt/lists" -o APT::Sandbox::User="$(id -un)" "$@"
}

fetch_source() {
  say "fetching the source of Qt $version"
  source_lists
  logged private_apt update
  (cd "$work" && logged private_apt source --only-source "$package")
  source=$(find "$work" -maxdepth 1 -type d -name "$package-*" -print -quit)
  [ -d "$source" ] || fail "the source was not unpacked"
  case ${source##*-} in
    "$version"*) ;;
    *) fail "the system's sources have ${source##*-}, not $version" ;;
  esac
}

# Qt asks for x86_64-w64-mingw32-g++, which may be the compiler with Windows threads: Qt Test does
# not compile with that one. These names come first on the path and always mean the other one.
posix_compilers() {
  mkdir -p "$work/bin"
  local tool path
  for tool in gcc g++; do
    path=$(command -v "x86_64-w64-mingw32-$tool-posix") \
      || fail "x86_64-w64-mingw32-$tool-posix is missing: install g++-mingw-w64-x86-64-posix"
    ln -sf "$path" "$work/bin/x86_64-w64-mingw32-$tool"
  done
  PATH=$work/bin:$PATH
}

configure_source() {
  posix_compilers
  mkdir -p "$work/build"
  say "configuring"
  (cd "$work/build" && logged "$source/configure" "${options[@]}")
}

# The installed tree keeps what a build or a package takes from it.
trim() {
  local tree=$1 file
  for file in "$tree"/bin/*; do
    case " ${build_tools[*]} " in
      *" ${file##*/} "*) strip "$file" ;;
      *) [[ $file == *.dll ]] || rm -rf "$file" ;;
    esac
  done
  find "$tree" -name '*.dll' -exec x86_64-w64-mingw32-strip --strip-unneeded {} +
  rm -rf "$tree"/{doc,examples} "$tree"/lib/libQt5Bootstrap.{a,la} "$tree"/plugins/generic
  # What names the folder of the build, which is gone afterwards.
  rm -f "$tree"/mkspecs/modules/qt_ext_*.pri
  sed -i '/^QMAKE_PRL_BUILD_DIR/d' "$tree"/lib/*.prl
}

build_from_source() {
  fetch_source
  configure_source
  say "building: a quarter of an hour on two cores"
  logged make -C "$work/build" -j"$(nproc)"
  logged make -C "$work/build" install INSTALL_ROOT="$work/root"
  mv "$work/root/opt/qt5-mingw64" "$work/qt5-mingw64"
  trim "$work/qt5-mingw64"
}

unpack_ready() {
  say "unpacking the ready build"
  logged tar -C "$work" -xf "$ready"
}

way=${1:-any}
case $way in
  any|--from-source|--configure) ;;
  --print) echo "$target"; exit ;;
  *) sed -n '2,8s/^# //p' "$0" >&2; exit 2 ;;
esac

parent=$(dirname "$target")
mkdir -p "$parent"
# One at a time: two test runs that start together must not build it twice.
exec {lock}>"$parent/.qt5-mingw64.lock"
flock "$lock"

if [ "$way" = any ] && is_complete "$target"; then
  echo "$target"
  exit
fi
work=$(mktemp -d "$parent/qt5-mingw64-work-XXXXXX")
trap 'rm -rf "$work"' EXIT
if [ "$way" = --configure ]; then
  fetch_source
  configure_source
  say "configured"
  exit
fi
if [ "$way" = any ] && [ -n "$ready" ]; then
  unpack_ready
else
  build_from_source
fi
is_complete "$work/qt5-mingw64" || fail "the build is not complete"
# Renamed in one step, so that what has the final name is always whole.
rm -rf "$target"
mv "$work/qt5-mingw64" "$target"
echo "$target"
