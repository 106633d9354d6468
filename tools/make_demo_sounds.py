#!/usr/bin/python3
"""Composes the music and the sounds of the demo into data/streams and data/samples, always the same bytes.

Needs oggenc (Debian: vorbis-tools) for the music, whose bytes depend on its version. Run it from anywhere:

    python3 tools/make_demo_sounds.py           # writes the files
    python3 tools/make_demo_sounds.py --check   # compares them with what it would write

Nothing is recorded: strings, flute, water, fire and birds are all computed here, and the tune was written for the demo.
"""

import argparse
import array
import math
import pathlib
import random
import subprocess
import sys
import tempfile
import wave

OUTPUT = pathlib.Path(__file__).resolve().parent.parent / "data"

MUSIC_RATE = 44100
SAMPLE_RATE = 22050

# --- The music: sixteen bars in three, which go round for ever -------------------------------------------------------

BEAT = 0.72  # seconds
BEATS_IN_BAR = 3

# Root, fifth, octave, tenth (a third above the octave) of the string's arpeggio, one line for each bar.
CHORDS = (
    "D3 A3 D4 F4", "C3 G3 C4 E4", "D3 A3 D4 F4", "A2 E3 A3 C4",
    "F3 C4 F4 A4", "C3 G3 C4 E4", "D3 A3 D4 F4", "A2 E3 A3 C4",
    "D3 A3 D4 F4", "G2 D3 G3 B3", "A2 E3 A3 C4", "D3 A3 D4 F4",
    "F3 C4 F4 A4", "C3 G3 C4 E4", "A2 E3 A3 C4", "D3 A3 D4 F4",
)
ARPEGGIO = (0, 1, 2, 3, 2, 1)  # one note each half beat

# Note and beats; "-" is a rest.
MELODY = (
    "A4 2 D5 1", "E5 1.5 D5 .5 C5 1", "D5 1 A4 1 F4 1", "E4 2 - 1",
    "F4 1 A4 1 C5 1", "G4 1.5 A4 .5 G4 1", "F4 1 E4 1 D4 1", "E4 3",
    "A4 2 D5 1", "B4 1 D5 1 G5 1", "E5 1.5 D5 .5 C5 1", "D5 3",
    "C5 1 A4 1 F4 1", "E4 1 G4 1 C5 1", "B4 1 A4 1 E4 1", "D4 2 - 1",
)


def frequency(note):
    """Of "A4" and the like, in equal temperament."""
    semitone = {"C": -9, "D": -7, "E": -5, "F": -4, "G": -2, "A": 0, "B": 2}[note[0]]
    return 440.0 * 2 ** (int(note[1]) - 4 + semitone / 12)


def pluck(pitch, seconds, seed):
    """A string that is plucked: noise that goes round in a line as long as a wave and gets duller with each round."""
    source = random.Random(seed)
    period = MUSIC_RATE / pitch - 0.5
    length = int(period)
    blend = 1 - (period - length)  # of the value one step less late, for the part of a step that the period has
    line = [source.uniform(-1, 1) for _ in range(length + 1)]
    for _ in range(5):  # a soft finger
        line = [0.5 * (line[i] + line[i - 1]) for i in range(len(line))]
    sound = []
    last = 0.0
    position = 0
    for _ in range(int(seconds * MUSIC_RATE)):
        following = position + 1 if position < length else 0
        value = line[position] + (line[following] - line[position]) * blend
        sound.append(value)
        line[position] = 0.4985 * (value + last)
        last = value
        position = following
    fade(sound, 0, int(0.3 * MUSIC_RATE))
    return sound


def flute(pitch, seconds, seed):
    source = random.Random(seed)
    breath = 0.0
    sound = []
    phase = 0.0
    for i in range(int(seconds * MUSIC_RATE)):
        time = i / MUSIC_RATE
        vibrato = 1 + 0.004 * math.sin(2 * math.pi * 5.1 * time) * min(time / 0.4, 1)
        phase += 2 * math.pi * pitch * vibrato / MUSIC_RATE
        breath += 0.15 * (source.uniform(-1, 1) - breath)
        sound.append(math.sin(phase) + 0.22 * math.sin(2 * phase) + 0.09 * math.sin(3 * phase) + 0.08 * breath)
    fade(sound, int(0.07 * MUSIC_RATE), int(0.14 * MUSIC_RATE))
    return sound


def add(track, sound, seconds, volume):
    """At a time; what does not fit sounds on at the beginning, so that the end leads into it."""
    start = int(seconds * MUSIC_RATE)
    for i, value in enumerate(sound):
        track[(start + i) % len(track)] += value * volume


def echo(track, seconds, strength):
    """A hall: the track, late and softer, twice round so that the end is heard at the beginning."""
    delay = int(seconds * MUSIC_RATE)
    size = len(track)
    wet = [0.0] * size
    for i in range(2 * size):
        wet[i % size] = track[i % size] + strength * wet[(i - delay) % size]
    return wet


