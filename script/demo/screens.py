"""Pictures with words and shapes in them: screenshots of made-up programs, posters, icons, an animation, drawings in SVG.

SPDX-License-Identifier: GPL-3.0-or-later
"""
import math

import numpy as np
from PIL import Image, ImageDraw, ImageFilter, ImageFont

import scenes
from canvas import seeded, to_image

FACES = {"regular": "Inter-Regular", "bold": "Inter-SemiBold", "black": "Inter-ExtraBold"}


def font(size, face="regular"):
    return ImageFont.truetype(f"/usr/share/fonts/opentype/inter/{FACES[face]}.otf", size)


class Page:
    """A picture drawn at twice its size and brought down at the end, so that every edge is smooth."""

    def __init__(self, width, height, colour):
        self.size = (width, height)
        self.image = Image.new("RGB", (width * 2, height * 2), colour)
        self.draw = ImageDraw.Draw(self.image)

    def box(self, x, y, width, height, colour, radius=0, outline=None):
        self.draw.rounded_rectangle([x * 2, y * 2, (x + width) * 2, (y + height) * 2], radius * 2, colour, outline, 2)

    def text(self, x, y, words, size=14, colour="#222222", face="regular", anchor="la"):
        self.draw.text((x * 2, y * 2), words, colour, font(size * 2, face), anchor)

    def line(self, points, colour, width=2):
        self.draw.line([(x * 2, y * 2) for x, y in points], colour, width * 2, joint="curve")

    def paste(self, picture, x, y, radius=0):
        picture = picture.resize((picture.width * 2, picture.height * 2), Image.BICUBIC)
        mask = Image.new("L", picture.size, 0)
        ImageDraw.Draw(mask).rounded_rectangle([0, 0, picture.width - 1, picture.height - 1], radius * 2, 255)
        self.image.paste(picture, (int(x * 2), int(y * 2)), mask)

    def done(self):
        return self.image.resize(self.size, Image.LANCZOS)


def dashboard(name, title="Orbit Analytics", accent="#4f6df5", dark=False):
    """A page of figures with a chart, as a web application would show it."""
    rng = seeded(name)
    back, card, ink, soft = ("#14161d", "#1d2029", "#f2f3f7", "#8b90a0") if dark else \
        ("#f4f5f9", "#ffffff", "#1b1d28", "#7a8094")
    page = Page(1440, 900, back)
    page.box(0, 0, 232, 900, card)
    page.box(24, 26, 28, 28, accent, 8)
    page.text(64, 30, title.split()[0], 18, ink, "bold")
    for row, entry in enumerate(["Overview", "Sessions", "Audience", "Revenue", "Releases", "Alerts", "Settings"]):
        if row == 0:
            page.box(12, 84, 208, 38, accent + "", 9)
        page.text(56, 94 + row * 46, entry, 14, "#ffffff" if row == 0 else soft)
        page.box(28, 96 + row * 46, 14, 14, "#ffffff" if row == 0 else soft, 4)
    page.text(272, 36, "Overview", 26, ink, "bold")
    page.text(272, 74, "The last 30 days, compared with the month before", 14, soft)
    figures = [("Visitors", "48,210", "+12.4%"), ("Sign-ups", "3,905", "+8.1%"), ("Revenue", "$92,480", "+5.6%"),
               ("Churn", "1.9%", "-0.3%")]
    for column, (label, value, change) in enumerate(figures):
        x = 272 + column * 284
        page.box(x, 116, 264, 116, card, 14)
        page.text(x + 20, 134, label, 14, soft)
        page.text(x + 20, 160, value, 30, ink, "bold")
        page.text(x + 244, 138, change, 13, "#2fa36b", "bold", "ra")
    page.box(272, 256, 832, 380, card, 14)
    page.text(296, 276, "Sessions a day", 16, ink, "bold")
    for step in range(5):
        page.line([(296, 580 - step * 62), (1080, 580 - step * 62)], "#2a2e3a" if dark else "#e9ebf2", 1)
        page.text(1080, 562 - step * 62, f"{step}k", 11, soft, "regular", "ra")
    values = np.cumsum(rng.normal(4, 13, 40)) + 80 + 24 * np.sin(np.arange(40) / 3)
    values = (values - values.min()) / np.ptp(values) * 220 + 24
    points = [(296 + i * 784 / 39, 580 - v) for i, v in enumerate(values)]
    shade = Image.new("RGBA", page.image.size, (0, 0, 0, 0))
    ImageDraw.Draw(shade).polygon([(x * 2, y * 2) for x, y in points] + [(2160, 1160), (592, 1160)], accent + "30")
    page.image.paste(shade, (0, 0), shade)
    page.line(points, accent, 3)
    page.box(1124, 256, 276, 380, card, 14)
    page.text(1144, 276, "Where they come from", 16, ink, "bold")
    for row, (label, share) in enumerate([("Search", 46), ("Direct", 27), ("Newsletter", 14), ("Social", 9), ("Other", 4)]):
        page.text(1144, 318 + row * 60, label, 13, ink)
        page.text(1380, 318 + row * 60, f"{share}%", 13, soft, "regular", "ra")
        page.box(1144, 342 + row * 60, 236, 8, "#2a2e3a" if dark else "#eceef4", 4)
        page.box(1144, 342 + row * 60, 236 * share / 50, 8, accent, 4)
    page.box(272, 660, 1128, 210, card, 14)
    page.text(296, 680, "Latest releases", 16, ink, "bold")
    for row, (version, words, who) in enumerate([("2.8.1", "Faster first paint on slow networks", "Mara"),
                                                 ("2.8.0", "New onboarding, dark mode for charts", "Jonas"),
                                                 ("2.7.4", "Fixes the export of long tables", "Ines")]):
        page.text(296, 724 + row * 44, version, 14, accent, "bold")
        page.text(380, 724 + row * 44, words, 14, ink)
        page.text(1376, 724 + row * 44, who, 14, soft, "regular", "ra")
    return page.done()


