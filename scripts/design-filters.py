#!/usr/bin/env python3
"""Designs the FIR tables of src/analysis/filters and writes them as C++ source.

    scripts/design-filters.py            writes the sources
    scripts/design-filters.py --check    ends with 1 if a source differs from the design by more than 1e-12
    scripts/design-filters.py --report   prints the tables' figures for docs/filters.md

Needs numpy and scipy. Every table starts from a windowed sinc or from the least squares fit of an ideal response, and
then moves as little as it can to meet its conditions (gains, sum, first and middle values) exactly.
"""

import argparse
import re
import sys
from pathlib import Path

import numpy as np
from scipy import linalg, optimize

FOLDER = Path(__file__).resolve().parent.parent / "src" / "analysis" / "filters"
TOLERANCE = 1e-12


# Symmetric tables are handled as their first half, the middle included.

def half_length(n):
    return (n + 1) // 2


def gain_rows(n, rate, frequencies):
    """Rows that give the gain of a half table at each frequency."""
    distance = (n - 1) / 2 - np.arange(half_length(n))
    rows = 2 * np.cos(2 * np.pi / rate * np.outer(np.atleast_1d(frequencies), distance))
    if n % 2:
        rows[:, -1] = 1
    return rows


def unfold(half, n):
    return np.concatenate([half, half[:n // 2][::-1]])


class Conditions:
    """Linear equations that a half table has to meet."""

    def __init__(self, n, rate):
        self.n, self.rate = n, rate
        self.rows, self.values = [], []

    def gain(self, frequency, value):
        self.rows.append(gain_rows(self.n, self.rate, frequency)[0])
        self.values.append(value)
        return self

    def gains(self, pairs):
        for frequency, value in pairs:
            self.gain(frequency, value)
        return self

    def value(self, index, value):
        row = np.zeros(half_length(self.n))
        row[index] = 1
        self.rows.append(row)
        self.values.append(value)
        return self

    def middle(self, value):
        return self.value(self.n // 2, value)


def nearest(base, conditions):
    """The table nearest to `base` that meets the conditions."""
    rows = np.array(conditions.rows)
    missing = np.array(conditions.values) - rows @ base
    return base + rows.T @ np.linalg.solve(rows @ rows.T, missing)


def windowed_sinc(n, rate, cutoff, window):
    """Half of a low-pass of sum 1 whose ideal form ends at `cutoff`."""
    ratio = 2 * cutoff / rate
    table = np.sinc(ratio * (np.arange(n) - (n - 1) / 2)) * window
    return (table / table.sum())[:half_length(n)]


# The tables

def smoothing51():
    """Hamming window; 0.039 of half the rate is also where the 25-tap table ends."""
    base = windowed_sinc(51, 2, 0.03903, np.hamming(51))
    return nearest(base, Conditions(51, 2).gain(0, 1).value(0, 9.36e-05).middle(0.0468637))


def decimation29():
    """Kaiser window: its shape and the cutoff follow from the first and the middle value."""
    first, middle = -0.000303319654414908, 0.3979277402170436

    def error(parameters):
        half = windowed_sinc(29, 2, parameters[0], np.kaiser(29, parameters[1]))
        return [(half[0] - first) * 100, half[14] - middle]

    cutoff, beta = optimize.fsolve(error, [0.398, 6], xtol=1e-14)
    base = windowed_sinc(29, 2, cutoff, np.kaiser(29, beta))
    return nearest(base, Conditions(29, 2).gain(0, 1).value(0, first).middle(middle))


def low_pass(n, rate, frequency, gain, total=1.0):
    """Hamming window, the cutoff such that the gain is reached."""
    def half(cutoff):
        return total * windowed_sinc(n, rate, cutoff, np.hamming(n))

    def error(cutoff):
        return (gain_rows(n, rate, frequency) @ half(cutoff))[0] - gain

    base = half(optimize.brentq(error, frequency / 100, frequency * 2, xtol=1e-14))
    return nearest(base, Conditions(n, rate).gain(0, total).gain(frequency, gain))


def muscle250():
    base = windowed_sinc(62, 250, 42.5, np.hamming(62))
    return nearest(base, Conditions(62, 250).gain(0, 1).gains([(40, 0.79), (45, 0.21), (50, 0.001)]))


# Source file -> (what it holds, tables: name, length, design)
SOURCES = {
    "LowPassTaps.cpp": [
        ("smoothing51", 51, smoothing51),
        ("decimation29", 29, decimation29),
        ("muscle250", 62, muscle250),
        ("muscle25At500", 19, lambda: low_pass(19, 500, 25, 0.70)),
        ("muscle40At500", 12, lambda: low_pass(12, 500, 40, 0.70)),
        ("muscle25At1000", 34, lambda: low_pass(34, 1000, 25, 0.72, 1.01)),
        ("muscle40At1000", 22, lambda: low_pass(22, 1000, 40, 0.73)),
    ],
}


# C++

NOTE = "// Written by scripts/design-filters.py; docs/filters.md tells how the tables come about.\n"


def lines_of(values):
    words = [f"{value!r}," for value in values]
    line = "   "
    for word in words:
        if len(line) + 1 + len(word) > 108:
            yield line
            line = "   "
        line += " " + word
    yield line


def source_of(tables):
    text = NOTE + '#include "analysis/filters/FirTaps.h"\n\nnamespace velantor::taps {\n\n// clang-format off\n'
    for name, n, half in tables:
        values = "\n".join(lines_of([float(value) for value in half]))
        text += f"\nconst THalfTable<{n}> {name}{{{{\n{values}\n}}}};\n"
    return text + "\n// clang-format on\n\n} // namespace velantor::taps\n"


def declarations():
    for tables in SOURCES.values():
        for name, n, _ in tables:
            yield f"extern const THalfTable<{n}> {name};\n"


def header():
    return NOTE + """#pragma once

#include <array>

namespace velantor::taps {

/// The first half of a symmetric FIR table of `taps` coefficients, the middle one included.
template <int taps> struct THalfTable
{
    static constexpr int length = taps;
    std::array<double, (taps + 1) / 2> half;
};

""" + "".join(declarations()) + "\n} // namespace velantor::taps\n"


def design_all():
    return {file: [(name, n, design()) for name, n, design in tables] for file, tables in SOURCES.items()}


def write(designed):
    (FOLDER / "FirTaps.h").write_text(header(), encoding="utf-8")
    for file, tables in designed.items():
        (FOLDER / file).write_text(source_of(tables), encoding="utf-8")


def numbers_of(text):
    return [float(word) for word in re.findall(r"-?\d+(?:\.\d+)?(?:e-?\d+)?(?=,)", text)]


def differs(file, expected):
    """Whether a source is not what would be written, up to the rounding of another machine."""
    path = FOLDER / file
    text = path.read_text(encoding="utf-8") if path.is_file() else ""
    frame = re.compile(r"^ .*\n", re.MULTILINE)
    if frame.sub("", text) != frame.sub("", expected):
        return True
    have, want = numbers_of(text), numbers_of(expected)
    return len(have) != len(want) or any(abs(a - b) > TOLERANCE for a, b in zip(have, want))


def check(designed):
    stale = [file for file, tables in designed.items() if differs(file, source_of(tables))]
    if (FOLDER / "FirTaps.h").read_text(encoding="utf-8") != header():
        stale.append("FirTaps.h")
    for file in stale:
        print(f"{file} is not what scripts/design-filters.py writes")
    return 1 if stale else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", 1)[0])
    parser.add_argument("--check", action="store_true")
    arguments = parser.parse_args()
    designed = design_all()
    if arguments.check:
        return check(designed)
    write(designed)
    return 0


if __name__ == "__main__":
    sys.exit(main())
