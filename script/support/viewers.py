"""A folder of 2,000 pictures opened by the application and by the picture viewers of Debian, each with a home of its own
in which nothing is cached, judged alike by what stands on the display.

SPDX-License-Identifier: GPL-3.0-or-later
"""
import os
import pathlib
import random
import shutil
import statistics
import subprocess
import tempfile

import desktop

PICTURES = 2000
ORIGINALS = 100  # the others are further names of them: a viewer that knows a file knows it by its name
STILL = 2000  # milliseconds that a picture stands when it is complete
LANDED_STILL = 1000
LANDING = "magenta.jpg", "green.jpg"
LANDINGS = 8

GEEQIE = """<?xml version="1.0" encoding="UTF-8"?>
<gq>
<global confirm_delete="false" thumbnails.max_width="96" thumbnails.max_height="72" thumbnails.enable_caching="true"
 thumbnails.spec_standard="true" thumbnails.quality="1">
<filter><file_type key="jpeg" enabled="true" extensions=".jpg" description="JPEG" file_class="1" /></filter>
</global>
<layout id="main" order="213" file_view_type="1" show_thumbnails="true" startup_path="0" main_window.w="1440"
 main_window.h="900" main_window.maximized="true" main_window.hdivider_pos="1300" main_window.vdivider_pos="700" />
</gq>
"""
QIMGV = """[General]
defaultViewMode=0
firstRun=false
lastVerMajor=1
lastVerMinor=0
lastVerMicro=2
"""


def picture(path, seed):
    """A JPEG of 3 megapixels, lying or standing, of soft light, edges and grain, so that it compresses as photographs do,
    and nowhere of the pure colours of what lands."""
    import numpy
    from PIL import Image

    random = numpy.random.default_rng(seed)
    width, height = (2048, 1536) if seed % 4 else (1536, 2048)
    y, x = numpy.mgrid[0:height, 0:width].astype(numpy.float32)
    light = numpy.empty((height, width, 3), numpy.float32)
    for channel in range(3):
        waves = random.uniform(0.5, 4, 4) * 2 * numpy.pi / width
        light[..., channel] = 128 + 50 * numpy.sin(x * waves[0] + y * waves[1]) + 40 * numpy.cos(x * waves[2] - y * waves[3])
    for _ in range(30):
        left, top = random.integers(0, width), random.integers(0, height)
        light[top:top + random.integers(20, 400), left:left + random.integers(20, 400)] += random.uniform(-70, 70, 3)
    light += random.normal(0, 4, (height, width, 1))
    Image.fromarray(light.clip(60, 195).astype(numpy.uint8)).save(path, quality=88)


def make(root):
    """The library with its one project, whose folder is the one that is opened; made once."""
    from PIL import Image

    folder = root / "library" / "pictures"
    stamp = root / "made"
    if not stamp.exists():
        shutil.rmtree(root, ignore_errors=True)
        folder.mkdir(parents=True)
        for number in range(ORIGINALS):
            picture(folder / f"{number:04}.jpg", number)
        for number in range(ORIGINALS, PICTURES):
            os.link(folder / f"{number % ORIGINALS:04}.jpg", folder / f"{number:04}.jpg")
        for name, colour in zip(LANDING, ((255, 0, 255), (0, 255, 0))):
            Image.new("RGB", (2048, 1536), colour).save(root / name)
        stamp.touch()
    return folder


def home(base):
    """The environment of a program with a home of its own, in which it has no small pictures, but whatever else a second
    start finds: shaders that the driver has compiled, what desktops keep of their services."""
    private = {"HOME": base, **{name: base / name.lower() for name in
               ("XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR")}}
    for path in private.values():
        path.mkdir(mode=0o700, parents=True, exist_ok=True)
    for path in ("thumbnails", "qimgv", "geeqie"):
        shutil.rmtree(private["XDG_CACHE_HOME"] / path, ignore_errors=True)
    for path, text in (("geeqie/geeqierc.xml", GEEQIE), ("qimgv/qimgv.conf", QIMGV)):
        file = private["XDG_CONFIG_HOME"] / path
        file.parent.mkdir(exist_ok=True)
        file.write_text(text)
    environment = {**os.environ, **{name: str(path) for name, path in private.items()}, "QT_QPA_PLATFORM": "xcb",
                   "GDK_BACKEND": "x11", "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent"}
    environment.pop("WAYLAND_DISPLAY", None)
    return environment


def measure(binaries, root, rounds):
    """By viewer: the medians of milliseconds to the first frame, to the complete screenful, and, for some, from a file
    that lands to its picture."""
    folder = make(root)
    library = folder.parent
    programs = {"ours": [binaries / "lumbra-desktop", folder], "qimgv": ["qimgv", folder], "geeqie": ["geeqie", folder],
                "Gwenview": ["gwenview", folder]}
    taken = {name: [] for name in programs}
    with desktop.display() as display, tempfile.TemporaryDirectory(prefix="lumbra-viewers-") as homes:

        def shown(name, still, *landing):
            """What the watcher tells of one start of a program."""
            environment = home(pathlib.Path(homes) / name) | {"DISPLAY": display, "LUMBRA_LIBRARY": str(library)}
            arguments = [*landing, still, *programs[name]]
            out = subprocess.run([str(binaries / "bench_screen"), *map(str, arguments)], env=environment, check=True,
                                 stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True).stdout
            return {key: float(value) for key, value in (line.split() for line in out.splitlines())}

        names = list(programs)
        for round_number in range(rounds + 1):
            # None always comes after the same one, with what that has left to the disk.
            random.Random(round_number).shuffle(names)
            for name in names:
                os.sync()
                values = shown(name, STILL)
                if round_number:
                    taken[name].append(values)
        medians = {name: {key: statistics.median(one[key] for one in values) for key in values[0]}
                   for name, values in taken.items()}
        for name in ("ours", "qimgv"):
            landed = shown(name, LANDED_STILL, "--landing", *(root / picture for picture in LANDING), folder, LANDINGS)
            medians[name] |= {key: value for key, value in landed.items() if "landing" in key}
    return medians
