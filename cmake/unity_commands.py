#!/usr/bin/env python3
"""Joins the sources of each library of the product for clang-tidy, which spends its time on Qt's
headers and does so once for each file that it is given.

unity_commands.py COMPILE_COMMANDS OUT FOLDER...: for each target below the folders a file in OUT
that includes the target's sources, and OUT/compile_commands.json with the commands for them.
"""
import json
import pathlib
import re
import sys


def main():
    commands, out = json.loads(pathlib.Path(sys.argv[1]).read_text()), pathlib.Path(sys.argv[2])
    folders = tuple(f"{pathlib.Path(folder).resolve()}/" for folder in sys.argv[3:])
    targets = {}
    for command in commands:
        if command["file"].startswith(folders):
            target = re.search(r" -o \S*CMakeFiles/([^/]+)\.dir/", command["command"])[1]
            targets.setdefault(target, []).append(command)
    out.mkdir(parents=True, exist_ok=True)
    joined = []
    for target, members in targets.items():
        first, file = members[0], out.resolve() / f"{target}.cpp"
        file.write_text("".join(f'#include "{member["file"]}" // NOLINT(bugprone-suspicious-include)\n'
                                for member in members))
        joined.append({"directory": first["directory"], "file": str(file),
                       "command": first["command"].replace(first["file"], str(file))})
    (out / "compile_commands.json").write_text(json.dumps(joined, indent=1))


main()
