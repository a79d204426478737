"""What the demo pictures show: landscapes, skies, aerial views, still lifes and abstract light, drawn from noise.

Each scene takes a random source and a size and yields an array as canvas.py has them.

SPDX-License-Identifier: GPL-3.0-or-later
"""
import numpy as np

from canvas import (add_light, blurred, develop, grid, line, lookup, mix, noise, ramp, rgb, smooth, stars)

DAWN = dict(sky=["#3b4c7a", "#8a7fa3", "#e6a48a", "#ffd9a0"], far="#d9a79b", near="#1c1a2b", sun="#fff0c8")
DUSK = dict(sky=["#1b1b3a", "#5b2a5e", "#c4496a", "#ff9a5a"], far="#b5546f", near="#120d1c", sun="#ffd28a")
NOON = dict(sky=["#2f6fae", "#6fa8d6", "#b7d6ea", "#e8f1f2"], far="#a9c4d2", near="#1d3a33", sun="#fffbe8")
TEAL = dict(sky=["#0d2c3f", "#1f5f6b", "#74aaa2", "#f1d9a7"], far="#8fb5a6", near="#0b1d22", sun="#ffe9b8")
ROSE = dict(sky=["#6d83b5", "#b9a3c9", "#f0bfc6", "#ffe7d6"], far="#dcb3c3", near="#3a2b4d", sun="#fff4e4")


def _trees(rng, ridge, height, density, size):
    """Turns a ridge line into one with conifers on it."""
    width = len(ridge)
    top = ridge.copy()
    for at in rng.integers(0, width, int(width * density)):
        tall = size * height * (0.35 + rng.random() * 0.65)
        half = max(2, int(tall * 0.22))
        left, right = max(0, at - half), min(width, at + half + 1)
        near = np.abs(np.arange(left, right) - at) / half
        saw = (near * 7 % 1) * 0.10
        top[left:right] = np.minimum(top[left:right], ridge[at] + tall * 0.1 - tall * (1 - near - saw) * 1.0)
    return top


def _sky(rng, width, height, palette, sun, clouds):
    x, y = grid(width, height)
    image = ramp(np.clip(y / 0.72, 0, 1), palette["sky"])
    distance = np.hypot(x - sun[0] * width / height, (y - sun[1]) * 1.15)
    if clouds:
        cover = noise(rng, width, height, 2.2, 6, 0.55, stretch=3.2)
        cover = smooth(1 - clouds, 1.05, cover) * smooth(0.62, 0.1, y)
        lit = mix(rgb(palette["sky"][1]), rgb(palette["sun"]), np.exp(-distance * 1.9)[..., None])
        image = mix(image, lit, (cover * 0.75)[..., None])
    image = add_light(image, 0.62 * np.exp(-distance * 3.2) + 0.25 * np.exp(-distance * 9), palette["sun"])
    return add_light(image, smooth(0.052, 0.044, distance) * 0.95, palette["sun"])


def hills(rng, width, height, palette=DAWN, layers=6, sun=(0.62, 0.42), clouds=0.5, trees=True, horizon=0.48):
    """Ridge behind ridge in the haze of a low sun."""
    image = _sky(rng, width, height, palette, sun, clouds)
    rows = np.arange(height, dtype=np.float32)[:, None]
    for layer in range(layers):
        depth = layer / max(1, layers - 1)
        base = height * mix(horizon, 0.93, depth ** 1.25)
        ridge = base + height * line(rng, width, 1.4 + 1.6 * depth, 8, 0.47) * mix(0.085, 0.055, depth)
        if trees and depth > 0.45:
            ridge = _trees(rng, ridge, height, 0.10, mix(0.03, 0.16, depth ** 2))
        colour = mix(rgb(palette["far"]), rgb(palette["near"]), depth ** 0.8)
        fill = np.clip(rows - ridge[None, :] + 0.5, 0, 1)
        mist = smooth(0.0, 0.30, (rows - ridge[None, :]) / height) * (1 - depth) * 0.75
        body = mix(colour, rgb(palette["sky"][3]), mist[..., None])
        image = mix(image, body, fill[..., None])
    return develop(image, rng)


