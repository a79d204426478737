"""lint_sources.py BUILD TARGET: runs clang-tidy on every source that git knows outside of tests and bench, as the folder BUILD
compiles it. Status 1 if it finds anything.

It takes some ten seconds a file. What was found clean is noted in the folder TARGET, and is not looked at again before the
source, a header of ours that it includes, or the list of checks has changed.

SPDX-License-Identifier: GPL-3.0-or-later
"""
import concurrent.futures
import hashlib
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys


def lines_of(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout.splitlines()


# clang-tidy can't read the precompiled header of another compiler: it is included as a plain one instead.
def write_commands(build, target):
    target.mkdir(parents=True, exist_ok=True)
    header = target / "precompiled.h"
    shutil.copy(build / "CMakeFiles/lumbra_pch.dir/cmake_pch.hxx", header)
    commands = json.loads((build / "compile_commands.json").read_text())
    for entry in commands:
        command = re.sub(r"^.*?ccache ", "", entry["command"])
        command = re.sub(r"-include \S+cmake_pch\.hxx", f"-include {header}", command)
        entry["command"] = re.sub(r"\s-(?:Winvalid-pch|fpch-preprocess|Wno-error=invalid-pch)\b", "", command)
    (target / "compile_commands.json").write_text(json.dumps(commands))


# The files of ours that each source is compiled from, as the build has noted them.
def parts_of_sources(build, root):
    parts, group = {}, []
    for line in lines_of("ninja", "-C", str(build), "-t", "deps") + [""]:
        if line.startswith("    "):
            path = pathlib.Path(os.path.normpath(build / line.strip())).resolve()
            if path.is_relative_to(root) and not path.is_relative_to(build):
                group.append(path)
        else:
            for source in group:
                if source.suffix == ".cpp":
                    parts.setdefault(str(source.relative_to(root)), sorted(group))
            group = []
    return parts


def digest(paths):
    total = hashlib.sha256()
    for path in paths:
        total.update(str(path).encode() + path.read_bytes() if path.exists() else b"")
    return total.hexdigest()


def check(name, target, mark, noted):
    result = subprocess.run(["clang-tidy-14", "-p", str(target), "--quiet", name], capture_output=True, text=True, check=False)
    if result.returncode:
        print(result.stdout or result.stderr, flush=True)
        return False
    mark.parent.mkdir(parents=True, exist_ok=True)
    mark.write_text(noted)
    return True


def main():
    build, target = (pathlib.Path(word).resolve() for word in sys.argv[1:])
    root = pathlib.Path.cwd()
    write_commands(build, target)
    parts = parts_of_sources(build, root)
    wanted = []
    for name in lines_of("git", "ls-files", "*.cpp", ":!tests", ":!bench"):
        noted = digest([root / ".clang-tidy", root / name, *parts.get(name, [])])
        mark = target / "clean" / name
        if not mark.exists() or mark.read_text() != noted:
            wanted.append((name, target, mark, noted))
    print(f"lint: clang-tidy, some ten seconds a file: {len(wanted)} of them", flush=True)
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        sys.exit(not all(list(pool.map(lambda words: check(*words), wanted))))


if __name__ == "__main__":
    main()
