"""lint_database.py BUILD TARGET: writes a compilation database that clang-tidy can read into the folder TARGET: that of
the folder BUILD without the precompiled header of another compiler, which is included as a plain one instead.

SPDX-License-Identifier: GPL-3.0-or-later
"""
import json
import pathlib
import re
import shutil
import sys


def main():
    build, target = map(pathlib.Path, sys.argv[1:])
    target.mkdir(parents=True, exist_ok=True)
    header = target.resolve() / "precompiled.h"
    shutil.copy(build / "CMakeFiles/lumbra_pch.dir/cmake_pch.hxx", header)
    commands = json.loads((build / "compile_commands.json").read_text())
    for entry in commands:
        command = re.sub(r"^.*?ccache ", "", entry["command"])
        command = re.sub(r"-include \S+cmake_pch\.hxx", f"-include {header}", command)
        entry["command"] = re.sub(r"\s-(?:Winvalid-pch|fpch-preprocess|Wno-error=invalid-pch)\b", "", command)
    (target / "compile_commands.json").write_text(json.dumps(commands))


if __name__ == "__main__":
    main()