def lake(rng, width, height, palette=TEAL, sun=(0.4, 0.3), clouds=0.55):
    """Mountains that stand a second time in still water."""
    shore = int(height * 0.56)
    above = hills(rng, width, int(height * 0.78), palette, 4, sun, clouds, trees=True, horizon=0.42)[:shore]
    below = height - shore
    x, y = grid(width, below)
    shift = (noise(rng, width, below, 14, 3, 0.6, stretch=14) - 0.5) * (8 + 60 * y * below / height)
    columns = np.arange(width)[None, :] + shift
    rows = shore - 1 - np.arange(below)[:, None] * (shore / below) * 0.96 + shift * 0.25
    water = lookup(above, columns, rows) * mix(0.86, 0.5, y)[..., None]
    water = mix(water, rgb(palette["sky"][1]), 0.14)
    return develop(np.concatenate([above, water]), rng, grain=0.008, vignette=0.15, contrast=0.05)


def ocean(rng, width, height, palette=DUSK, sun=0.5):
    """A sun on the horizon and its road over the water."""
    x, y = grid(width, height)
    horizon = 0.52
    image = _sky(rng, width, height, palette, (sun, horizon - 0.05), 0.62)
    depth = np.clip((y - horizon) / (1 - horizon), 0, 1)
    swell = noise(rng, width, height, 30, 4, 0.65, stretch=9)
    water = mix(rgb(palette["sky"][2]) * 0.55, rgb(palette["near"]), (depth ** 0.55)[..., None])
    water = mix(water, rgb(palette["sky"][3]), (smooth(0.55, 1.0, swell) * 0.30 * (1 - depth * 0.6))[..., None])
    road = np.exp(-((x - sun * width / height) / (0.035 + 0.26 * depth)) ** 2)
    glitter = road * smooth(0.36, 0.85, swell + 0.18 * (1 - depth))
    water = add_light(water, glitter * mix(1.0, 0.55, depth), palette["sun"])
    return develop(mix(image, water, smooth(0, 0.003, y - horizon)[..., None]), rng)


def aurora(rng, width, height, colours=("#39ffa0", "#2fd0e8", "#b05cff")):
    """Curtains of light over a sleeping ridge."""
    x, y = grid(width, height)
    image = ramp(y, ["#050914", "#0a1830", "#12324a", "#1d4a5a"])
    image = stars(rng, image, int(width * height / 900), 0.8)
    for curtain in range(3):
        foot = 0.58 - 0.12 * curtain + 0.10 * line(rng, width, 1.6, 3)
        rays = 0.35 + 0.65 * np.clip(line(rng, width, 22, 4, 0.7) * 0.5 + 0.5, 0, 1)
        body = 0.5 + 0.5 * np.clip(line(rng, width, 2, 3) + 0.4, 0, 1)
        up = foot[None, :] - y
        light = np.where(up > 0, np.exp(-up / (0.16 + 0.07 * curtain)), np.exp(up / 0.018)) * (rays * body)[None, :]
        image = add_light(image, light * 0.62 * (1 - 0.2 * curtain), colours[curtain % 3])
        image = add_light(image, light * smooth(0.06, 0.35, up) * 0.5, colours[(curtain + 2) % 3])
    rows = np.arange(height, dtype=np.float32)[:, None]
    for layer, (base, colour) in enumerate((("0.76", "#0d2230"), ("0.86", "#060d14"))):
        ridge = height * (float(base) + 0.05 * line(rng, width, 2 + layer, 8, 0.48))
        if layer:
            ridge = _trees(rng, ridge, height, 0.14, 0.13)
        image = mix(image, rgb(colour), np.clip(rows - ridge[None, :], 0, 1)[..., None])
    return develop(image, rng, grain=0.014)


