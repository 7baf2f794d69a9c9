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
from scipy import optimize

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


def all_pass(n):
    """Half of a table that only delays, by half a sample more if it is even."""
    return (np.sinc(np.arange(n) - (n - 1) / 2) * np.hamming(n))[:half_length(n)]


def high_pass500():
    """All but a low-pass, whose cutoff follows from the middle value; the wanted gains come of themselves."""
    middle = 0.998662804

    def half(cutoff):
        return all_pass(1501) - windowed_sinc(1501, 500, cutoff, np.hamming(1501))

    base = half(optimize.brentq(lambda cutoff: half(cutoff)[-1] - middle, 0.1, 0.6, xtol=1e-14))
    conditions = Conditions(1501, 500).gain(0, 0).middle(middle)
    for index, value in enumerate([-6.05386e-05, -6.0646e-05, -6.07595e-05]):
        conditions.value(index, value)
    return nearest_smooth(base, conditions)


def nearest_smooth(base, conditions):
    """The table that meets the conditions and differs from `base` by what bends least."""
    size = len(base)
    bends = np.diff(np.eye(size), 2, axis=0)
    stiffness = np.eye(size) / 1e6 + bends.T @ bends
    rows = np.array(conditions.rows)
    missing = np.array(conditions.values) - rows @ base
    give = np.linalg.solve(stiffness, rows.T)
    return base + give @ np.linalg.solve(rows @ give, missing)


def notch(n, rate, frequency, gains, first):
    """Least squares fit of a gain of 1, in which the 4 Hz on both sides of the notch count for little."""
    grid = np.linspace(0, rate / 2, 8 * n + 1)
    weights = np.where(np.abs(grid - frequency) < 4, 0.01, 1)
    conditions = Conditions(n, rate).gain(0, 1).gain(frequency, 0).value(0, first)
    for distance, gain in gains:
        conditions.gain(frequency - distance, gain).gain(frequency + distance, gain)
    rows = gain_rows(n, rate, grid)
    normal = (rows.T * weights) @ rows
    fit = np.linalg.solve(normal, rows.T @ weights)
    rows = np.array(conditions.rows)
    missing = np.array(conditions.values) - rows @ fit
    give = np.linalg.solve(normal, rows.T)
    return fit + give @ np.linalg.solve(rows @ give, missing)


def baseline(n, rate, gain, conditions):
    """All but a low-pass, whose cutoff follows from the gain at 1 Hz."""
    def half(cutoff):
        return all_pass(n) - windowed_sinc(n, rate, cutoff, np.hamming(n))

    def error(cutoff):
        return (gain_rows(n, rate, 1) @ half(cutoff))[0] - gain

    base = half(optimize.brentq(error, 0.05, 3, xtol=1e-14))
    return nearest(base, conditions.gain(0, 0).gain(1, gain))


def baseline250():
    """The program turns the sign of the first value: the outer two values cancel in all gains."""
    conditions = Conditions(382, 250)
    half = baseline(382, 250, 0.76, conditions)
    for row in conditions.rows:
        row[0] = 0
    return nearest(half, conditions)


def baseline1000():
    """Too short to rise from -0.067 to 1.07 within 1 Hz without going further: least ripple beyond."""
    n, total, gain = 1355, -0.067, 1.07

    def half(shape):
        return all_pass(n) - (1 - total) * windowed_sinc(n, 1000, 0.3, np.kaiser(n, shape))

    shape = optimize.brentq(lambda beta: (gain_rows(n, 1000, 1) @ half(beta))[0] - gain, 0, 4, xtol=1e-14)
    return nearest(half(shape), Conditions(n, 1000).gain(0, total).gain(1, gain))


