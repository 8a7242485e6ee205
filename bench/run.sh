#!/bin/sh
# Builds and runs the benchmarks on a virtual display of their own.
# usage: bench/run.sh [arguments of Google Benchmark, such as --benchmark_filter=addNthPerson]
# ZR_BENCH_BUILD names another build folder than that of the preset "linux".
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
build=${ZR_BENCH_BUILD:-$root/build/linux}
if [ ! -f "$build/build.ninja" ]; then
    cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZR_BUILD_BENCH=ON
fi
cmake --build "$build" --target zr_bench
# The library's log goes to a file: writing it to a terminal would be part of what is measured.
log=$build/bench/zr_bench.log
status=0
xvfb-run -a -s "-screen 0 1920x1080x24 -nolisten tcp" \
    "$build/bench/zr_bench" "$@" 2>"$log" || status=$?
[ "$status" -eq 0 ] || { echo "status $status; the log is $log" >&2; tail -n 3 "$log" >&2; }
exit "$status"