def nebula(rng, width, height, colours=("#05030d", "#231046", "#7a2a7d", "#f0736a", "#ffe2b0")):
    """Clouds of gas, folded over themselves, with stars in front."""
    wide, tall = width // 2, height // 2
    a, b = noise(rng, wide, tall, 2.2, 5), noise(rng, wide, tall, 2.6, 5)
    field = noise(rng, wide, tall, 3, 7, 0.55)
    y, x = np.mgrid[0:tall, 0:wide]
    field = lookup(field, x + (a - 0.5) * tall * 0.7, y + (b - 0.5) * tall * 0.7)
    glow = np.clip(field * 0.75 + a * b * 0.75 - 0.18, 0, 1)
    image = blurred(np.kron(ramp(glow, list(colours)), np.ones((2, 2, 1), np.float32)), 2)
    image = np.pad(image, ((0, height - image.shape[0]), (0, width - image.shape[1]), (0, 0)), mode="edge")
    image = stars(rng, np.ascontiguousarray(image), int(width * height / 1100))
    return develop(image, rng, grain=0.012, contrast=0.3)


def bokeh(rng, width, height, colours=("#ffb45e", "#ff7a4d", "#ffd9a0", "#7fb7ff"), ground=("#1a0f1f", "#3b1c2d")):
    """Lights far out of focus."""
    x, y = grid(width, height)
    image = ramp(y + 0.15 * noise(rng, width, height, 2, 2), list(ground))
    for index in range(70):
        radius = 0.02 + 0.085 * rng.random() ** 1.6
        cx, cy = rng.random() * width / height, 0.12 + 0.8 * rng.random() ** 0.8
        left, right = int(max(0, (cx - radius * 1.2) * height)), int(min(width, (cx + radius * 1.2) * height))
        top, bottom = int(max(0, (cy - radius * 1.2) * height)), int(min(height, (cy + radius * 1.2) * height))
        if left >= right or top >= bottom:
            continue
        part = np.s_[top:bottom, left:right]
        distance = np.hypot(x[part] - cx, y[part] - cy) / radius
        disc = smooth(1.0, 0.93, distance) * (0.55 + 0.45 * smooth(0.5, 1.0, distance))
        image[part] = add_light(image[part], disc * (0.12 + 0.42 * rng.random()), colours[index % len(colours)])
    return develop(image, rng, grain=0.014)


def _slope(heights, strength):
    down, right = np.gradient(heights * strength)
    return (right * -0.75 + down * -0.55 + 1) / np.sqrt(right ** 2 + down ** 2 + 1)


def coast(rng, width, height, land=("#e9d8a6", "#8fa35b", "#3f6b3c", "#2f4a31"), rise=0.0):
    """An island and its shallows, seen from above."""
    x, y = grid(width, height)
    cx, cy = (0.3 + 0.4 * rng.random()) * width / height, 0.35 + 0.3 * rng.random()
    relief = noise(rng, width, height, 2.0, 8, 0.5)
    level = relief * 0.95 - 0.62 * np.hypot((x - cx) / (width / height) * 1.25, y - cy) + rise
    shore = 0.36
    sea = ramp(np.clip(level / shore, 0, 1), [(0, "#06314f"), (0.45, "#0b5d7d"), (0.75, "#1f9aa0"), (0.93, "#7fd8c4"),
                                              (1, "#d7f1dd")])
    waves = noise(rng, width, height, 40, 2, 0.6, stretch=1.6)
    sea = sea + (waves[..., None] - 0.5) * 0.05
    foam = np.exp(-((level - shore + 0.008 + 0.012 * waves) / 0.006) ** 2) \
        + 0.45 * np.exp(-((level - shore + 0.035 + 0.02 * waves) / 0.004) ** 2) * smooth(0.4, 0.8, waves)
    ground = ramp(np.clip((level - shore) / 0.34, 0, 1), [(0, land[0]), (0.10, land[0]), (0.2, land[1]), (0.5, land[2]),
                                                         (1, land[3])])
    ground = ground * np.clip(0.35 + 0.65 * _slope(level, height * 0.22), 0.3, 1.25)[..., None]
    image = mix(sea, ground, smooth(shore - 0.002, shore + 0.003, level)[..., None])
    return develop(add_light(image, np.clip(foam, 0, 0.9), "#ffffff"), rng, grain=0.012, vignette=0.18)


