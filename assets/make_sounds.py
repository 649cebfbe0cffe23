#!/usr/bin/env python3
"""Makes every sound that Kelvaron plays, as 16 bit mono PCM in sounds/ beside this file.

Run it after a change and keep the result: the same script always writes the same bytes. A new
sound is one function that returns samples, plus one line in SOUNDS.
"""

import math
import pathlib
import random
import struct
import wave

RATE = 22050  # samples per second
FULL_SCALE = 32767


def seconds(duration):
    """The sample times of a sound of this duration, in seconds."""
    return [i / RATE for i in range(round(duration * RATE))]


def fade(samples, attack, release):
    """Raised-cosine ramps of attack and release seconds at the two ends, so that nothing clicks."""
    rise, fall = round(attack * RATE), round(release * RATE)
    out = list(samples)
    for i in range(rise):
        out[i] *= 0.5 - 0.5 * math.cos(math.pi * i / rise)
    for i in range(fall):
        out[-1 - i] *= 0.5 - 0.5 * math.cos(math.pi * i / fall)
    return out


def at_peak(samples, peak):
    """The samples scaled so that the loudest is peak (0 to 1)."""
    loudest = max(abs(s) for s in samples)
    return [s * peak / loudest for s in samples]


def bell(t, frequency, decay):
    """A soft bell t seconds after the blow; decay is its time constant in seconds."""
    if t < 0:
        return 0.0
    strike = min(1.0, t / 0.006)
    partials = ((1.0, 1.0, 1.0), (2.0, 0.32, 0.6), (3.0, 0.10, 0.35), (5.4, 0.04, 0.15))
    return strike * sum(
        level * math.exp(-t / (decay * life)) * math.sin(2 * math.pi * frequency * ratio * t)
        for ratio, level, life in partials)


def boom():
    """Start-up: a crack, a thump that falls in pitch, and rubble that rolls away."""
    noise = random.Random(1993)
    phase = low = lower = 0.0
    out = []
    for t in seconds(1.2):
        phase += 2 * math.pi * (40 + 125 * math.exp(-t / 0.07)) / RATE
        thump = math.sin(phase) * math.exp(-t / 0.34)
        # White noise through two one-pole low-pass filters; the cut-off sinks from 4 kHz to 150 Hz.
        cutoff = 150 + 3900 * math.exp(-t / 0.06)
        keep = math.exp(-2 * math.pi * cutoff / RATE)
        white = noise.uniform(-1, 1)
        low = keep * low + (1 - keep) * white
        lower = keep * lower + (1 - keep) * low
        tremble = 0.75 + 0.25 * math.sin(2 * math.pi * 11 * t)
        rubble = lower * (1.3 * math.exp(-t / 0.05) + 3.4 * tremble * math.exp(-t / 0.36))
        crack = white * 0.9 * math.exp(-t / 0.012)
        # Saturation gives the thump overtones that small loudspeakers can still carry.
        out.append(math.tanh(2.2 * (thump + rubble + crack)))
    return fade(at_peak(out, 0.85), 0.001, 0.45)


def online():
    """Somebody came online, or an announcement: two rising notes, soft because heard often."""
    out = [bell(t, 659.26, 0.12) + 0.9 * bell(t - 0.13, 987.77, 0.13) for t in seconds(0.42)]
    return at_peak(fade(out, 0.002, 0.12), 0.35)


def ringin():
    """A private message: two short rings of a telephone that warbles between two notes."""
    out = []
    for t in seconds(0.6):
        within = t if t < 0.3 else t - 0.3
        ring = min(1.0, within / 0.008) * math.exp(-within / 0.22)
        ring *= min(1.0, max(0.0, (0.27 - within) / 0.05))
        # Both notes sound on; the clapper moves between them 22 times a second.
        swing = 0.5 + 0.5 * math.tanh(3 * math.sin(2 * math.pi * 22 * t))
        notes = 0.0
        for frequency, level in ((1174.66, swing), (1479.98, 1 - swing)):
            turn = 2 * math.pi * frequency * t
            overtones = 0.22 * math.sin(2 * turn) + 0.08 * math.sin(3 * turn)
            notes += level * (math.sin(turn) + overtones)
        out.append(ring * notes)
    return at_peak(fade(out, 0.002, 0.05), 0.55)


def game():
    """A game begins: a low drone and three notes of a horn that climb to a fifth."""
    out = []
    for t in seconds(1.5):
        drone = 0.5 * math.sin(2 * math.pi * 55 * t) + 0.25 * math.sin(2 * math.pi * 110.4 * t)
        drone *= math.exp(-t / 0.9)
        horn = 0.0
        for start, frequency, level in ((0.0, 146.83, 0.8), (0.22, 174.61, 0.9), (0.44, 220.0, 1.2)):
            since = t - start
            if since < 0:
                continue
            breath = min(1.0, since / 0.03) * math.exp(-since / (0.16 if start < 0.4 else 0.5))
            turn = 2 * math.pi * frequency * t
            horn += level * breath * sum(math.sin(turn * n) / n for n in range(1, 7))
        out.append(math.tanh(0.9 * horn + drone))
    return at_peak(fade(out, 0.002, 0.3), 0.6)


SOUNDS = {"boom": boom, "game": game, "online": online, "ringin": ringin}


def write(path, samples):
    """Writes samples of -1 to 1 as a wave file."""
    frames = struct.pack(f"<{len(samples)}h", *(round(s * FULL_SCALE) for s in samples))
    with wave.open(str(path), "wb") as out:
        out.setnchannels(1)
        out.setsampwidth(2)
        out.setframerate(RATE)
        out.writeframes(frames)


def main():
    folder = pathlib.Path(__file__).resolve().parent / "sounds"
    folder.mkdir(exist_ok=True)
    for name, make in SOUNDS.items():
        write(folder / f"{name}.wav", make())


if __name__ == "__main__":
    main()
