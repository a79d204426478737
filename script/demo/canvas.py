"""The paint box of the demo pictures: noise, gradients, light and grain on arrays of height x width x 3, 0 to 1.

SPDX-License-Identifier: GPL-3.0-or-later
"""
import zlib

import numpy as np
from PIL import Image


def seeded(name):
    """A random source that is the same for a name on every machine."""
    return np.random.default_rng(zlib.crc32(name.encode()))


def rgb(text):
    return np.array([int(text[i:i + 2], 16) for i in (1, 3, 5)], np.float32) / 255


def mix(a, b, t):
    return a + (b - a) * t


def smooth(edge0, edge1, x):
    t = np.clip((x - edge0) / (edge1 - edge0), 0, 1)
    return t * t * (3 - 2 * t)


def ramp(t, stops):
    """Colours along `stops`, evenly spaced or as (position, colour), for every value of t."""
    if not isinstance(stops[0], tuple):
        stops = list(zip(np.linspace(0, 1, len(stops)), stops))
    at = [position for position, _ in stops]
    colours = np.array([rgb(colour) for _, colour in stops])
    return np.stack([np.interp(t, at, colours[:, channel]) for channel in range(3)], -1).astype(np.float32)


def enlarged(grid, width, height):
    image = Image.fromarray(grid.astype(np.float32), mode="F")
    return np.asarray(image.resize((width, height), Image.BICUBIC))


def noise(rng, width, height, cells=4.0, octaves=5, gain=0.5, stretch=1.0, ridged=False):
    """Fractal noise from 0 to 1; `stretch` above 1 makes it long in x."""
    total = np.zeros((height, width), np.float32)
    weight = 1.0
    for octave in range(octaves):
        across = max(2, int(cells * 2**octave * width / height / stretch)) + 3
        down = max(2, int(cells * 2**octave)) + 3
        if across > width or down > height:
            break
        layer = enlarged(rng.random((down, across)), width, height)
        if ridged:
            layer = 1 - np.abs(layer * 2 - 1)
        total += layer * weight
        weight *= gain
    low, high = np.percentile(total, (0.5, 99.5))
    return np.clip((total - low) / (high - low), 0, 1)


def line(rng, width, cells=3.0, octaves=7, gain=0.5):
    """Fractal noise along one axis, about -1 to 1."""
    total = np.zeros(width, np.float32)
    weight = 1.0
    at = np.linspace(0, 1, width)
    for octave in range(octaves):
        points = int(cells * 2**octave) + 4
        values = rng.random(points) * 2 - 1
        position = at * (points - 3) + 1
        left = position.astype(int)
        t = position - left
        t = t * t * (3 - 2 * t)
        total += mix(values[left], values[left + 1], t).astype(np.float32) * weight
        weight *= gain
    return total


def grid(width, height):
    """x and y of each pixel: y from 0 to 1 downwards, x in the same unit."""
    y, x = np.mgrid[0:height, 0:width].astype(np.float32) / height
    return x, y


def lookup(image, x, y):
    """Pixels of `image` at whole coordinates, held at the edges."""
    height, width = image.shape[:2]
    return image[np.clip(y, 0, height - 1).astype(int), np.clip(x, 0, width - 1).astype(int)]


def add_light(image, amount, colour):
    """Screens light of a colour over the picture, so that it never burns out hard."""
    light = np.clip(amount[..., None] * rgb(colour), 0, 1)
    return 1 - (1 - image) * (1 - light)


def blurred(image, radius):
    """A cheap wide blur: down, and smoothly up again."""
    height, width = image.shape[:2]
    small = (max(2, int(width / radius)), max(2, int(height / radius)))
    channels = [Image.fromarray(image[..., c]).resize(small, Image.BOX).resize((width, height), Image.BICUBIC)
                for c in range(image.shape[2])]
    return np.stack([np.asarray(channel) for channel in channels], -1)


def stars(rng, image, count, below=1.0):
    """Scatters stars over the upper `below` of a picture."""
    height, width = image.shape[:2]
    x = rng.integers(1, width - 1, count)
    y = rng.integers(1, max(2, int(height * below) - 1), count)
    bright = (rng.random(count) ** 5).astype(np.float32) * 0.9 + 0.08
    tint = np.array([1.0, 0.97, 0.92], np.float32) - rng.random((count, 1)).astype(np.float32) * [0.15, 0.05, 0]
    image[y, x] = np.maximum(image[y, x], bright[:, None] * tint)
    for dx, dy in ((1, 0), (-1, 0), (0, 1), (0, -1)):
        image[y + dy, x + dx] = np.maximum(image[y + dy, x + dx], (bright * 0.4)[:, None] * tint)
    return image


def develop(image, rng, grain=0.018, vignette=0.25, contrast=0.12):
    """The last step of every picture: a soft curve, darker corners, a little grain."""
    image = np.clip(image, 0, 1)
    image = mix(image, image * image * (3 - 2 * image), contrast)
    height, width = image.shape[:2]
    x, y = grid(width, height)
    distance = ((x - width / height / 2) / (width / height)) ** 2 + (y - 0.5) ** 2
    image = image * (1 - vignette * smooth(0.1, 0.55, distance))[..., None]
    if grain:
        image = image + rng.normal(0, grain, (height, width, 1)).astype(np.float32)
    return np.clip(image, 0, 1)


def to_image(image):
    return Image.fromarray((np.clip(image, 0, 1) * 255 + 0.5).astype(np.uint8))
