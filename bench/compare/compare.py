#!/usr/bin/env python3
"""Runs the module and its peers in turn and prints, saves and plots what they took."""

import argparse
import csv
import math
import os
import pathlib
import re
import statistics
import subprocess
import sys

ROWS = ["9x640x360", "16x640x360", "1x1920x1080", "4x1280x720"]
PEERS = {"gl": "bare GL", "sdl": "SDL2", "qt": "Qt"}
REDRAWS = [60, 30]  # of peers whose pictures are not in step
COLUMNS = [
    "offered", "painted", "skipped", "cpu_ms_per_frame", "gui_ms_per_frame", "latency_median_ms",
    "latency_p99_ms", "copied_ratio", "uploaded_ratio", "compositions", "compositions_per_new_frame",
]


class Row:
    """Pictures, their phases, and how often the peers redraw."""

    def __init__(self, pictures, phases, redraws):
        self.pictures, self.phases, self.redraws = pictures, phases, redraws
        tiles, self.width, self.height = (int(part) for part in pictures.split("x"))
        self.columns = math.isqrt(tiles)
        if self.columns**2 != tiles or not 1 <= self.columns <= 4:
            sys.exit(f"{pictures}: 1, 4, 9 or 16 tiles")

    @property
    def name(self):
        tiles = self.pictures.partition("x")[0]
        size = f"{tiles} × {self.width}×{self.height}"
        if self.phases == "step":
            return f"{size}, in step"
        return f"{size}, own phases" + (f", peers at {self.redraws} Hz" if self.redraws else "")


def rows_of(options):
    """Pairs of a row of the module and those of the peers that stand beside it."""
    for pictures in options.rows:
        for phases in options.phases:
            redraws = REDRAWS if phases == "own" else [0]
            yield Row(pictures, phases, 0), [Row(pictures, phases, one) for one in redraws]


def run(options, program, row):
    name, *words = program.split()
    command = [options.programs / f"zr_compare_{name}", row.columns, row.width, row.height, row.phases,
               row.redraws or 25, options.seconds, *words,
               *(["patient"] if options.patient else [])]
    done = subprocess.run([str(word) for word in command], capture_output=True, text=True,
                          timeout=120 + 10 * options.seconds, check=False)
    if done.returncode != 0:
        sys.exit(f"{command[0]} ended with {done.returncode}:\n{done.stderr[-2000:]}")
    return {name: float(value) for name, value in map(str.split, done.stdout.splitlines())}


def progress(text):
    if sys.stderr.isatty():
        print(f"\r\033[K{text}", end="", file=sys.stderr, flush=True)


def measure(options):
    """The medians of all runs, by row and program; whoever takes turns meets the same disturbances."""
    figures = {}
    for repeat in range(options.repeats):
        for module_row, peer_rows in rows_of(options):
            runs = [("module", module_row)]
            runs += [("module plain", module_row)] if options.overlays else []
            runs += [(peer, row) for row in peer_rows for peer in options.peers]
            for program, row in runs:
                progress(f"{repeat + 1}/{options.repeats} {program}: {row.name}")
                found = run(options, program, row)
                figures.setdefault((row.name, program), []).append(found)
    progress("")
    return {key: {name: statistics.median(one[name] for one in runs) for name in runs[0]}
            for key, runs in figures.items()}


def table(head, lines):
    widths = [max(len(line[i]) for line in [head, *lines]) for i in range(len(head))]
    for line in [head, *lines]:
        print("  ".join(cell.ljust(width) if i == 0 else cell.rjust(width)
                        for i, (cell, width) in enumerate(zip(line, widths))))
    print()


def print_tables(options, figures):
    print("CPU milliseconds per frame offered, of the whole process; * not all frames were painted")
    lines = []
    for module_row, peer_rows in rows_of(options):
        for row in peer_rows:
            module = figures[module_row.name, "module"]
            peers = [figures[row.name, peer] for peer in options.peers]
            times = [f"{one['cpu_ms_per_frame']:.2f}" + ("*" if one["skipped"] else " ")
                     for one in [module, *peers]]
            ratios = [f"{module['cpu_ms_per_frame'] / one['cpu_ms_per_frame']:.2f}" for one in peers]
            painted = [f"{per_painted(module) / per_painted(one):.2f}" for one in peers]
            lines.append([row.name, *times, *ratios, *painted])
    names = [PEERS[peer] for peer in options.peers]
    table(["", "module ", *(f"{name} " for name in names), *(f"÷ {name}" for name in names),
           *(f"÷ {name}, painted" for name in names)], lines)

    print("The module; latency from ZRScreen_PlayFrame to the end of the swap, in milliseconds")
    lines = []
    for row, _ in rows_of(options):
        one = figures[row.name, "module"]
        lines.append([row.name] + [f"{one[name]:.0f}" for name in COLUMNS[:3]]
                     + [f"{one['gui_ms_per_frame']:.2f}", f"{one['latency_median_ms']:.1f}",
                        f"{one['latency_p99_ms']:.1f}", f"{one['copied_ratio']:.2f}",
                        f"{one['uploaded_ratio']:.2f}",
                        f"{one['compositions_per_new_frame']:.3f}"])
    table(["", "offered", "painted", "skipped", "GUI CPU/frame", "median", "p99", "copied",
           "uploaded", "compositions/new frame"], lines)


