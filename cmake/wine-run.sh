#!/bin/bash
# Runs a Windows program under Wine, on a virtual display of its own, and ends as it does:
#   wine-run.sh --prefixes FOLDER [--path FOLDER]... [--plugins FOLDER] [--screen WIDTHxHEIGHT] \
#     [--display host] [--preload SOURCE]... PROGRAM ARGUMENT...
#
#   --prefixes  where the Windows drives and settings ("prefixes") are kept; made on first use
#   --path      a folder in which the program finds its libraries
#   --plugins   the folder of Qt's platform plugins
#   --screen    size of the virtual display, 1920x1080 unless told
#   --display   "host" uses the display at hand
#   --preload   functions in C that stand before those of the libraries of Linux
set -euo pipefail

prefixes= plugins= screen=1920x1080 host_display= search=
# Debian's Wine 8.0 loses what OpenGL draws in child windows; the source says more.
sources=("$(dirname "$0")/wine-child-gl.c")
while [ $# -gt 0 ]; do
  case $1 in
    --prefixes) prefixes=$2 ;;
    --path) search=$search${search:+;}Z:${2//\//\\} ;;
    --plugins) plugins=$2 ;;
    --screen) screen=$2 ;;
    --display) host_display=$2 ;;
    --preload) sources+=("$2") ;;
    *) break ;;
  esac
  shift 2
done
[ -n "$prefixes" ] && [ $# -gt 0 ] || { sed -n '2,11s/^# \?//p' "$0" >&2; exit 2; }

# The plain loader: the `wine` script in front of it complains about missing 32-bit libraries.
wine=
for candidate in /usr/lib/wine/wine64 wine64 wine; do
  wine=$(command -v "$candidate") && break
done
[ -n "$wine" ] || { echo "wine-run: wine is not installed" >&2; exit 2; }
export WINELOADER=$wine
# Of Wine's own messages, none; no menu entries on the desktop, and no offer to download .NET or a
# browser on the first start.
export WINEDEBUG=${WINEDEBUG:--all}
export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-winemenubuilder.exe=d;mscoree=d;mshtml=d}
export WINEARCH=win64
export LIBGL_ALWAYS_SOFTWARE=1
export LC_ALL=C.UTF-8 # names of files
[ -z "$search" ] || export WINEPATH=$search
# Wine keeps variables that begin with QT_ from its programs, as those of the desktop around it are
# not for them; what has WINE in front of it gets through.
for name in QT_FORCE_STDERR_LOGGING QT_LOGGING_RULES QT_FATAL_WARNINGS QT_SCALE_FACTOR; do
  [ -z "${!name:-}" ] || export "WINE$name=${!name}"
done
[ -z "$plugins" ] || export WINEQT_QPA_PLATFORM_PLUGIN_PATH=Z:${plugins//\//\\}

fill_prefix() {
  "$wine" wineboot --init || return
  # The font that every Windows has and no Linux.
  local font
  for font in "Microsoft YaHei" 微软雅黑; do
    "$wine" reg add 'HKCU\Software\Wine\Fonts\Replacements' /f \
      /v "$font" /d "Noto Sans CJK SC" || return
  done
  wineserver -w
}

# The first prefix takes ten seconds to make and 700 MB. The others are copies, which share the
# files of Windows with it: these are read only. The registry is copied: into a file that has several
# names Wine writes directly, and a server that starts in another prefix meanwhile reads half of it.
make_prefix() {
  local template=$prefixes/template
  exec {making}>"$template.lock"
  flock "$making"
  if [ ! -f "$template/.ready" ]; then
    rm -rf "$template"
    WINEPREFIX=$template fill_prefix {making}>&- >"$template.log" 2>&1 \
      || { cat "$template.log" >&2; exit 2; }
    touch "$template/.ready"
  fi
  rm -rf "$WINEPREFIX" "$WINEPREFIX.new"
  cp -al "$template" "$WINEPREFIX.new"
  cp --remove-destination "$template"/*.reg "$WINEPREFIX.new"
  mv "$WINEPREFIX.new" "$WINEPREFIX"
  exec {making}>&-
}

# Programs in one prefix share a desktop: its focus, its pointer, its screen size. Each run takes a
# prefix that no other run uses, so that tests side by side do not see each other.
mkdir -p "$prefixes"
for slot in {0..63}; do
  export WINEPREFIX=$prefixes/$slot
  exec {lock}>"$WINEPREFIX.lock"
  flock -n "$lock" && break
  exec {lock}>&-
done

display_pid=
finish() {
  # What the program left running in the prefix, and the server, which outlives a killed run.
  wineserver -k {lock}>&- 2>/dev/null || true
  [ -z "$display_pid" ] || kill "$display_pid" 2>/dev/null || true
}
trap finish EXIT
trap 'exit 143' TERM INT HUP

wineserver -k {lock}>&- 2>/dev/null || true
if [ "$host_display" != host ]; then
  # The server finds a free display number itself, and says it when it is ready.
  exec {number}< <(exec Xvfb -displayfd 1 -screen 0 "${screen}x24" -nolisten tcp -noreset \
    {lock}>&- 2>/dev/null)
  display_pid=$!
  read -r -t 30 -u "$number" display || { echo "wine-run: Xvfb does not start" >&2; exit 2; }
  export DISPLAY=:$display
fi
[ -f "$WINEPREFIX/.ready" ] || make_prefix {lock}>&-

preload=
for source in "${sources[@]}"; do
  library=$(realpath "$prefixes")/$(basename "$source" .c).so
  if [ ! "$library" -nt "$source" ]; then
    cc -shared -fPIC -O1 -o "$library.$$" "$source" -ldl && mv "$library.$$" "$library"
  fi
  preload=$preload${preload:+:}$library
done

# In the background, so that a signal to this script is acted on at once.
LD_PRELOAD=$preload "$wine" "$@" {lock}>&- <&0 &
status=0
wait $! || status=$?
exit $status
