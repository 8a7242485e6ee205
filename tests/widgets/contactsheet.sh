#!/bin/sh
# Puts the goldens of the overlay on one picture, to be looked at.
# usage: contactsheet.sh [picture]    needs ImageMagick
set -eu
here=$(cd "$(dirname "$0")" && pwd)
sheet=${1:-$here/../../docs/images/overlay.png}
cd "$here/golden"
# What is shown smaller shows how the parts lie; the pixels are seen in the others.
convert -background black overlay_full.png overlay_states_large.png overlay_states_small.png \
    overlay_names.png overlay_tiny.png overlay_tiny_4k.png overlay_levels.png \
    overlay_levels_4k.png overlay_states_small_4k.png \
    -resize '1292x>' -bordercolor black -border 0x6 -append +repage "$sheet"
