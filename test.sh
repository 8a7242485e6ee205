#!/bin/bash
# Builds and tests the project. Without an argument: the tests on Linux.
#   ./test.sh         the tests, built with optimisation
#   ./test.sh windows the library for Windows, built with MinGW-w64 and tested under Wine
#   ./test.sh asan    the tests with the address and undefined-behaviour sanitizers
#   ./test.sh tsan    the tests of what threads share, with the thread sanitizer
#   ./test.sh fuzz SECONDS  strangers' bytes for every way in, for so long each; what is found lies in
#                     build/linux-fuzz/findings
#   ./test.sh lint    clang-format, clang-tidy and the public header
#   ./test.sh all     what continuous integration runs: lint, Linux, asan, tsan and Windows
set -euo pipefail
cd "$(dirname "$0")"

# Two compilers at once on two cores, and never more than memory allows on many.
jobs=$(nproc)
[ "$jobs" -le 16 ] || jobs=16

say() { printf '\n== %s (%d s)\n' "$*" "$SECONDS"; }

# Shows how far a build is: in place on a terminal, else nothing.
progress() {
  if [ -t 1 ]; then
    awk '/^\[[0-9]+\/[0-9]+\]/ { printf "\r%s", $1; fflush() } END { printf "\r\033[K" }'
  else
    cat >/dev/null
  fi
}

# Sources that are compiled together share the time for Qt's headers.
unity=OFF

build() {
  say "Building $1"
  cmake --preset "$1" -DZR_WERROR=ON -DCMAKE_UNITY_BUILD="$unity" >"build/$1.log" 2>&1 || { cat "build/$1.log"; return 1; }
  cmake --build --preset "$1" --parallel "$jobs" 2>&1 | tee "build/$1.log" | progress \
    || { tail -n 100 "build/$1.log"; return 1; }
}

run_tests() {
  say "Testing $1"
  # GUI tests wait half of their time, but each needs a core while it paints.
  ctest --preset "$1" --parallel "$((jobs + 1))" --timeout 300
}

sources() { git ls-files '*.cpp' '*.h'; }

# tidy COMMANDS FILES [CHECKS]: generated code is left out.
tidy() {
  run-clang-tidy -quiet -p "$1" -j "$jobs" -header-filter="^$PWD/(zrscreenmodc?|host|workbench|tests|bench)/" \
    ${3:+"-checks=$3"} "^$PWD/$2" >build/tidy.log 2>&1 \
    || { sed 's/\x1b\[[0-9;]*m//g' build/tidy.log | grep -E '(warning|error):' | sort -u; return 1; }
}

# Takes the commands and the generated headers of the build for Linux.
lint_code() {
  say "Running clang-tidy"
  # It spends its time on Qt's headers: once for each library in place of once for each source.
  cmake/unity_commands.py build/linux/compile_commands.json build/tidy zrscreenmod zrscreenmodc host workbench
  tidy build/tidy 'build/tidy/'
  # The analyzer takes half of the time; neither it nor speed nor huge sizes matter in tests.
  tidy build/linux '(tests|bench)/.*\.cpp$' '-clang-analyzer-*,-performance-*,-readability-*,'`
    `'-bugprone-implicit-widening-*,-bugprone-reserved-identifier,-bugprone-stringview-nullptr'
}

lint_texts() {
  say "Checking the format"
  sources | xargs clang-format --dry-run --Werror
  # Layers are folders of their own; a path in an include would reach past their build.
  if git grep -nE '^ *# *include "[^"]*/' -- 'zrscreenmod/*.cpp' 'zrscreenmod/*.h'; then return 1; fi
  # The map of the code names every unit.
  local unit missing=
  for unit in $(sources | sed -n 's|^zrscreenmod/\(.*/\)\?\([^/.]*\)\.[a-z]*$|\2|p' | sort -u); do
    grep -q "\`$unit\`" docs/architecture.md || missing+=" $unit"
  done
  [ -z "$missing" ] || { echo "docs/architecture.md does not name$missing"; return 1; }
  say "Making the reference"
  docs/reference.sh
  # Each text has its translation: lupdate finds nothing that is new, or that has gone.
  local texts=zrscreenmod/res/zrscreenmod_en.ts
  cp $texts build/texts.ts
  lupdate -silent -locations none zrscreenmod -ts build/texts.ts
  cmp build/texts.ts $texts
  if grep -n unfinished $texts; then return 1; fi
}

suite() {
  if [ "$1" = windows ]; then
    say "Providing Qt for Windows"
    ZR_QT_MINGW64=$(packaging/qt5-mingw64.sh)
    export ZR_QT_MINGW64
  fi
  build "$1"
  run_tests "$1"
}

fuzz() {
  build linux-fuzz
  local name i kept findings=build/linux-fuzz/findings/
  # What Qt and the driver keep counts as leaked; the programs look themselves for what is left. Less is
  # kept of memory that was freed, and of where, which takes a good part of the time.
  export ASAN_OPTIONS=detect_leaks=0:quarantine_size_mb=64:malloc_context_size=12
  export LIBGL_ALWAYS_SOFTWARE=1 LP_NUM_THREADS=0
  for name in y4m scenario exports; do
    say "Fuzzing: $name"
    kept=build/linux-fuzz/corpus/$name
    mkdir -p "$findings" "$kept"
    tar -xJf "fuzz/corpus/$name.tar.xz" -C "$kept"
    # Meetings that have lasted for some time, which kept inputs would come to by and by only.
    if [ "$name" = exports ]; then
      for i in {1..8}; do head -c 64000 /dev/urandom >"$kept/long$i"; done
    fi
    # Long inputs: a meeting has to come about before much can go wrong.
    xvfb-run -a -n 950 -s "-screen 0 1280x720x24 -nolisten tcp -noreset" \
      "build/linux-fuzz/fuzz/fuzz_$name" -max_total_time="$1" -max_len=64000 -len_control=0 -entropic=0 \
      -timeout=60 -rss_limit_mb=4096 -detect_leaks=0 -print_final_stats=1 -artifact_prefix="$findings" \
      "$kept"
  done
}

# The tests wait for half of their time: clang-tidy takes what they leave.
all() {
  lint_texts
  build linux
  (renice -n 19 "$BASHPID" >/dev/null; lint_code) >build/lint.log 2>&1 &
  lint=$!
  trap 'kill "$lint" 2>/dev/null || true' EXIT
  run_tests linux
  unity=ON # Linux has shown that each source includes what it needs
  suite linux-asan
  suite linux-tsan
  suite windows
  wait "$lint" || { cat build/lint.log; return 1; }
}

mkdir -p build
what=${1:-linux}
case $what in
  linux|asan|tsan) packages=linux ;;
  windows|all) packages=$what ;;
  lint | fuzz) packages=checks ;;
  *) sed -n '2,10s/^# //p' "$0"; exit 2 ;;
esac

packaging/install-dependencies.sh "$packages"
case $what in
  all) all ;;
  fuzz) unity=ON && fuzz "${2:-60}" ;;
  lint) lint_texts; build linux; lint_code ;;
  *) suite "${what/#[at]san/linux-$what}" ;;
esac
