#!/bin/bash
# An hour of meetings in minutes, through the exports: joins, leaves, shares, modes, resizes, pages,
# subtitles, a second screen, edits, screens made anew, and frames from eight threads. Once a meeting's
# minute all is put back and counted. Fails when memory, threads, descriptors, GL or X objects, widgets
# or timers have grown between the first tenth and the end. Leaves soak.csv and soak.svg in build/soak.
#   bench/soak.sh [SECONDS]           on Linux; 300 seconds unless told
#   bench/soak.sh --windows [SECONDS] of the library for Windows, under Wine
# ZR_SOAK_SEED changes its course.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
system=linux
if [[ ${1:-} == --windows ]]; then
    system=windows
    shift
fi
build=${ZR_BENCH_BUILD:-$root/build/$system}
results=$root/build/soak/$system
mkdir -p "$results"
log=$results/soak.log

"$root/packaging/install-dependencies.sh" bench
if [[ $system == windows ]]; then
    "$root/packaging/install-dependencies.sh" windows
    ZR_QT_MINGW64=$("$root/packaging/qt5-mingw64.sh")
    export ZR_QT_MINGW64
fi
(cd "$root" && cmake --preset "$system" -B "$build" -DZR_BUILD_BENCH=ON >"$log" \
    && cmake --build "$build" --target zr_soak >>"$log") || { tail -n 50 "$log"; exit 1; }

export ZR_SOAK_SECONDS=${1:-300} LIBGL_ALWAYS_SOFTWARE=1 ZRSCREEN_LOG_STDERR=1
export ZR_SOAK_CSV=$results/soak.csv
rm -f "$ZR_SOAK_CSV"
run=(cmake --build "$build" --target soak)
if [[ $system == windows ]]; then # with a display of its own
    export ZR_LIBRARY=$build/zrscreenmod/ZRScreenMod.dll
else
    export ZR_LIBRARY=$build/zrscreenmod/libZRScreenMod.so QT_QPA_PLATFORM=xcb
    run=(xvfb-run -a -n 460 -s "-screen 0 1920x1080x24 -nolisten tcp -noreset" "${run[@]}")
fi
status=0
"${run[@]}" 2>"$log" || status=$?
[[ -f $ZR_SOAK_CSV ]] || { tail -n 20 "$log" >&2; exit 1; }

cd "$results"
gnuplot <<'PLOT'
set terminal svg size 1000,700 font 'sans-serif,12' background 'white'
set output 'soak.svg'
set datafile separator ','
set key outside right
set grid
set xlabel 'minute of the meeting'
set multiplot layout 2,1
set ylabel 'MiB'
set yrange [0:*]
# Columns by what their names end in: memory above, counts below.
plot for [name in system("head -n 1 soak.csv | tr ',' '\n' | grep '_kb$'")] \
    'soak.csv' using 1:(column(name) / 1024) with lines lw 2 title name noenhanced
set ylabel 'count'
set logscale y
set yrange [0.8:*]
plot for [name in system("head -n 1 soak.csv | tr ',' '\n' | grep -v -e '_kb$' -e minute")] \
    'soak.csv' using 1:(column(name)) with lines title name noenhanced
PLOT
echo "$results/soak.csv, $results/soak.svg"
exit "$status"