# Source file -> its tables: name, length, design
SOURCES = {
    "HighPassTaps.cpp": [("highPass500", 1501, high_pass500)],
    "NotchTaps.cpp": [
        ("notch50At250", 109, lambda: notch(109, 250, 50, [(2, 0.43), (5, 1)], -0.000532467)),
        ("notch50At500", 195, lambda: notch(195, 500, 50, [(2, 0.39), (5, 1.057)], -0.0003644811497461428)),
        ("notch50At1000", 391, lambda: notch(391, 1000, 50, [(2, 0.53), (5, 1.04)], -5.288038948796344e-06)),
        ("notch60At250", 109, lambda: notch(109, 250, 60, [(1, 0.13)], -0.0013606868)),
        ("notch60At500", 195, lambda: notch(195, 500, 60, [(1, 0.11)], -0.0007600742537818535)),
        ("notch60At1000", 391, lambda: notch(391, 1000, 60, [(1, 0.16)], 0.000438044520466006)),
    ],
    "BaselineTaps.cpp": [
        ("baseline250", 382, baseline250),
        ("baseline500", 501, lambda: baseline(501, 500, 0.51, Conditions(501, 500))),
        ("baseline1000", 1355, baseline1000),
    ],
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

# What the tables have to reach: sum, gains by frequency, first and middle value
WANTED = {
    "highPass500": (0, {0.1: 0.06, 0.3: 0.445, 0.5: 0.83, 0.67: 0.976, 1: 1}, -6.05386e-05, 0.998662804),
    "notch50At250": (None, {45: 1, 48: 0.43, 50: 0, 52: 0.43, 55: 1}, -0.000532467, None),
    "notch50At500": (None, {45: 1.057, 48: 0.39, 50: 0, 52: 0.39, 55: 1.057}, -0.0003644811497461428, None),
    "notch50At1000": (None, {45: 1.04, 48: 0.53, 50: 0, 52: 0.53, 55: 1.04}, -5.288038948796344e-06, None),
    "notch60At250": (None, {59: 0.13, 60: 0, 61: 0.13}, -0.0013606868, None),
    "notch60At500": (None, {59: 0.11, 60: 0, 61: 0.11}, -0.0007600742537818535, None),
    "notch60At1000": (None, {59: 0.16, 60: 0, 61: 0.16}, 0.000438044520466006, None),
    "baseline250": (None, {1: 0.76}, None, None),
    "baseline500": (None, {1: 0.51}, None, None),
    "baseline1000": (-0.067, {1: 1.07}, None, None),
    "smoothing51": (None, {}, 9.36e-05, 0.0468637),
    "decimation29": (1, {}, -0.000303319654414908, 0.3979277402170436),
    "muscle250": (None, {40: 0.79, 45: 0.21, 50: 0.001}, None, None),
    "muscle25At500": (None, {25: 0.70}, None, None),
    "muscle40At500": (None, {40: 0.70}, None, None),
    "muscle25At1000": (1.01, {25: 0.72}, None, None),
    "muscle40At1000": (None, {40: 0.73}, None, None),
}


def rate_of(name):
    return {"smoothing51": 250, "decimation29": 1000}.get(name) or int(re.search(r"\d+$", name).group())


def reached(value, wanted):
    """A figure of a table, and how far it is from the wanted one."""
    text = f"{value:.6g}" if abs(value) > 1e-12 else "0"
    if wanted is None:
        return text
    return text + (" (as wanted)" if abs(value - wanted) < 1e-9 else f" (wanted {wanted:g})")


def report(designed):
    print("| table | rate | taps | delay | sum | first value | middle value | gains |")
    print("|---|---|---|---|---|---|---|---|")
    for tables in designed.values():
        for name, n, half in tables:
            total, gains, first, middle = WANTED[name]
            rate = rate_of(name)
            table = unfold(half, n)
            if name == "baseline250":
                table[0] = -table[0]
            size = [abs(np.sum(table * np.exp(-2j * np.pi * f / rate * np.arange(n)))) for f in gains]
            shown = ", ".join(f"{f:g} Hz: {reached(a, g)}" for a, (f, g) in zip(size, gains.items()))
            print(f"| `{name}` | {rate} | {n} | {n // 2} | {reached(table.sum(), total)} | "
                  f"{reached(table[0], first)} | {reached(table[n // 2], middle)} | {shown} |")


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
    parser.add_argument("--check", action="store_true", help="only compare the sources with the design")
    parser.add_argument("--report", action="store_true", help="only print the table of docs/filters.md")
    arguments = parser.parse_args()
    designed = design_all()
    if arguments.check:
        return check(designed)
    if arguments.report:
        report(designed)
        return 0
    write(designed)
    return 0


if __name__ == "__main__":
    sys.exit(main())