def dunes(rng, width, height, colours=("#5a2a1c", "#b5613a", "#e8a66a", "#ffe0b0"), ripples=1.0):
    """Sand, or snow, shaped by wind and lit from the side."""
    x, y = grid(width, height)
    warp = noise(rng, width, height, 1.6, 4, 0.5)
    big = noise(rng, width, height, 1.3, 3, 0.45, ridged=True)
    crest = np.abs(((x * 1.1 + y * 2.1 + warp * 2.2) % 1) * 2 - 1) ** 1.3
    heights = big * 0.5 + crest * 0.5
    shade = np.clip(0.5 + 0.55 * (_slope(heights, height * 0.28) - 0.75), 0, 1)
    ripple = np.sin((x * 0.6 + y * 1.3 + warp * 0.9) * 420) * 0.035 * ripples * smooth(0.2, 0.7, shade)
    return develop(ramp(np.clip(shade * 0.9 + 0.08 + ripple, 0, 1), list(colours)), rng, contrast=0.3)


def marble(rng, width, height, colours):
    """Ink in water: noise bent by noise bent by noise."""
    a, b = noise(rng, width, height, 1.4, 4), noise(rng, width, height, 1.7, 4)
    y, x = np.mgrid[0:height, 0:width]
    c = noise(rng, width, height, 1.8, 5, 0.45)
    bent = lookup(c, x + (a - 0.5) * height * 1.2, y + (b - 0.5) * height * 1.2)
    bent = lookup(bent, x + (bent - 0.5) * height * 0.5, y + (a - 0.5) * height * 0.5)
    image = ramp(bent, list(colours))
    light = np.clip(0.55 + 0.6 * _slope(blurred(bent[..., None], 3)[..., 0], height * 0.05), 0.5, 1.25)
    return develop(image * light[..., None] * 0.92, rng, grain=0.008, contrast=0.15)


def mesh(rng, width, height, colours, grain=0.02):
    """Soft pools of colour that run into one another."""
    x, y = grid(width, height)
    aspect = width / height
    total = np.zeros((height, width, 3), np.float32)
    weights = np.zeros((height, width, 1), np.float32)
    for index in range(len(colours) * 2):
        cx, cy = rng.random() * aspect, rng.random()
        pull = np.exp(-((x - cx) ** 2 + (y - cy) ** 2) / (0.05 + 0.10 * rng.random()))[..., None] + 1e-4
        total += pull * rgb(colours[index % len(colours)])
        weights += pull
    return develop(total / weights, rng, grain=grain, vignette=0.08, contrast=0.05)


