#!/usr/bin/env python3
"""Makes the sound files beside it and the fuzzer's first corpus, fuzz/corpus/audio. Needs oggenc (vorbis-tools).

The files are committed, because encoders differ: run it only to change them.
"""

import math
import struct
import subprocess
from pathlib import Path

HERE = Path(__file__).resolve().parent
CORPUS = HERE.parents[2] / "fuzz" / "corpus" / "audio"

PCM, MS_ADPCM, FLOAT, A_LAW, MU_LAW, IMA_ADPCM, EXTENSIBLE = 1, 2, 3, 6, 7, 0x11, 0xFFFE


def chunk(name, data):
    return name + struct.pack("<I", len(data)) + data + b"\0" * (len(data) % 2)


def format_chunk(encoding, channels, rate, bits, block=0, extra=None):
    block = block or channels * bits // 8
    data = struct.pack("<HHIIHH", encoding, channels, rate, rate * block, block, bits)
    return chunk(b"fmt ", data if extra is None else data + struct.pack("<H", len(extra)) + extra)


def riff(*chunks):
    body = b"WAVE" + b"".join(chunks)
    return b"RIFF" + struct.pack("<I", len(body)) + body


def tone(frames, rate, hertz, height):
    return [height * math.sin(2 * math.pi * hertz * i / rate) for i in range(frames)]


def pcm16(samples):
    return struct.pack(f"<{len(samples)}h", *(round(s) for s in samples))


def ogg(path, wave, quality, comments=()):
    arguments = ["oggenc", "-Q", "-q", str(quality), "--serial", "1", "-o", str(path), "-"]
    for comment in comments:
        arguments += ["-c", comment]
    subprocess.run(arguments, input=wave, check=True)


def waves():
    few = tone(64, 8000, 440, 12000)
    wide = pcm16(few)
    narrow = bytes(128 + round(s) // 256 for s in few)
    floats = struct.pack("<64f", *(s / 32768 for s in few))
    doubles = struct.pack("<64d", *(s / 32768 for s in few))
    triples = b"".join(struct.pack("<i", round(s) * 65536)[1:] for s in few)
    loop = struct.pack("<9I", 0, 0, 0, 60, 0, 0, 0, 1, 0) + struct.pack("<6I", 0, 0, 8, 55, 0, 2)
    texts = b"INFO" + chunk(b"INAM", b"a name\0\0") + chunk(b"IART", b"an artist\0")
    tag = b"ID3\x03\0\0\0\0\0\x11" + b"TIT2" + struct.pack(">IH", 7, 0) + b"\0a name"
    subformat = struct.pack("<HII", 16, 0, PCM) + b"\0\0\x10\0\x80\0\0\xAA\0\x38\x9B\x71"
    ms_coefficients = struct.pack("<HH14h", 40, 7, 256, 0, 512, -256, 0, 0, 192, 64, 240, 0, 460, -208, 392, -232)
    plain = format_chunk(PCM, 1, 8000, 16)
    return {
        "pcm_8_bit": riff(format_chunk(PCM, 1, 8000, 8), chunk(b"data", narrow)),
        "pcm_16_bit": riff(plain, chunk(b"data", wide)),
        "pcm_16_bit_stereo": riff(format_chunk(PCM, 2, 44100, 16), chunk(b"data", wide)),
        "pcm_24_bit": riff(format_chunk(PCM, 1, 22050, 24), chunk(b"data", triples)),
        "pcm_32_bit": riff(format_chunk(PCM, 2, 48000, 32), chunk(b"data", wide + wide)),
        "float": riff(format_chunk(FLOAT, 1, 8000, 32), chunk(b"data", floats)),
        "double": riff(format_chunk(FLOAT, 1, 8000, 64), chunk(b"data", doubles)),
        "a_law": riff(format_chunk(A_LAW, 1, 8000, 8), chunk(b"data", narrow)),
        "mu_law": riff(format_chunk(MU_LAW, 1, 8000, 8), chunk(b"data", narrow)),
        "ima_adpcm": riff(
            format_chunk(IMA_ADPCM, 1, 8000, 4, 36, struct.pack("<H", 65)),
            chunk(b"fact", struct.pack("<I", 65)),
            chunk(b"data", b"\0\0\0\0" + narrow[:32])),
        "ms_adpcm": riff(
            format_chunk(MS_ADPCM, 1, 8000, 4, 39, ms_coefficients),
            chunk(b"fact", struct.pack("<I", 66)),
            chunk(b"data", b"\0\x10\0\0\0\0\0" + narrow[:32])),
        "extensible": riff(format_chunk(EXTENSIBLE, 1, 8000, 16, 0, subformat), chunk(b"data", wide)),
        "loop": riff(plain, chunk(b"smpl", loop), chunk(b"data", wide)),
        "texts": riff(plain, chunk(b"LIST", texts), chunk(b"data", wide)),
        "tag": riff(plain, chunk(b"id3 ", tag), chunk(b"data", wide)),
    }


def main():
    CORPUS.mkdir(parents=True, exist_ok=True)
    for name, data in waves().items():
        (CORPUS / f"{name}.wav").write_bytes(data)
    mono = riff(format_chunk(PCM, 1, 22050, 16), chunk(b"data", pcm16(tone(5512, 22050, 441, 12000))))
    left = tone(11025, 44100, 441, 12000)
    right = tone(11025, 44100, 882, 6000)
    both = [sample for pair in zip(left, right) for sample in pair]
    stereo = riff(format_chunk(PCM, 2, 44100, 16), chunk(b"data", pcm16(both)))
    ogg(HERE / "mono.ogg", mono, 0)
    ogg(HERE / "stereo.ogg", stereo, 0)
    short = riff(format_chunk(PCM, 1, 8000, 16), chunk(b"data", pcm16(tone(400, 8000, 441, 12000))))
    ogg(CORPUS / "mono.ogg", short, -1)
    ogg(CORPUS / "loop.ogg", short, -1, ["LOOPSTART=100", "LOOPLENGTH=200", "TITLE=a name"])


if __name__ == "__main__":
    main()