def phone(name, accent="#ff7a4d"):
    """A screen of an application for the telephone, upright."""
    page = Page(780, 1688, "#fbf7f2")
    hero = to_image(scenes.hills(seeded(name), 700, 560, scenes.ROSE, sun=(0.7, 0.3)))
    page.text(60, 40, "9:41", 28, "#1d1a22", "bold")
    page.text(60, 130, "Good morning, Noa", 46, "#1d1a22", "bold")
    page.text(60, 196, "Three walks near you for a dry day", 28, "#8a8290")
    page.paste(hero, 40, 270, 44)
    page.text(80, 712, "Ridge of the two lakes", 38, "#ffffff", "bold")
    page.text(80, 764, "9.2 km   420 m up   3 h 10 min", 26, "#ffffff")
    for row, (label, facts, palette) in enumerate([("Forest loop", "5.1 km  1 h 30 min", scenes.NOON),
                                                   ("Old harbour", "3.4 km  55 min", scenes.DUSK),
                                                   ("The long valley", "14 km  4 h 40 min", scenes.TEAL)]):
        y = 876 + row * 196
        page.box(40, y, 700, 172, "#ffffff", 36)
        page.paste(to_image(scenes.hills(seeded(label), 132, 132, palette, 4)), 60, y + 20, 26)
        page.text(224, y + 42, label, 32, "#1d1a22", "bold")
        page.text(224, y + 92, facts, 26, "#8a8290")
    page.box(40, 1490, 700, 112, accent, 56)
    page.text(390, 1546, "Start a walk", 34, "#ffffff", "bold", "mm")
    return page.done()


def landing(name, heading, below, palette=scenes.DUSK, button="Get started"):
    """The top of a web site, over a landscape."""
    page = Page(1600, 1000, "#000000")
    page.paste(to_image(scenes.hills(seeded(name), 1600, 1000, palette, 7, (0.72, 0.44), 0.6)), 0, 0)
    page.text(80, 48, "orbit", 28, "#ffffff", "black")
    for column, entry in enumerate(["Product", "Pricing", "Stories", "Sign in"]):
        page.text(1100 + column * 120, 54, entry, 17, "#ffffff")
    for row, words in enumerate(heading):
        page.text(80, 210 + row * 92, words, 80, "#ffffff", "black")
    page.text(84, 230 + len(heading) * 92, below, 24, "#ffffffd0")
    page.box(80, 290 + len(heading) * 92, 210, 62, "#ffffff", 31)
    page.text(185, 321 + len(heading) * 92, button, 20, "#20142c", "bold", "mm")
    return page.done()