def city(rng, width, height, sky=("#0b1030", "#2b2358", "#8a3f6b", "#f08a5d"), windows="#ffd58a"):
    """A skyline in the blue hour, its windows lit, in the water below."""
    shore = int(height * 0.72)
    x, y = grid(width, shore)
    image = ramp(y * height / shore * 0.72 / 0.72, list(sky))
    image = stars(rng, image, int(width * height / 5000), 0.45)
    for layer in range(3):
        depth = (layer + 1) / 3
        body = mix(rgb(sky[2]), rgb("#0a0d1f"), depth)
        at = -20
        while at < width:
            wide = int(height * (0.035 + 0.05 * rng.random()) * (0.7 + 0.5 * depth))
            peak = 1 - abs((at + wide / 2) / width - 0.55) * 1.3
            tall = int(height * (0.08 + 0.34 * rng.random() ** 1.5 * max(0.25, peak)) * (1.15 - 0.3 * depth))
            top = max(8, shore - tall)
            left, right = max(0, at), min(width, at + wide)
            if right > left:
                image[top:, left:right] = body * mix(1.0, 0.82, np.linspace(0, 1, right - left)[None, :, None])
                if rng.random() < 0.2 * peak:
                    image[max(0, top - int(height * 0.05)):top, (left + right) // 2:(left + right) // 2 + 2] = body
                step = max(5, int(height * 0.0085))
                for row in range(top + step, shore - step, step):
                    for column in range(left + step, right - step, step):
                        if rng.random() < 0.30 * depth:
                            glow = rgb(windows) * (0.35 + 0.65 * rng.random())
                            image[row:row + step // 2, column:column + step // 2] = glow
            at += wide + int(rng.random() * height * 0.015)
    image = add_light(image, blurred(image, 18).mean(-1) * 0.28 * smooth(0.4, 1.0, y), windows)
    below = height - shore
    rows = shore - 1 - (np.arange(below)[:, None] * 1.5)
    shift = (noise(rng, width, below, 18, 3, 0.6, stretch=8) - 0.5) * 40
    water = lookup(blurred(image, 3), np.arange(width)[None, :] + shift, rows + shift * 0.4)
    water = water * np.linspace(0.75, 0.35, below, dtype=np.float32)[:, None, None]
    return develop(np.concatenate([image, water]), rng, grain=0.012)


def planet(rng, width, height, turn=0.0, colours=("#10263f", "#28608a", "#7fb0a8", "#e8d9b5", "#b3674a"),
           rim="#8fd0ff", ring=False):
    """A world half in its own night; `turn` (0 to 1) rotates it."""
    sky = stars(rng, np.zeros((height, width, 3), np.float32) + rgb("#04060c"), int(width * height / 1300))
    bands = noise(rng, 1024, 512, 3, 7, 0.52, stretch=1.8)
    bands = mix(bands, np.roll(bands[:, ::-1], 512, 1), np.abs(np.linspace(-1, 1, 1024))[None, :] ** 6)
    x, y = grid(width, height)
    cx, cy, radius = 0.5 * width / height, 0.52, 0.34
    u, v = (x - cx) / radius, (y - cy) / radius
    square = u * u + v * v
    z = np.sqrt(np.clip(1 - square, 0, 1))
    longitude = (np.arctan2(u, z) / (2 * np.pi) + turn) % 1
    texture = lookup(bands, longitude * 1023, (np.arcsin(np.clip(v, -1, 1)) / np.pi + 0.5) * 511)
    surface = ramp(texture, list(colours))
    light = np.clip(u * -0.62 + v * -0.38 + z * 0.68, 0, 1)
    body = surface * (0.03 + 1.05 * light ** 0.85)[..., None]
    body = add_light(body, (1 - z) ** 2.5 * light * 0.9, rim)
    image = mix(sky, body, smooth(1.004, 0.992, square)[..., None])
    halo = np.exp(-np.clip(np.sqrt(square) - 1, 0, 9) * 16) * (square > 1) * np.clip(u * -0.6 + v * -0.4 + 0.45, 0, 1)
    image = add_light(image, halo * 0.5, rim)
    if ring:
        tilted = np.hypot(u + v * 0.25, (v - u * 0.25) * 3.6)
        band = smooth(1.28, 1.33, tilted) * smooth(2.05, 1.98, tilted) * (0.45 + 0.35 * np.sin(tilted * 46))
        front = (v - u * 0.25) > 0
        band = np.clip(band, 0, 1) * np.where(front | (square > 1), 1, 0)
        image = mix(image, rgb("#d8c7a8") * np.clip(1.05 - 0.6 * smooth(-0.2, 1.2, u), 0.2, 1)[..., None],
                    (band * 0.85)[..., None])
    return develop(image, rng, grain=0.008, vignette=0.1)


def still_life(rng, width, height, colours=("#e4572e", "#f3a712", "#a8c686", "#669bbc", "#29335c"),
               wall=("#e9dfd3", "#b9a593")):
    """Balls of glazed clay on a table, traced with one bounce of light."""
    x, y = grid(width, height)
    ray = np.stack([(x - 0.5 * width / height) * 0.92, (0.40 - y) * 0.92, np.full_like(x, 1.7)], -1)
    ray /= np.linalg.norm(ray, axis=-1, keepdims=True)
    eye = np.array([0, 1.05, -4.2], np.float32)
    balls, tries = [], 0
    while len(balls) < 6 and tries < 500:
        tries += 1
        radius = 0.28 + 0.5 * rng.random()
        centre = np.array([(rng.random() - 0.5) * 3.4 * min(1, width / height), radius, rng.random() * 2.2], np.float32)
        if all(np.linalg.norm(centre - other) > radius + size for other, size, _ in balls):
            balls.append((centre, np.float32(radius), rgb(colours[len(balls) % len(colours)])))
    lamp = np.array([-0.55, 0.75, -0.38], np.float32)
    lamp /= np.linalg.norm(lamp)

    def backdrop(direction):
        return ramp(np.clip(0.75 - direction[..., 1], 0, 1), list(wall)) * 1.0

    def shadow(point):
        dark = np.ones(point.shape[:-1], np.float32)
        for centre, radius, _ in balls:
            away = point - centre
            along = -(away @ lamp)
            gap = np.linalg.norm(away + along[..., None] * lamp, axis=-1) / radius
            dark *= 1 - smooth(1.22, 0.72, gap) * (along > 0) * 0.82
            dark *= 1 - 0.55 * np.exp(-np.clip(np.linalg.norm(away, axis=-1) / radius - 1, 0, 9) * 5) * (along > -radius)
        return dark

    def trace(origin, direction, bounce):
        nearest = np.full(direction.shape[:-1], 1e9, np.float32)
        floor = np.where(direction[..., 1] < -1e-4, -origin[..., 1] / np.minimum(direction[..., 1], -1e-4), 1e9)
        nearest = np.where(floor < 14, floor, nearest)
        colour = backdrop(direction)
        point = origin + direction * nearest[..., None].clip(0, 20)
        table = backdrop(np.zeros_like(direction)) * shadow(point)[..., None] * 0.98
        fade = smooth(4, 14, nearest)[..., None]
        colour = np.where((nearest < 14)[..., None], mix(table, colour, fade), colour)
        for centre, radius, paint in balls:
            away = origin - centre
            b = (away * direction).sum(-1)
            inside = b * b - ((away * away).sum(-1) - radius ** 2)
            t = -b - np.sqrt(np.clip(inside, 0, None))
            hit = (inside > 0) & (t > 1e-3) & (t < nearest)
            if not hit.any():
                continue
            d = direction[hit]
            at = (origin[hit] if origin.ndim > 1 else origin) + d * t[hit][..., None]
            normal = (at - centre) / radius
            diffuse = np.clip(normal @ lamp, 0, 1) * shadow(at + normal * 0.02)
            shaded = paint * (0.30 + 0.10 * normal[..., 1:2] + 0.85 * diffuse[..., None])
            mirror = d - 2 * (d * normal).sum(-1, keepdims=True) * normal
            fresnel = 0.04 + 0.5 * (1 - np.clip(-(d * normal).sum(-1), 0, 1)) ** 4
            if bounce:
                shaded = mix(shaded, trace(at, mirror, False), fresnel[..., None])
            shaded = shaded + (np.clip(mirror @ lamp, 0, 1) ** 60 * 0.85)[..., None]
            colour[hit] = shaded
            nearest[hit] = t[hit]
        return colour

    return develop(trace(np.broadcast_to(eye, ray.shape), ray, True), rng, grain=0.008, vignette=0.2)
