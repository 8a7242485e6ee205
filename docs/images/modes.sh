#!/bin/bash
# Draws the pictures of docs/modes.md: fifteen people in each mode, the fourth of whom speaks.
#   docs/images/modes.sh [PROGRAM]    the demonstration host, by default the built one
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
host=$(realpath "${1:-build/linux/host/zrhost}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

scenario=$work/modes.scenario
echo "1.5 call ZRScreen_FocusByUserID user4 off" >"$scenario"
for mode in 1 2 3 4 5 6 7 8 9 11 12 13 14; do
  printf '+0 mode %d\n+1.2 screenshot %02d.png\n' "$mode" "$mode" >>"$scenario"
done
printf '%s\n' '+0 share user5 synthetic@1280x720' '+0.5 mode 10' '+1.5 screenshot 10.png' '+0 quit' \
  >>"$scenario"
(cd "$work" && ZRSCREEN_LOG_DIR=$work xvfb-run -a -s "-screen 0 1280x720x24 -nolisten tcp" \
  "$host" --participants 15 --size 1280x720 --picture 320x180 --fps 10 --scenario modes.scenario) \
  >"$work/host.log" 2>&1 || { tail "$work/host.log" >&2; exit 1; }
for picture in "$work"/*.png; do
  ffmpeg -nostdin -v error -y -i "$picture" -vf \
    "scale=320:180:flags=area,split[a][b];[a]palettegen=max_colors=48[p];[b][p]paletteuse=dither=none" \
    "docs/images/modes/$(basename "$picture")"
done
