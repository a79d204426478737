"""Which files the demo library holds: their names, how each is made, how old it is, what is starred and noted.

SPDX-License-Identifier: GPL-3.0-or-later
"""
import dataclasses
import typing

import clips
import documents
import scenes
import screens
from canvas import seeded, to_image

HOUR, DAY = 1, 24


@dataclasses.dataclass
class File:
    path: str
    age: float  # hours before now
    make: typing.Callable[[str], None]  # writes the file at the given place
    starred: bool = False
    note: dict = dataclasses.field(default_factory=dict)


def _picture(path, age, size, scene, *arguments, starred=False, note=None, **look):
    def make(target):
        to_image(scene(seeded(path), *size, *arguments, **look)).save(target, quality=90)
    return File(path, age, make, starred, note or {})


def _drawn(path, age, draw, starred=False, note=None, **options):
    return File(path, age, lambda target: draw().save(target, **options), starred, note or {})


def _bytes(path, age, content, starred=False, note=None):
    def make(target):
        data = content()
        with open(target, "wb") as file:
            file.write(data if isinstance(data, bytes) else data.encode())
    return File(path, age, make, starred, note or {})


def _clip(path, age, size, rate, seconds, chord, frames, starred=False, note=None):
    return File(path, age, lambda target: clips.encode(target, frames(size, rate * seconds), size, rate, seconds, chord),
                starred, note or {})


def _prompt(words, **more):
    return {"prompt": words, "agent": "Claude Code", **more}


WIDE, LARGE, TALL, SQUARE = (1600, 1000), (1920, 1080), (1080, 1440), (1200, 1200)


def _site():
    p = "orbit-site"
    yield _picture(f"{p}/heroes/hero-dusk-v3.jpg", 2, WIDE, scenes.hills, scenes.DUSK, 7, (0.34, 0.42), 0.6, starred=True,
                   note=_prompt("Layered hills at dusk, one low sun, room for a headline on the left",
                                model="scene-3", tool="hero.py", task="the spring landing page"))
    yield _picture(f"{p}/heroes/hero-dusk-v2.jpg", 30, WIDE, scenes.hills, scenes.DUSK, 6, (0.6, 0.44), 0.5)
    yield _picture(f"{p}/heroes/hero-dusk-v1.jpg", 52, WIDE, scenes.hills, scenes.DUSK, 5, (0.7, 0.38), 0.4)
    yield _picture(f"{p}/heroes/hero-lake-teal.jpg", 5, WIDE, scenes.lake, scenes.TEAL)
    yield _picture(f"{p}/heroes/hero-sea-rose.webp", 3 * DAY, WIDE, scenes.ocean, scenes.ROSE, 0.32)
    yield _picture(f"{p}/heroes/backgrounds/mesh-ember.png", 6 * DAY, WIDE, scenes.mesh,
                   ["#ff9a5a", "#7a2a7d", "#231046", "#f0736a"])
    yield _picture(f"{p}/heroes/backgrounds/mesh-lagoon.png", 6.1 * DAY, WIDE, scenes.mesh,
                   ["#0b5d7d", "#7fd8c4", "#f4efe1", "#1f9aa0", "#103a5c"])
    yield _drawn(f"{p}/screens/landing-spring.png", 1.2, lambda: screens.landing(
        "landing-spring", ["Everything", "in its orbit"], "Know what your product does, the moment it does it."),
        note=_prompt("Landing page at 1600, dark header over the new hero", tool="shoot.js", task="review of the landing page"))
    yield _drawn(f"{p}/screens/landing-pricing.png", 26, lambda: screens.landing(
        "landing-pricing", ["One plan,", "no surprises"], "Twenty days for nothing. Then nine a month.", scenes.TEAL,
        "Try it"))
    yield _drawn(f"{p}/screens/dashboard-light.png", 4, lambda: screens.dashboard("dashboard-light"))
    yield _drawn(f"{p}/screens/dashboard-dark.png", 4.2, lambda: screens.dashboard("dashboard-dark", accent="#ff9f43",
                                                                                   dark=True), starred=True)
    yield _bytes(f"{p}/brand/orbit-logo.svg", 12 * DAY, lambda: screens.LOGO, starred=True)
    yield _bytes(f"{p}/brand/how-a-frame-is-made.svg", 9 * DAY, lambda: screens.DIAGRAM)
    yield _drawn(f"{p}/brand/poster-launch.png", 11 * DAY, lambda: screens.poster(
        "poster-launch", ["Orbit", "Spring", "Release"], "21 March, everywhere at once", ["#f0736a", "#ffcf6b", "#7a2a7d"]))
    yield _bytes(f"{p}/README.md", 14 * DAY, lambda: documents.README)
    yield _bytes(f"{p}/launch-plan.pdf", 8 * DAY, lambda: documents.pdf("Launch plan", [
        [(26, "Launch plan"), (11, "Orbit goes public on 21 March. This is who does what until then."),
         (16, "Two weeks before"), (11, "Freeze the copy of the landing page. Record the tour."),
         (11, "Mara: pictures. Jonas: the price page. Ines: the letter to the first users."),
         (16, "On the day"), (11, "06:00 the site, 08:00 the letter, 10:00 the talk."),
         (11, "Everyone watches the dashboard until noon.")],
        [(22, "What may go wrong"), (11, "The font server is slow: the page must stand without it."),
         (11, "The tour does not load: a still picture stands in its place.")]]))