def courtyard_music():
    """Left and right channel."""
    size = int(BEAT * BEATS_IN_BAR * len(CHORDS) * MUSIC_RATE)
    left, right = [0.0] * size, [0.0] * size
    for bar, chord in enumerate(CHORDS):
        notes = chord.split()
        for i, step in enumerate(ARPEGGIO):
            start = (bar * BEATS_IN_BAR + i / 2) * BEAT
            sound = pluck(frequency(notes[step]), 2.6 if step == 0 else 1.6, f"pluck {bar} {i}")
            volume = 0.95 if step == 0 else 0.6
            add(left, sound, start, volume)
            add(right, sound, start + 0.004, 0.7 * volume)
    for bar, line in enumerate(MELODY):
        words = line.split()
        start = bar * BEATS_IN_BAR * BEAT
        for i in range(0, len(words), 2):
            seconds = float(words[i + 1]) * BEAT
            if words[i] != "-":
                sound = flute(frequency(words[i]), seconds * 1.04, f"flute {bar} {i}")
                add(left, sound, start, 0.16)
                add(right, sound, start, 0.22)
            start += seconds
    left = [dry + 0.22 * wet for dry, wet in zip(left, echo(left, 0.173, 0.45))]
    right = [dry + 0.22 * wet for dry, wet in zip(right, echo(right, 0.211, 0.45))]
    return [left, right]


# --- The sounds at their places --------------------------------------------------------------------------------------


def fade(sound, rise, fall):
    """The square root makes two noises of which one rises while the other falls as loud as one."""
    for i in range(rise):
        sound[i] *= math.sqrt(i / rise)
    for i in range(fall):
        sound[-1 - i] *= math.sqrt(i / fall)


def smoothed(source, count, amount):
    """Noise without its highest tones."""
    value = 0.0
    values = []
    for _ in range(count):
        value += amount * (source.uniform(-1, 1) - value)
        values.append(value)
    return values


def fountain():
    """The rush of falling water and many drops. It begins and ends softly, to be played over its own end."""
    source = random.Random("fountain")
    count = int(4.0 * SAMPLE_RATE)
    high = smoothed(source, count, 0.5)
    low = smoothed(source, count, 0.06)
    sound = [0.5 * high[i] - 0.8 * low[i] + 0.8 * low[i] * abs(low[i - 7]) for i in range(count)]
    for _ in range(260):  # drops: bubbles that ring, higher and higher
        start = source.randrange(count)
        pitch = source.uniform(500, 2600)
        volume = 0.5 * source.random() ** 2
        for i in range(min(int(0.05 * SAMPLE_RATE), count - start)):
            time = i / SAMPLE_RATE
            ring = math.sin(2 * math.pi * pitch * (1 + 3 * time) * time)
            sound[start + i] += volume * ring * math.exp(-90 * time)
    fade(sound, int(0.5 * SAMPLE_RATE), int(0.5 * SAMPLE_RATE))
    return sound


def flame():
    """A small fire: a murmur, and sparks that crack. Ends as softly as the fountain."""
    source = random.Random("flame")
    count = int(3.0 * SAMPLE_RATE)
    sound = [0.9 * value for value in smoothed(source, count, 0.02)]
    for _ in range(45):
        start = source.randrange(count)
        volume = 0.9 * source.random() ** 3
        hardness = source.uniform(150, 900)
        for i in range(min(int(0.03 * SAMPLE_RATE), count - start)):
            sound[start + i] += volume * source.uniform(-1, 1) * math.exp(-hardness * i / SAMPLE_RATE)
    fade(sound, int(0.5 * SAMPLE_RATE), int(0.5 * SAMPLE_RATE))
    return sound


def whistle(sound, start, seconds, first, last, volume):
    """A bird's note that glides from one pitch to another."""
    phase = 0.0
    count = int(seconds * SAMPLE_RATE)
    for i in range(count):
        part = i / count
        phase += 2 * math.pi * (first + (last - first) * part) / SAMPLE_RATE
        sound[int(start * SAMPLE_RATE) + i] += volume * math.sin(math.pi * part) * (
            math.sin(phase) + 0.12 * math.sin(2 * phase)
        )


def blackbird():
    """A slow phrase of clear notes."""
    sound = [0.0] * int(1.7 * SAMPLE_RATE)
    notes = ((0.00, 0.20, 1900, 2100), (0.24, 0.16, 2500, 2350), (0.44, 0.26, 2050, 1800), (0.74, 0.12, 2700, 2900))
    for start, seconds, first, last in notes + ((0.90, 0.30, 2300, 2200), (1.26, 0.10, 3600, 4300), (1.40, 0.22, 3900, 3200)):
        whistle(sound, start, seconds, first, last, 0.9 if first < 3000 else 0.4)
    return sound


