#!/bin/bash
# Builds the module and shows a meeting with it. Arguments go to the demonstration host:
#     ./demo.sh                              the prepared meeting of six
#     ./demo.sh --mode 1 --participants 4    a meeting of your own
#     ./demo.sh --help                       all options and commands
#     ./demo.sh --gallery DIR                a picture of every arrangement, in DIR
#     ./demo.sh --workbench                  the workbench: switches, messages, scenarios
# Without a display it runs on a virtual one and leaves the picture demo.png or workbench.png.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

preset=linux
program=zrhost
[[ ${1:-} != --workbench ]] || program=zrworkbench
host=build/$preset/host/zrhost
log=build/demo.log
footage_package=python3-imageio
mkdir -p build

# The footage is a video that Debian ships inside a package; the package is unpacked, not installed.
find_footage() {
    find build/footage -name cockatoo.mp4 -size +0 -print -quit 2>/dev/null || true
}

fetch_footage() {
    mkdir -p build/footage
    (
        cd build/footage
        # A folder that apt's own user cannot write to is no problem worth a warning.
        download=(apt-get -q -o APT::Sandbox::User="$(id -un)" download "$footage_package")
        if ! "${download[@]}"; then
            as_root=()
            ((EUID == 0)) || as_root=(sudo -n)
            "${as_root[@]}" apt-get -q update && "${download[@]}"
        fi
        dpkg -x "$footage_package"_*.deb .
    ) >build/footage.log 2>&1
}

build() {
    cmake --preset "$preset" && cmake --build --preset "$preset" --target "$program"
}

# The workbench, on a virtual display for some seconds where there is no other.
workbench() {
    local run=build/$preset/workbench/zrworkbench
    if [[ -n ${DISPLAY:-} || " $* " == *" --help "* ]]; then
        echo "Starting the workbench ..."
        exec "$run" "$@"
    fi
    echo "There is no display: the workbench runs on a virtual one for some seconds."
    rm -f workbench.png
    xvfb-run -a -s "-screen 0 1280x800x24 -nolisten tcp" \
        "$run" "$@" --duration 8 --screenshot workbench.png >"$log" 2>&1 </dev/null || {
        tail -n 20 "$log" >&2
        echo "The workbench failed; all of its output is in $log." >&2
        exit 1
    }
    echo "The workbench's last picture is in workbench.png."
}

packaging/install-dependencies.sh demo

echo "Building (the first time takes a few minutes) ..."
build >"$log" 2>&1 </dev/null || {
    tail -n 40 "$log" >&2
    echo "The build failed; all of its output is in $log." >&2
    exit 1
}

if [[ $program == zrworkbench ]]; then
    workbench "${@:2}"
    exit
fi

footage=$(find_footage)
if [[ -z $footage ]]; then
    echo "Fetching footage (Debian's $footage_package) ..."
    fetch_footage </dev/null || true
    footage=$(find_footage)
fi
if [[ -z $footage ]]; then
    echo "The footage could not be fetched (build/footage.log): drawn pictures take its place."
fi

# The real footage of a participant, at a size, in the module's colours; a drawn picture where there
# is none.
footage_source() {
    local video=$PWD/build/footage/$1.y4m
    [[ -n $footage ]] || {
        echo "synthetic@$1"
        return
    }
    [[ -s $video ]] || {
        ffmpeg -nostdin -v error -y -i "$footage" -t 8 \
            -vf "scale=${1/x/:}:out_color_matrix=bt709:out_range=tv,setsar=1" -pix_fmt yuv420p \
            -f yuv4mpegpipe "$video.part" && mv "$video.part" "$video"
    } >&2
    echo "y4m:$video"
}

# A still picture of text and lines, such as somebody may share.
make_share() {
    local text=build/share.txt
    cat >"$text" <<'TEXT'
Quarterly report 季度报告

Revenue            12,480    +4.2 %
Costs               9,310    -1.1 %
Participants          150

The quick brown fox jumps over the lazy dog.
敏捷的棕色狐狸跳过了懒狗。 0123456789
TEXT
    ffmpeg -nostdin -v error -y -f lavfi -i "color=white:size=1920x1080:rate=2,
        drawgrid=width=120:height=120:thickness=1:color=gray@0.4,
        drawbox=x=0:y=0:w=iw:h=ih:color=red:thickness=4,
        drawtext=expansion=none:font='Noto Sans CJK SC':textfile=$text:fontsize=56:line_spacing=24:x=120:y=120" \
        -frames:v 2 -pix_fmt yuv420p build/share.y4m
}

# Pictures of all arrangements in a folder.
gallery() {
    local folder
    mkdir -p "$1"
    folder=$(cd "$1" && pwd)
    make_share
    sed "s|@SHARE@|\"y4m:$PWD/build/share.y4m\"|" host/gallery.scenario >build/gallery.scenario
    local people=(王小明 "Alice Johnson" 李娜 "Bob Smith" "Zoë Müller" 陈思远 "Ivan Petrov"
        "Maria da Silva" 佐藤花子 "A rather long name that has to be cut somewhere" Noor Olu
        김민준 "Eva Novák" "Liam O'Brien")
    local names
    names=$(IFS=,; echo "${people[*]}")
    local run=("$PWD/$host" --names "$names" --follow-streams --size 1280x720
        --source "1=$(footage_source 960x540)" --source "4=$(footage_source 960x540)"
        --source "6=$(footage_source 320x180)" --source "7=none" --source "12=none"
        --scenario "$PWD/build/gallery.scenario")
    echo "Photographing every arrangement (a minute) ..."
    (cd "$folder" && xvfb-run -a -s "-screen 0 1920x1080x24 -nolisten tcp" "${run[@]}") \
        >"$log" 2>&1 </dev/null || {
        tail -n 20 "$log" >&2
        echo "The run failed; all of its output is in $log." >&2
        exit 1
    }
    echo "The pictures are in $folder; the messages are in $log."
}

if [[ ${1:-} == --gallery ]]; then
    [[ $# == 2 ]] || {
        echo "usage: ./demo.sh --gallery DIR" >&2
        exit 2
    }
    gallery "$2"
    exit
fi

arguments=(--names "王小明,Alice Johnson,李娜,Bob Smith,Zoë Müller,陈思远")
if (($# == 0)); then
    arguments+=(--size 1280x720 --scenario host/demo.scenario
        --source "1=$(footage_source 960x540)" --source "4=$(footage_source 320x180)")
elif [[ " $* " != *" --source"* && " $* " != *" --scenario"* && " $* " != *" --participants 0 "* ]]; then
    arguments+=(--source "1=$(footage_source 960x540)")
fi

if [[ -n ${DISPLAY:-} || " $* " == *" --help "* || " $* " == *" --headless "* ]]; then
    echo "Starting the meeting ..."
    exec "$host" "${arguments[@]}" "$@"
fi

echo "There is no display: the meeting runs on a virtual one for some seconds."
rm -f demo.png
xvfb-run -a -s "-screen 0 1920x1080x24 -nolisten tcp" \
    "$host" "${arguments[@]}" --duration 12 --screenshot demo.png "$@" >"$log" 2>&1 </dev/null || {
    tail -n 20 "$log" >&2
    echo "The demonstration failed; all of its output is in $log." >&2
    exit 1
}
echo "The meeting's last picture is in demo.png; its messages are in $log."