def _app():
    p = "orbit-app"
    yield _drawn(f"{p}/mockups/home-v2.png", 7, lambda: screens.phone("home-v2"),
                 note=_prompt("Home screen of a walking app, warm and light, one large picture", model="layout-2"))
    yield _drawn(f"{p}/mockups/home-v1.png", 3.5 * DAY, lambda: screens.phone("home-v1", "#3f7d6a"))
    yield _drawn(f"{p}/mockups/editor-theme.png", 20, lambda: screens.editor("editor-theme"))
    yield _drawn(f"{p}/icons/app-icon.png", 2.2 * DAY, lambda: screens.badge("app-icon"), starred=True)
    yield _drawn(f"{p}/icons/app-icon-night.png", 2.3 * DAY, lambda: screens.badge(
        "app-icon-night", ("#7fb7ff", "#4f6df5", "#17142b")))
    yield File(f"{p}/motion/loading-orbits.gif", 9.5, screens.orbits)
    yield _clip(f"{p}/motion/onboarding-waves.webm", 1.6 * DAY, (960, 540), 25, 5, clips.BRIGHT,
                lambda size, count: clips.waves("onboarding-waves", size, count))
    yield _bytes(f"{p}/release-notes.md", 1.8 * DAY, lambda: "# 2.8.1\n\n- The first screen opens twice as fast.\n"
                 "- Walks can be shared as a picture.\n- The map no longer forgets where it was.\n")