def finch():
    """A trill that falls and ends in a flourish."""
    sound = [0.0] * int(1.6 * SAMPLE_RATE)
    for i in range(11):
        pitch = 4600 - 160 * i
        whistle(sound, 0.095 * i, 0.07, pitch + 500, pitch - 300, 0.4 + 0.04 * i)
    whistle(sound, 1.08, 0.14, 2700, 3500, 0.9)
    whistle(sound, 1.24, 0.26, 4200, 2300, 0.9)
    return sound


# --- Files -----------------------------------------------------------------------------------------------------------


def ember():
    """Three bells, one above the other: something was found."""
    count = int(1.1 * SAMPLE_RATE)
    sound = [0.0] * count
    for start, note in ((0.0, "A4"), (0.09, "D5"), (0.18, "A5")):
        pitch = frequency(note)
        for i in range(count - int(start * SAMPLE_RATE)):
            t = i / SAMPLE_RATE
            overtones = math.sin(2 * math.pi * pitch * t) + 0.4 * math.sin(2 * math.pi * 2.76 * pitch * t)
            sound[int(start * SAMPLE_RATE) + i] += overtones * math.exp(-5 * t)
    fade(sound, 40, int(0.2 * SAMPLE_RATE))
    return sound


def hum():
    """What lies near sounds like a glass that is rubbed. It ends as softly as the fountain."""
    count = int(2.0 * SAMPLE_RATE)
    pitch = frequency("D4")
    sound = []
    for i in range(count):
        t = i / SAMPLE_RATE
        tremble = 1 + 0.25 * math.sin(2 * math.pi * 4 * t)
        sound.append(tremble * sum(math.sin(2 * math.pi * pitch * k * t) / k**2 for k in (1, 2, 3)))
    fade(sound, int(0.5 * SAMPLE_RATE), int(0.5 * SAMPLE_RATE))
    return sound


def caught():
    """A deep horn that falls: somebody was seen."""
    count = int(0.9 * SAMPLE_RATE)
    sound, phase = [0.0] * count, 0.0
    for i in range(count):
        t = i / SAMPLE_RATE
        phase += (150 - 60 * t) / SAMPLE_RATE
        sound[i] = sum(math.sin(2 * math.pi * phase * k) / k for k in range(1, 7)) * math.exp(-1.5 * t)
    fade(sound, 300, int(0.3 * SAMPLE_RATE))
    return sound


def write_wave(path, rate, channels, peak):
    """16 bits, as loud as the peak says (1 is the loudest)."""
    factor = peak * 32767 / max(abs(value) for channel in channels for value in channel)
    values = array.array("h", (round(value * factor) for frame in zip(*channels) for value in frame))
    if sys.byteorder == "big":
        values.byteswap()
    with wave.open(str(path), "wb") as file:
        file.setnchannels(len(channels))
        file.setsampwidth(2)
        file.setframerate(rate)
        file.writeframes(values.tobytes())


def write_stream(path, rate, channels, peak):
    """The encoder numbers streams by chance unless it is told to."""
    with tempfile.TemporaryDirectory() as directory:
        plain = pathlib.Path(directory) / "plain.wav"
        write_wave(plain, rate, channels, peak)
        subprocess.run(["oggenc", "--quiet", "--serial", "1", "-q", "0", "-o", str(path), str(plain)], check=True)


def write_all(root):
    for directory in ("samples", "streams"):
        (root / directory).mkdir(parents=True, exist_ok=True)
    peaks = {fountain: 0.8, flame: 0.8, blackbird: 0.7, finch: 0.7, ember: 0.7, caught: 0.8, hum: 0.5}
    for sound, peak in peaks.items():
        write_wave(root / "samples" / f"{sound.__name__}.wav", SAMPLE_RATE, [sound()], peak)
    write_stream(root / "streams" / "courtyard.ogg", MUSIC_RATE, courtyard_music(), 0.7)


def check():
    """The number of files that differ from what would be written, each named."""
    with tempfile.TemporaryDirectory() as directory:
        root = pathlib.Path(directory)
        write_all(root)
        names = sorted(path.relative_to(root) for path in root.rglob("*.*"))
        different = [name for name in names if (root / name).read_bytes() != (OUTPUT / name).read_bytes()]
    for name in different:
        print(f"{OUTPUT / name} is not what this script writes", file=sys.stderr)
    return len(different)


def main():
    parser = argparse.ArgumentParser(description="Composes the music and the sounds of the demo.")
    parser.add_argument("--check", action="store_true", help="only compare the files with what would be written")
    if parser.parse_args().check:
        sys.exit(1 if check() > 0 else 0)
    write_all(OUTPUT)


if __name__ == "__main__":
    main()
