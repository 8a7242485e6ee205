#!/bin/bash
# Builds the module and its peers, has them show the same pictures on a virtual display with software
# GL, and compares the CPU time: a table, and compare.csv and compare.svg in build/compare.
#   bench/compare/compare.sh              all rows, 5 s each, the median of 3 runs: about 20 minutes
#   bench/compare/compare.sh --quick      all rows once
#   bench/compare/compare.sh --help       all options
# ZR_BENCH_BUILD names another build folder than that of the preset "linux".
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
build=${ZR_BENCH_BUILD:-$root/build/linux}
"$root/packaging/install-dependencies.sh" bench
[[ -f $build/build.ninja ]] || cmake -S "$root" --preset linux -B "$build" >/dev/null
cmake --build "$build" --target zr_compare >"$build/compare.log" || { cat "$build/compare.log"; exit 1; }
# The one graphics driver that every machine has, and no waiting for a screen that is not there.
export LIBGL_ALWAYS_SOFTWARE=1 vblank_mode=0 QT_QPA_PLATFORM=xcb SDL_VIDEODRIVER=x11
exec xvfb-run -a -n 420 -s "-screen 0 1920x1080x24 -nolisten tcp" \
    "$root/bench/compare/compare.py" "$build/bench/compare" "$root/build/compare" "$@"