def editor(name):
    """Source text in an editor, for a recogniser to read."""
    page = Page(1280, 800, "#1a1b26")
    page.box(0, 0, 1280, 44, "#14151f")
    for dot, colour in enumerate(["#ff5f57", "#febc2e", "#28c840"]):
        page.box(20 + dot * 24, 15, 14, 14, colour, 7)
    page.text(640, 22, "render.py", 14, "#8b90b0", "regular", "mm")
    source = ["import math", "", "def orbit(radius, turns, steps=240):", '    """Points on a spiral, outward."""',
              "    for step in range(steps):", "        angle = step / steps * turns * math.tau",
              "        reach = radius * step / steps", "        yield reach * math.cos(angle), reach * math.sin(angle)",
              "", "def main():", "    points = list(orbit(radius=320, turns=5))", "    print(len(points), 'points')", "",
              "if __name__ == '__main__':", "    main()"]
    for row, words in enumerate(source):
        page.text(40, 76 + row * 34, f"{row + 1:>2}", 17, "#4a4f70")
        indent = len(words) - len(words.lstrip())
        colour = "#7aa2f7" if words.strip().startswith(("def", "import", "for", "if")) else \
            "#9ece6a" if '"""' in words else "#c0caf5"
        page.text(90 + indent * 10, 76 + row * 34, words.strip(), 17, colour)
    page.box(0, 640, 1280, 160, "#14151f")
    page.text(40, 660, "$ python3 render.py", 16, "#9ece6a")
    page.text(40, 692, "240 points", 16, "#c0caf5")
    return page.done()


def poster(name, heading, below, colours, size=(1200, 1600), ink="#ffffff"):
    """Large words over pools of colour."""
    page = Page(*size, "#000000")
    page.paste(to_image(scenes.mesh(seeded(name), *size, colours)), 0, 0)
    for row, words in enumerate(heading):
        page.text(90, 150 + row * 170, words, 150, ink, "black")
    page.text(96, size[1] - 190, below, 34, ink, "bold")
    page.line([(96, size[1] - 220), (size[0] - 96, size[1] - 220)], ink, 2)
    return page.done()


def storyboard(name):
    """Six small frames on paper, with a line of words below each."""
    page = Page(1500, 1060, "#f6f2ea")
    page.text(60, 44, "Northlight: storyboard, scene 4", 30, "#2a2622", "bold")
    words = ["Wide: the lake before dawn", "The first light on the ridge", "Close: frost on the window",
             "She opens the door", "The sky begins to move", "Wide: everything is green"]
    drawn = [lambda r: scenes.lake(r, 440, 300, scenes.TEAL), lambda r: scenes.hills(r, 440, 300, scenes.DAWN, 5),
             lambda r: scenes.bokeh(r, 440, 300, ("#bfe3ff", "#7fb7ff", "#ffffff", "#ffe2b0"), ("#1b2c44", "#0c1626")),
             lambda r: scenes.hills(r, 440, 300, scenes.DUSK, 4), lambda r: scenes.nebula(r, 440, 300),
             lambda r: scenes.aurora(r, 440, 300)]
    for index, scene in enumerate(drawn):
        x, y = 60 + index % 3 * 466, 110 + index // 3 * 470
        page.paste(to_image(scene(seeded(f"{name}{index}"))), x, y, 6)
        page.text(x, y + 322, f"{index + 1}", 20, "#b3532b", "bold")
        page.text(x + 30, y + 322, words[index], 20, "#2a2622")
    return page.done()


def badge(name, colours=("#ffcf6b", "#f0736a", "#7a2a7d")):
    """A round emblem on nothing: a picture with transparency."""
    size = 1024
    disc = to_image(scenes.mesh(seeded(name), size, size, list(colours), grain=0)).convert("RGBA")
    mask = Image.new("L", (size, size), 0)
    ImageDraw.Draw(mask).ellipse([112, 112, 912, 912], fill=255)
    disc.putalpha(mask.filter(ImageFilter.GaussianBlur(1.2)))
    shadow = Image.new("RGBA", (size, size), (20, 8, 30, 0))
    shadow.putalpha(mask.filter(ImageFilter.GaussianBlur(34)).point(lambda value: int(value * 0.45)))
    picture = Image.new("RGBA", (size, size), (0, 0, 0, 0))
    picture.alpha_composite(shadow, (0, 36))
    picture.alpha_composite(disc)
    draw = ImageDraw.Draw(picture)
    draw.arc([60, 380, 964, 640], 20, 340, "#ffffff", 26)
    draw.ellipse([840, 380, 920, 460], "#ffffff")
    return picture