def _film():
    p = "northlight-film"
    yield _clip(f"{p}/renders/shot-02-aurora.mp4", 0.4, (960, 540), 25, 6, clips.DEEP,
                lambda size, count: clips.northern_lights("shot-02", size, count), starred=True,
                note=_prompt("Aurora over a ridge, slow, hold the last frame", model="sky-2", tool="render.py",
                             task="shot 02", source="renders/shot-02.blend"))
    yield _clip(f"{p}/renders/shot-01-lake.mp4", 8, (1280, 720), 25, 6, clips.CALM,
                lambda size, count: clips.drift("shot-01", size, count, lambda r, w, h: scenes.lake(r, w, h, scenes.DAWN)))
    yield _clip(f"{p}/renders/shot-03-harbour.mkv", 1.4 * DAY, (1280, 720), 25, 5, clips.CALM,
                lambda size, count: clips.drift("shot-03", size, count, scenes.city))
    for number in range(1, 21):
        yield _picture(f"{p}/renders/shot-04/frame_{number:04}.png", 0.9 + (20 - number) * 0.004, (960, 540),
                       lambda r, w, h, turn: scenes.planet(seeded("shot-04"), w, h, turn, ring=True,
                                                           colours=("#3a2a1c", "#8a6a3f", "#d8b884", "#f0e0c0")),
                       (number - 1) / 60)
    yield _picture(f"{p}/stills/aurora-green.jpg", 15, LARGE, scenes.aurora, starred=True)
    yield _picture(f"{p}/stills/aurora-violet.jpg", 15.2, LARGE, scenes.aurora, ("#b05cff", "#ff6bb5", "#39c0ff"))
    yield _picture(f"{p}/stills/lake-before-dawn.jpg", 2.6 * DAY, LARGE, scenes.lake, scenes.DAWN)
    yield _picture(f"{p}/stills/window-frost.jpg", 4 * DAY, WIDE, scenes.bokeh, ("#bfe3ff", "#7fb7ff", "#ffffff", "#ffe2b0"),
                   ("#1b2c44", "#0c1626"))
    yield _picture(f"{p}/stills/harbour-blue-hour.jpg", 5 * DAY, LARGE, scenes.city,
                   ("#07142e", "#1a2f5c", "#4a5f8f", "#c99a8a"))
    yield _drawn(f"{p}/storyboard-scene-4.png", 7 * DAY, lambda: screens.storyboard("storyboard"))
    yield File(f"{p}/voice/opening-take-1.wav", 2 * DAY, lambda target: clips.speech(
        target, "There is a night in the north that does not end. We came to see what it is made of."))
    yield File(f"{p}/voice/closing-take-2.wav", 6, lambda target: clips.speech(
        target, "And when the light had gone, nobody said a word.", "rms"),
        note=_prompt("Slower, calmer than the first take", tool="flite", task="the last line"))
    yield File(f"{p}/music/theme-sketch.mp3", 10 * DAY, lambda target: clips.music(target, clips.DEEP, 12))
    yield _bytes(f"{p}/brief.md", 16 * DAY, lambda: documents.BRIEF)
    yield _bytes(f"{p}/treatment.docx", 18 * DAY, lambda: documents.docx([
        "Northlight, a treatment", "We open on a lake before dawn. Nothing moves but the water.",
        "A house, one window lit. She has been awake for hours and does not know it.",
        "The sky begins. We never see her look up; we see it in the snow around her.",
        "The last picture is the first one, in green."]))


def _island():
    p = "island-survey"
    yield _picture(f"{p}/aerial/north-bay-01.jpg", 3, WIDE, scenes.coast, starred=True,
                   note=_prompt("Stitch the two passes over the north bay", tool="stitch.py", task="survey, day 4"))
    yield _picture(f"{p}/aerial/north-bay-02.jpg", 3.2, WIDE, scenes.coast, rise=0.06)
    yield _picture(f"{p}/aerial/south-reef.jpg", 28, SQUARE, scenes.coast, rise=-0.05)
    yield _picture(f"{p}/aerial/sand-bank.jpg", 29, WIDE, scenes.coast, ("#f4e7c5", "#e2cf9a", "#b7b37a", "#7f9461"), rise=0.1)
    yield _picture(f"{p}/aerial/dunes-evening.jpg", 2.8 * DAY, WIDE, scenes.dunes)
    yield _picture(f"{p}/aerial/salt-flats.jpg", 20 * DAY, WIDE, scenes.dunes, ("#41506b", "#8fa3b8", "#d5dee4", "#ffffff"))
    yield _picture(f"{p}/photos/day-3/ridge-morning.jpg", 12 * DAY, WIDE, scenes.hills, scenes.ROSE, 6, (0.3, 0.3), 0.7)
    yield _picture(f"{p}/photos/day-3/pines-noon.jpg", 12.1 * DAY, TALL, scenes.hills, scenes.NOON, 6, (0.7, 0.16), 0.75)
    yield _picture(f"{p}/photos/day-3/after-the-rain.jpg", 12.2 * DAY, WIDE, scenes.ocean, scenes.DAWN, 0.66, starred=True)
    yield _picture(f"{p}/photos/day-4/fog-over-the-lake.jpg", 13 * DAY, WIDE, scenes.lake,
                   dict(sky=["#7f93a3", "#a9b8c2", "#cfd8dc", "#eceff0"], far="#b4c1c9", near="#33434d", sun="#ffffff"))
    yield _picture(f"{p}/photos/day-4/night-walk.jpg", 13.2 * DAY, TALL, scenes.aurora)
    yield _clip(f"{p}/aerial/pass-over-the-bay.mp4", 3.4, (1280, 720), 25, 5, clips.BRIGHT,
                lambda size, count: clips.drift("bay-pass", size, count, lambda r, w, h: scenes.coast(r, w, h, rise=0.04), 0.4))
    yield _bytes(f"{p}/counts.csv", 12.5 * DAY, lambda: documents.measurements(seeded("counts")))
    yield _bytes(f"{p}/field-notes.md", 12.6 * DAY, lambda: documents.FIELD_NOTES)
    yield _bytes(f"{p}/report-draft.pdf", 35 * DAY, lambda: documents.pdf("Survey of the island", [
        [(26, "Survey of the island"), (11, "Draft. Fourteen days, three counts a day, two flights."),
         (16, "What we saw"), (11, "The terns have moved from the southern reef to the northern sand."),
         (11, "The bay is shallower by a hand's breadth than two years ago.")]]))


