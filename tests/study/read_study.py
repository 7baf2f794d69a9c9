#!/usr/bin/env python3
"""Reads a study set with nothing but the Python library, as its file formats promise, and checks what it holds.

read_study.py SAMPLE-STUDY: that program makes the set.
"""

import json
import math
import struct
import subprocess
import sys
import tempfile
import zlib
from pathlib import Path

SECONDS, RATE, BEAT = 3, 500, 60 / 72
LEADS = ["I", "II", "III", "aVR", "aVL", "aVF", "V1", "V2", "V3", "V4", "V5", "V6", "CM5", "CR5"]


def read_set(base):
    """Document, header of the samples, frames, beat records."""
    study, ecg, beats = (Path(f"{base}.{end}").read_bytes() for end in ("vtstudy", "vtecg", "vtbeats"))
    assert (study[:8], ecg[:6], beats[:8]) == (b"VTSTUDY2", b"VTECG1", b"VTBEATS1")
    document = json.loads(zlib.decompress(study[12:]))
    assert len(zlib.decompress(study[12:])) == struct.unpack(">I", study[8:12])[0]
    header = json.loads(ecg[6:4096].rstrip(b"\0"))
    channels = len(header["ecg"]["channels"])
    frames = list(struct.iter_unpack(f"<{channels}h", ecg[4096:]))
    records = list(struct.iter_unpack("<6di4x" + "i4x5d3h2x3d" * channels, beats[256:]))
    return document, header, frames, records


def expected_millivolts(frame):
    """Lead II, whose factor is 1."""
    waves = [(-0.17, 0.020, 0.12), (-0.025, 0.008, -0.08), (0, 0.010, 1.1), (0.027, 0.009, -0.22), (0.27, 0.045, 0.28)]
    time = math.fmod(frame / RATE, BEAT) - 0.3
    return sum(height * math.exp(-0.5 * ((time - at) / width) ** 2) for at, width, height in waves)


def check_texts(study_id, document, header):
    assert document["study"]["id"] == study_id == header["study"]["id"]
    assert document["study"]["baseFilename"] == "12-Perez-Ana-20240105093012"
    assert document["study"]["doctorName"] == "Dr. Iván Solís" == header["study"]["doctorName"]
    assert document["patient"]["lastName"] == "Perez" == header["patient"]["lastName"]
    assert document["patient"]["riskFactors"][0] == {"name": "Diabetes", "status": True, "comment": "desde 2010"}
    assert len(document["events"]) == 5 and document["events"][1]["print"] is False
    assert document["protocol"]["name"] == "Bruce"
    assert len(document["echoScoring"]["segments"]) == 16
    trend = document["results"]["BPMTrend"]
    assert trend["type"] == "trend" and len(trend["values"]) == len(trend["timestamps"]) == 4


def check_samples(header, frames):
    ecg = header["ecg"]
    assert ecg == {"sampleFormat": "short", "samplingRate": RATE, "resolution": 16, "gainMin": -300, "gainMax": 300,
                   "channels": LEADS}
    assert len(frames) == SECONDS * RATE
    count = (ecg["gainMax"] - ecg["gainMin"]) / 2 ** ecg["resolution"]
    for number, frame in enumerate(frames):
        assert abs(frame[1] * count - expected_millivolts(number)) <= count, number
        assert abs(frame[3] + 0.8 * frame[1]) <= 2, number
    assert max(frame[1] for frame in frames) > 100


def check_beats(records):
    assert len(records) == int(SECONDS / BEAT)
    for number, record in enumerate(records):
        start = number * BEAT
        head, first = record[:7], record[7:19]
        assert head == (start, BEAT, start + 0.3, BEAT if number else 0.0, BEAT, -1.0, number)
        times = [start + after for after in (0.13, 0.26, 0.3, 0.35, 0.57)]
        assert first == (1, *times, 1, 1, 1, 0.09, 0.17, 0.37)
        assert record[7 + 13 * 12:] == first


def main():
    with tempfile.TemporaryDirectory() as folder:
        made = subprocess.run([sys.argv[1], folder, str(SECONDS)], stdout=subprocess.PIPE, check=True)
        document, header, frames, records = read_set(f"{folder}/12-Perez-Ana-20240105093012")
        check_texts(int(made.stdout), document, header)
        check_samples(header, frames)
        check_beats(records)
        print(f"{len(frames)} frames and {len(records)} beats are as they were recorded.")


if __name__ == "__main__":
    main()