def sprites(name):
    """A sheet of gems on nothing, four by three."""
    rng = seeded(name)
    sheet = Image.new("RGBA", (1024, 768), (0, 0, 0, 0))
    draw = ImageDraw.Draw(sheet)
    hues = ["#ff5d73", "#ffb03a", "#5ee08a", "#4cc3ff", "#9b7bff", "#ff8de0"]
    for index in range(12):
        cx, cy, radius = 128 + index % 4 * 256, 128 + index // 4 * 256, 84
        sides = 5 + index % 4
        base = np.array([int(hues[index % 6][i:i + 2], 16) for i in (1, 3, 5)])
        turn = rng.random() * math.tau
        rim = [(cx + radius * math.cos(turn + k * math.tau / sides), cy + radius * math.sin(turn + k * math.tau / sides))
               for k in range(sides)]
        top = [(cx + (x - cx) * 0.5 - 8, cy + (y - cy) * 0.5 - 10) for x, y in rim]
        for k in range(sides):
            middle = turn + (k + 0.5) * math.tau / sides
            light = 0.72 + 0.42 * math.cos(middle + 2.2)
            draw.polygon([rim[k], rim[(k + 1) % sides], top[(k + 1) % sides], top[k]],
                         tuple(int(min(255, value * light)) for value in base))
        draw.polygon(top, tuple(int(min(255, value * 0.75 + 90)) for value in base))
    return sheet


def orbits(target):
    """Writes an endless animation: three moons on their ways."""
    frames = []
    for step in range(36):
        page = Page(480, 360, "#0d1020")
        page.box(216, 156, 48, 48, "#ffb45e", 24)
        for index, (reach, colour, turns) in enumerate([(70, "#7fb7ff", 3), (115, "#f0736a", 2), (160, "#5ee0b0", 1)]):
            page.draw.ellipse([(240 - reach) * 2, (180 - reach * 0.72) * 2, (240 + reach) * 2, (180 + reach * 0.72) * 2],
                              outline="#2a3050", width=3)
            angle = step / 36 * math.tau * turns + index
            page.box(240 + reach * math.cos(angle) - 9, 180 + reach * 0.72 * math.sin(angle) - 9, 18, 18, colour, 9)
        frames.append(page.done().quantize(64))
    frames[0].save(target, save_all=True, append_images=frames[1:], duration=50, loop=0)


LOGO = """<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 512 512">
  <defs>
    <linearGradient id="sky" x1="0" y1="0" x2="1" y2="1">
      <stop offset="0" stop-color="#ffcf6b"/><stop offset="0.55" stop-color="#f0736a"/><stop offset="1" stop-color="#7a2a7d"/>
    </linearGradient>
  </defs>
  <rect width="512" height="512" rx="112" fill="#17142b"/>
  <circle cx="256" cy="256" r="132" fill="url(#sky)"/>
  <ellipse cx="256" cy="256" rx="210" ry="70" fill="none" stroke="#fff" stroke-width="16" transform="rotate(-24 256 256)"/>
  <circle cx="446" cy="168" r="24" fill="#fff"/>
</svg>
"""

DIAGRAM = """<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 960 420" font-family="Inter, sans-serif" font-size="22">
  <rect width="960" height="420" fill="#fbf9f5"/>
  <g fill="none" stroke="#b8b0a4" stroke-width="3">
    <path d="M250 210 H355"/><path d="M605 210 H710"/><path d="M480 270 V330 H830 V270"/>
  </g>
  <g stroke-width="0">
    <rect x="50" y="150" width="200" height="120" rx="18" fill="#dfe9ff"/>
    <rect x="355" y="150" width="250" height="120" rx="18" fill="#ffe6cf"/>
    <rect x="710" y="150" width="200" height="120" rx="18" fill="#d9f2e3"/>
  </g>
  <g fill="#2a2622" text-anchor="middle">
    <text x="150" y="218">Browser</text><text x="480" y="218">Render queue</text><text x="810" y="218">Storage</text>
    <text x="655" y="362" font-size="17" fill="#8a8378">finished frames</text>
    <text x="480" y="80" font-size="30" font-weight="600">How a frame is made</text>
  </g>
</svg>
"""