def _garden():
    p = "paper-garden"
    yield _picture(f"{p}/concepts/clay-family.png", 11, WIDE, scenes.still_life, starred=True,
                   note=_prompt("Five glazed clay balls on a warm table, soft light from the left", model="still-1",
                                tool="trace.py", task="mood of the second level"))
    yield _picture(f"{p}/concepts/clay-family-mint.png", 11.3, SQUARE, scenes.still_life,
                   ("#ffb4a2", "#e5989b", "#b5838d", "#6d6875", "#ffcdb2"), ("#dff0e6", "#9fc4b2"))
    yield _picture(f"{p}/concepts/ember-nebula.jpg", 22, LARGE, scenes.nebula)
    yield _picture(f"{p}/concepts/deep-sea.jpg", 3.1 * DAY, LARGE, scenes.nebula, ("#02070f", "#062a44", "#0b6a7d", "#5fd0b8",
                                                                                 "#f1ffe0"))
    yield _picture(f"{p}/concepts/lanterns.jpg", 23, TALL, scenes.bokeh)
    yield _picture(f"{p}/textures/ink-water.jpg", 17 * DAY, SQUARE, scenes.marble,
                   ["#10233f", "#1f6f8b", "#99d5c9", "#f4efe1", "#e07a5f"])
    yield _picture(f"{p}/textures/rose-marble.jpg", 17.1 * DAY, SQUARE, scenes.marble,
                   ["#fff4ef", "#f7c6c0", "#d98a94", "#7c4258", "#f6e7d8"])
    yield _picture(f"{p}/textures/jade.jpg", 24 * DAY, SQUARE, scenes.marble,
                   ["#04251c", "#0f5c45", "#5fae84", "#d7eec4", "#f7f3d7"])
    yield _picture(f"{p}/worlds/blue-world.png", 1.1 * DAY, SQUARE, scenes.planet)
    yield _picture(f"{p}/worlds/red-world.png", 39 * DAY, SQUARE, scenes.planet, 0.3,
                   ("#2b0f0c", "#7a2f1f", "#c4673a", "#f0b878", "#fff0d8"), "#ffb48f")
    yield _drawn(f"{p}/sprites/gems.png", 31 * DAY, lambda: screens.sprites("gems"), starred=True)
    yield _clip(f"{p}/worlds/blue-world-turning.mp4", 27, (640, 360), 24, 4, clips.BRIGHT,
                lambda size, count: clips.turning("blue-world", size, count))
    yield _clip(f"{p}/tests/bounce.mp4", 33 * DAY, (960, 540), 24, 4, clips.CALM,
                lambda size, count: clips.bounce("bounce", size, count))
    yield _bytes(f"{p}/levels.csv", 26 * DAY, lambda: "level,name,gems,seconds\n1,Clay,12,90\n2,Lanterns,18,120\n"
                 "3,Deep sea,24,150\n4,Worlds,30,200\n")


FILES = [*_site(), *_app(), *_film(), *_island(), *_garden()]
LINKED_PROJECT = "orbit-site"
