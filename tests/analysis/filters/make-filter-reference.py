#!/usr/bin/env python3
"""Makes filter-reference.txt: samples of both filter chains as SciPy computes them.

    make-filter-reference.py [--check]

Tables come from scripts/design-filters.py; recursions are run by scipy.signal.lfilter from the state that the samples
before the margin leave. Each line: chain, rate, samples of the input, block size, then every 37th sample of the output
with all filters on. `--check` ends with 1 if the file differs by more than a count.
"""

import importlib.util
import sys
from pathlib import Path

import numpy as np
from scipy import signal

HERE = Path(__file__).resolve().parent
FILE = HERE / "filter-reference.txt"
STRIDE = 37

HIGH_PASS = ([0.997781024102941, -1.995562048205882, 0.997781024102941],
             [1.995557124345789, -0.995566972065975], 2000)
NOTCH = {500: ([0.951558090821252, -2.128420753699903, 2.85527558178394, -2.128420753699904, 0.951558090821252],
               [2.181925067619687, -2.854072963143573, 2.07491643978012, -0.904318800282871], 500),
         1000: ([0.975331910638375, -3.433582821317144, 4.952900855244864, -3.433582821317145, 0.975331910638375],
                [3.476732766930921, -4.952592786329411, 3.390432875703367, -0.950971890192202], 2000)}
BASELINE = {500: ([0.987761389276826, -3.951045557107303, 5.926568335660954, -3.951045557107303, 0.987761389276826],
                  [3.975371912560921, -5.926418555965424, 3.926719197756786, -0.975672562146085], 3000),
            1000: ([0.997131, -2.991393, 2.991393, -0.997131], [2.994254, -2.988525, 0.994271], 3000)}


def tables():
    path = HERE.parents[2] / "scripts" / "design-filters.py"
    description = importlib.util.spec_from_file_location("design_filters", path)
    module = importlib.util.module_from_spec(description)
    description.loader.exec_module(module)
    found = {name: module.unfold(half, n) for group in module.design_all().values() for name, n, half in group}
    found["baseline250"][0] *= -1
    return found


def samples(count):
    """Whole numbers that a test can make again."""
    i = np.arange(count, dtype=np.int64)
    return (i * i * 7 + i * 131) % 2003 - 1000 + i // 4 - 700 + (i // 400 % 2) * 3000


def counts(values):
    return np.clip(np.trunc(values), -32768, 32767)


def convolved(x, h, whole):
    """In step with x; without `whole` only as far as x reaches."""
    ahead = len(h) // 2
    y = np.convolve(x, h)[ahead:ahead + len(x)]
    return counts(y if whole else y[:max(len(x) - ahead, 0)])


def realtime(x, rate, table):
    if rate == 500:
        x = convolved(x, table["highPass500"], False)
    x = convolved(x, table[f"notch50At{rate}"], False)
    x = convolved(x, table["muscle250" if rate == 250 else f"muscle40At{rate}"], False)
    return convolved(x, table[f"baseline{rate}"], False)


def detrended(x, rate):
    n, window = len(x), 3 * rate
    first, last = x[:window].mean(), x[-window:].mean()
    parabola = np.polyfit([window / 2, n / 2, n - window / 2], [first, (first + last) / 2, last], 2)
    return counts(x - np.polyval(parabola, np.arange(n)))


def recursed(x, size, recursion):
    b, minus_a, margin = recursion
    a = np.concatenate([[1], -np.array(minus_a)])
    order = len(a) - 1
    result = np.zeros(len(x))
    for start in range(0, len(x), size):
        seen = np.zeros(2 * (margin + order) + size)  # from the order's samples before the margin on
        low = max(start - size, start - margin - order, 0)
        high = min(start + 2 * size, start + size + margin, len(x))
        origin = start - margin - order
        seen[low - origin:high - origin] = x[low:high]
        state = signal.lfiltic(b, a, np.zeros(order), seen[:order][::-1])
        forward, _ = signal.lfilter(b, a, seen[order:order + size + 2 * margin], zi=state)
        backward = signal.lfilter(b, a, forward[::-1])[::-1]
        result[start:start + size] = backward[margin:margin + size]
    return counts(result)


def offline(x, rate, size, table):
    n = len(x)
    y = np.zeros((n + size - 1) // size * size)
    y[:n] = detrended(x, rate)
    if rate == 500:
        y = recursed(y, size, HIGH_PASS)
    if rate in NOTCH:
        y = recursed(y, size, NOTCH[rate])
    y = convolved(y, table["muscle250" if rate == 250 else f"muscle40At{rate}"], True)
    if rate in BASELINE:
        y = recursed(y, size, BASELINE[rate])
    return y[:n]


def lines():
    table = tables()
    for rate in (250, 500, 1000):
        yield "realtime", rate, 6000, 64, realtime(samples(6000), rate, table)
    for rate, size in ((250, 1024), (500, 1024), (500, 4096), (1000, 1024), (1000, 4096)):
        yield "offline", rate, 10000, size, offline(samples(10000), rate, size, table)


def parse(text):
    return [(line.split()[:4], [int(word) for word in line.split()[4:]]) for line in text.splitlines()]


def main():
    text = "".join(f"{chain} {rate} {count} {size} " + " ".join(str(int(value)) for value in values[::STRIDE]) + "\n"
                   for chain, rate, count, size, values in lines())
    if "--check" not in sys.argv:
        FILE.write_text(text, encoding="ascii")
        return 0
    have, want = parse(FILE.read_text(encoding="ascii")), parse(text)
    same = len(have) == len(want) and all(
        a == b and len(x) == len(y) and all(abs(u - v) <= 1 for u, v in zip(x, y))
        for (a, x), (b, y) in zip(have, want))
    if not same:
        print(f"{FILE.name} is not what make-filter-reference.py makes")
    return 0 if same else 1


if __name__ == "__main__":
    sys.exit(main())
