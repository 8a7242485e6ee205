#!/bin/bash
# Draws the picture of docs/workbench.md: a meeting of six, half a dozen switches later.
#   docs/images/workbench.sh [PROGRAM]    the workbench, by default the built one
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
program=$(realpath "${1:-build/linux/workbench/zrworkbench}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cat >"$work/picture.scenario" <<'SCENARIO'
0    meeting 6 synthetic@640x360/10
     role user1 host
     self user2 on
     mute user3 on
     network user1 5
1    click 45 561               # the tab of the messages
1.5  hand user5 on
     volume user1 60
     speaking user1
2    mode 6
SCENARIO
(cd "$work" && ZRSCREEN_LOG_DIR=$work ZRSCREEN_LANG=en \
  xvfb-run -a -s "-screen 0 1280x800x24 -nolisten tcp" \
  "$program" --play --duration 5 --screenshot window.png picture.scenario) \
  >"$work/run.log" 2>&1 || { tail "$work/run.log" >&2; exit 1; }
ffmpeg -nostdin -v error -y -i "$work/window.png" -vf \
  "split[a][b];[a]palettegen=max_colors=128[p];[b][p]paletteuse=dither=none" docs/images/workbench.png
