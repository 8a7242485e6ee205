#!/usr/bin/env python3
"""Compares the binary interface of the built libraries with the one that was agreed on.

    packaging/abi.py BUILD_DIR          fails where they differ, and says where
    packaging/abi.py BUILD_DIR --renew  the built one is the agreed one from now on

The dumps in packaging/abi hold what the exports reach and nothing of foreign classes' insides.
"""
import pathlib
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as xml

HERE = pathlib.Path(__file__).resolve().parent
OPTIONS = ["--no-corpus-path", "--no-comp-dir-path", "--no-elf-needed", "--no-show-locs",
           "--no-parameter-names", "--no-write-default-sizes", "--exported-interfaces-only"]
LIBRARIES = {"ZRScreenMod": "zrscreenmod", "ZRScreenModC": "zrscreenmodc"}
RECORDS = ("tag", "ZR", "Vantrel", "__WTMark")


def dump(library, name, to):
    subprocess.run(["abidw", *OPTIONS, "--out-file", to, library], check=True)
    tree = xml.parse(to)
    corpus = tree.getroot()
    types = {node.get("id"): node for node in corpus.iter() if node.get("id")}
    prefix = "ZRScreenC_" if name == "ZRScreenModC" else "ZR"
    kept = [node for node in corpus.iter("function-decl")
            if node.get("elf-symbol-id", "").startswith(prefix)]
    reached = {}
    waiting = list(kept)
    while waiting:
        node = waiting.pop()
        if node.tag == "class-decl" and not node.get("name").startswith(RECORDS):
            node[:] = []  # it is enough that it is that class
            node.set("is-declaration-only", "yes")
        for part in node.iter():
            key = part.get("type-id")
            if key and key not in reached:
                reached[key] = types[key]
                waiting.append(types[key])
    unit = xml.Element("abi-instr", {"address-size": "64", "path": name,
                                     "language": "LANG_C_plus_plus_14"})
    unit.extend(sorted(reached.values(), key=list(types.values()).index))
    unit.extend(sorted(kept, key=lambda node: node.get("name")))
    # Numbers of types that depend on nothing but these, so that a dump made anew differs little.
    numbers = {node.get("id"): f"t{i}" for i, node in enumerate(unit) if node.get("id")}
    for part in unit.iter():
        for key in ("id", "type-id", "naming-typedef-id"):
            if part.get(key) in numbers:
                part.set(key, numbers[part.get(key)])
    for node in corpus.findall("abi-instr"):
        corpus.remove(node)
    corpus.append(unit)
    xml.indent(tree, " ")
    tree.write(to)


def main():
    build, renew = pathlib.Path(sys.argv[1]), sys.argv[2:] == ["--renew"]
    different = False
    with tempfile.TemporaryDirectory() as folder:
        for name, place in LIBRARIES.items():
            agreed = HERE / "abi" / f"{name}.abi"
            built = agreed if renew else pathlib.Path(folder) / f"{name}.abi"
            dump(build / place / f"lib{name}.so", name, built)
            different |= subprocess.run(["abidiff", agreed, built]).returncode != 0
    if different:
        print("The interface has changed. When that is meant: packaging/abi.py BUILD_DIR --renew")
    return different


sys.exit(main())
