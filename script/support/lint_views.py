"""lint_views.py BUILD: runs qmllint on every view that git knows, against the modules in the folder BUILD, and prints what
it warns of. Status 1 if there is anything.

Left out is what qmllint 6.4 is wrong about, and no more:
- It calls every id "unqualified" that is used inside of a Component or a delegate that lies within the id's own. Views can
  only say that they are bound there from Qt 6.5 on. Outside of its file, thus in an inline component, no id is to be used.
- It takes Qt.callLater for a value, since the engine declares it as one.
- It knows no whole numbers of 64 bits, which the engine hands to a view as numbers, no methods of lists and of urls,
  nothing of Application.styleHints, and no sizes and points in whole pixels, to which the engine rounds those of a view.

Nor are parts of a control to be without ids. An id has a part made even where a control that builds on this one replaces
it, which ours do not, but for an entry of a menu; the sizes of parts, on the other hand, are seen everywhere.

SPDX-License-Identifier: GPL-3.0-or-later
"""
import json
import pathlib
import re
import subprocess
import sys

QMLLINT = "/usr/lib/qt6/bin/qmllint"


WRONG = re.compile(r'Property "callLater" is a QJSValue property'
                   r'|Type "qlonglong" of property'
                   r'|Property "\w+" not found on type "(?:QVariantList|QUrl)"'
                   r'|Cannot assign binding of type Q(Size|Point)F? to Q\1F?$'
                   r'|Property "startDragDistance" not found on type "QObject"')


def blank(match):
    return re.sub(r"[^\n]", " ", match[0])


class View:
    def __init__(self, text):
        self.text = text
        self.starts = [0] + [match.end() for match in re.finditer("\n", text)]
        code = re.sub(r'"(?:\\.|[^"\\\n])*"|//[^\n]*|/\*.*?\*/', blank, text, flags=re.S)
        self.ids = {match[1]: match.start() for match in re.finditer(r"\bid: *(\w+)", code)}
        self.inline = [(match.end(), end_of(code, match.end()))
                       for match in re.finditer(r"\bcomponent\s+\w+\s*:\s*[\w.]+\s*{", code)]

    def inline_around(self, place):
        return [span for span in self.inline if span[0] <= place < span[1]]

    def is_id_within_reach(self, place):
        name = re.match(r"\w+", self.text[place:])
        at = self.ids.get(name[0]) if name else None
        return at is not None and self.inline_around(at) == self.inline_around(place)


def end_of(code, place):
    depth = 1
    while depth and place < len(code):
        depth += {"{": 1, "}": -1}.get(code[place], 0)
        place += 1
    return place


def is_wrong(view, warning):
    if warning["message"] == "Unqualified access":
        return view.is_id_within_reach(view.starts[warning["line"] - 1] + warning["column"] - 1)
    return WRONG.match(warning["message"]) is not None


def lint(build, floor, names):
    resources = [word for path in sorted((build / floor / ".rcc").glob("*.qrc")) for word in ("--resource", str(path))]
    result = subprocess.run([QMLLINT, "--deferred-property-id", "disable", "-I", str(build / "qml"), "-I", str(build / "bin/qml"), *resources, "--json", "-", *names],
                            capture_output=True, text=True, check=False)
    if not result.stdout:
        sys.exit(f"lint: qmllint said nothing on {floor}: {result.stderr}")
    found = 0
    for entry in json.loads(result.stdout)["files"]:
        name = pathlib.Path(entry["filename"])
        view = View(name.read_text())
        for warning in entry["warnings"]:
            if warning["type"] == "info" or is_wrong(view, warning):
                continue
            found += 1
            print(f"{name.relative_to(pathlib.Path.cwd())}:{warning.get('line', 0)}:{warning.get('column', 0)}: {warning['message']}")
    return found


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    views = subprocess.run(["git", "ls-files", "*.qml", ":!tests"], capture_output=True, text=True, check=True).stdout.split()
    floors = {}
    for name in views:
        floors.setdefault(name.split("/")[0], []).append(name)
    sys.exit(any([lint(build, floor, names) for floor, names in sorted(floors.items())]))


if __name__ == "__main__":
    main()