def print_overlays(options, figures):
    print("The module with and without what lies over the pictures, CPU milliseconds per frame painted")
    lines = []
    for row, _ in rows_of(options):
        both, plain = (per_painted(figures[row.name, name]) for name in ("module", "module plain"))
        lines.append([row.name, f"{both:.2f}", f"{plain:.2f}", f"{both / plain:.3f}"])
    table(["", "with", "without", "ratio"], lines)


def per_painted(one):
    return one["cpu_ms_per_frame"] * one["offered"] / max(one["painted"], 1)


def save(options, figures):
    with open(options.results / "compare.csv", "w", newline="", encoding="utf-8") as file:
        writer = csv.writer(file)
        writer.writerow(["row", "program", *COLUMNS])
        for (name, program), found in figures.items():
            writer.writerow([name, program, *(found.get(column, "") for column in COLUMNS)])


def plot(options, figures):
    """A group of bars for each row."""
    data = options.results / "compare.dat"
    with open(data, "w", encoding="utf-8") as file:
        for module_row, peer_rows in rows_of(options):
            for row in peer_rows:
                keys = [(module_row.name, "module"), *((row.name, peer) for peer in options.peers)]
                values = [f"{figures[key]['cpu_ms_per_frame']:.4f}" for key in keys]
                label = re.sub(", ", r"\\n", row.name)
                file.write(f'"{label}" {" ".join(values)}\n')
    names = ["module", *(PEERS[peer] for peer in options.peers)]
    bars = ", ".join(f"'{data}' using {i + 2}{':xtic(1)' if i == 0 else ''} title '{name}'"
                     for i, name in enumerate(names))
    script = f"""
        set terminal svg size 1100,480 font 'sans-serif,12' background 'white'
        set output '{options.results / "compare.svg"}'
        set style data histogram
        set style histogram clustered gap 1
        set style fill solid 0.8 noborder
        set key top left
        set grid ytics
        set logscale y
        set yrange [0.5:*]
        set ylabel 'CPU milliseconds per frame'
        set bmargin 5
        plot {bars}
    """
    subprocess.run(["gnuplot"], input=script, text=True, check=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("programs", type=pathlib.Path, help=argparse.SUPPRESS)
    parser.add_argument("results", type=pathlib.Path, help=argparse.SUPPRESS)
    parser.add_argument("--rows", nargs="+", default=ROWS, metavar="TILESxWIDTHxHEIGHT",
                        help="such as 9x16x16 for the composition alone; " + " ".join(ROWS))
    parser.add_argument("--phases", nargs="+", default=["step", "own"], choices=["step", "own"])
    parser.add_argument("--peers", nargs="+", default=list(PEERS), choices=list(PEERS))
    parser.add_argument("--seconds", type=int, default=5, help="of each run (5)")
    parser.add_argument("--repeats", type=int, default=3, help="of which the median counts (3)")
    parser.add_argument("--patient", action="store_true",
                        help="the time stands still for who is late, so that nothing is skipped: "
                        "for busy machines; latencies mean little then")
    parser.add_argument("--quick", action="store_true", help="each row once")
    parser.add_argument("--overlays", action="store_true",
                        help="also the module without what lies over the pictures")
    options = parser.parse_args()
    if options.quick:
        options.repeats = 1
    options.results.mkdir(parents=True, exist_ok=True)
    load = os.getloadavg()[0]
    figures = measure(options)
    print(f"{os.cpu_count()} cores, {options.seconds} s a run, the median of {options.repeats}; load "
          f"{load:.1f} before, {os.getloadavg()[0]:.1f} behind\n")
    print_tables(options, figures)
    if options.overlays:
        print_overlays(options, figures)
    save(options, figures)
    plot(options, figures)
    print(f"{options.results}/compare.csv, {options.results}/compare.svg")


if __name__ == "__main__":
    main()
