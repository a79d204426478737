"""Moving pictures and sound, encoded by FFmpeg; speech by flite.

SPDX-License-Identifier: GPL-3.0-or-later
"""
import subprocess

import numpy as np

import scenes
from canvas import add_light, grid, lookup, ramp, rgb, seeded, smooth

# Chords in hertz for the tones beside the pictures.
CALM, BRIGHT, DEEP = (220.0, 277.2, 329.6), (329.6, 415.3, 493.9), (110.0, 164.8, 220.0)

VIDEO = {
    "mp4": ["-c:v", "libx264", "-preset", "veryfast", "-crf", "23", "-pix_fmt", "yuv420p", "-c:a", "aac", "-b:a", "96k",
            "-movflags", "+faststart"],
    "mkv": ["-c:v", "libx264", "-preset", "veryfast", "-crf", "23", "-pix_fmt", "yuv420p", "-c:a", "libopus"],
    "webm": ["-c:v", "libvpx-vp9", "-deadline", "realtime", "-cpu-used", "8", "-crf", "34", "-b:v", "0", "-pix_fmt",
             "yuv420p", "-c:a", "libopus"],
}


def _tones(chord, seconds):
    """A chord that swells and fades, as a source for FFmpeg."""
    voices = "+".join(f"0.11*sin(2*PI*{tone}*t)*(0.7+0.3*sin(2*PI*{0.3 + 0.17 * index}*t))"
                      for index, tone in enumerate(chord))
    fade = f"min(1\\,t*2)*min(1\\,({seconds}-t)*1.5)"
    return ["-f", "lavfi", "-t", str(seconds), "-i", f"aevalsrc=({voices})*{fade}:s=48000"]


def _ffmpeg(arguments, source=None):
    subprocess.run(["ffmpeg", "-v", "error", "-y", *arguments], check=True, stdin=None if source else subprocess.DEVNULL,
                   input=source)


def encode(target, frames, size, rate, seconds, chord):
    """Writes frames (arrays of 0 to 1) with a chord beside them; the kind of file is the target's extension."""
    raw = ["-f", "rawvideo", "-pix_fmt", "rgb24", "-s", f"{size[0]}x{size[1]}", "-r", str(rate), "-i", "-"]
    command = ["ffmpeg", "-v", "error", "-y", *raw, *_tones(chord, seconds), *VIDEO[target.rsplit(".", 1)[1]],
               "-fflags", "+bitexact", "-shortest", target]
    with subprocess.Popen(command, stdin=subprocess.PIPE) as child:
        for frame in frames:
            child.stdin.write((np.clip(frame, 0, 1) * 255).astype(np.uint8).tobytes())
        child.stdin.close()
        if child.wait() != 0:
            raise RuntimeError(f"ffmpeg could not write {target}")


def music(target, chord, seconds):
    _ffmpeg([*_tones(chord, seconds), "-fflags", "+bitexact", target])


def speech(target, words, voice="slt"):
    subprocess.run(["flite", "-voice", voice, "-t", words, "-o", target], check=True, stdout=subprocess.DEVNULL)


def drift(name, size, count, scene, reach=0.22):
    """A slow camera move over one wide picture."""
    width, height = size
    wide = scene(seeded(name), int(width * (1 + reach)), int(height * 1.12))
    for step in range(count):
        t = smooth(0, 1, step / max(1, count - 1))
        left, top = int(t * width * reach), int((1 - t) * height * 0.11)
        yield wide[top:top + height, left:left + width]


def northern_lights(name, size, count):
    """Curtains of light that wander, over a ridge that does not."""
    width, height = size
    rng = seeded(name)
    still = scenes.aurora(rng, width, height)
    x, y = grid(width, height)
    for step in range(count):
        t = step / count * 2 * np.pi
        foot = 0.50 + 0.06 * np.sin(x[0] * 3.1 + t) + 0.04 * np.sin(x[0] * 7.3 - 2 * t)
        rays = 0.6 + 0.4 * np.sin(x[0] * 61 + 3 * np.sin(x[0] * 5 + t)) * np.sin(x[0] * 23 - t)
        up = foot[None, :] - y
        light = np.where(up > 0, np.exp(-up / 0.2), np.exp(up / 0.02)) * rays[None, :] * smooth(0.80, 0.72, y)
        yield add_light(still, light * 0.42, "#49ffb0")


def waves(name, size, count, colours=("#071a2b", "#0d4f6b", "#37a6a6", "#f4e3b2", "#f0866a")):
    """Bands of colour that roll through one another, and end where they began."""
    width, height = size
    x, y = grid(width, height)
    for step in range(count):
        t = step / count * 2 * np.pi
        field = (np.sin(x * 3 + t) + np.sin(y * 5 - t + np.sin(x * 2 + t)) + np.sin((x + y) * 4 + 2 * np.sin(y * 3 - t)))
        yield ramp(np.clip(field / 6 + 0.5, 0, 1), list(colours))


def turning(name, size, count, **look):
    """A world that turns once."""
    width, height = size
    for step in range(count):
        yield scenes.planet(seeded(name), width, height, turn=step / count, **look)


def bounce(name, size, count):
    """A walk cycle's stand-in: a ball that squashes where it lands."""
    width, height = size
    x, y = grid(width, height)
    back = ramp(y, ["#ffe8c7", "#ffd1a1"])
    back = back * (1 - 0.12 * smooth(0.78, 0.80, y))[..., None]
    for step in range(count):
        t = step / 24 % 1
        rise = 4 * t * (1 - t)
        squash = 1 - 0.25 * max(0.0, 1 - rise * 6)
        cx, cy = width / height * (0.15 + 0.7 * step / count), 0.74 - 0.09 * squash - rise * 0.42
        ball = np.hypot((x - cx) * squash ** 0.5, (y - cy) / squash)
        shadow = np.hypot(x - cx, (y - 0.80) * 6)
        frame = back * (1 - 0.4 * smooth(0.16, 0.02, shadow) * (1 - 0.6 * rise))[..., None]
        shade = np.clip(1.1 - np.hypot(x - cx + 0.03, y - cy + 0.04) * 4.5, 0.35, 1)[..., None]
        yield np.where((ball < 0.1)[..., None], rgb("#e4572e") * shade, frame)
