#!/usr/bin/env python3
"""compare-recordings.py A.wav B.wav: says how far two 16-bit recordings of the same performance are apart.

Libraries round differently on other processors, so samples may be one step apart; more, or another length, is a fault.
"""

import array
import sys
import wave


def samples(path):
    with wave.open(path) as file:
        return array.array("h", file.readframes(file.getnframes()))


one, other = (samples(path) for path in sys.argv[1:3])
if len(one) != len(other):
    sys.exit(f"{sys.argv[2]} has {len(other)} samples, {sys.argv[1]} {len(one)}")
steps = [abs(a - b) for a, b in zip(one, other)]
print(f"{sum(step > 0 for step in steps)} of {len(steps)} samples differ, by {max(steps)} of 32768 at most")
sys.exit(max(steps) > 1)
